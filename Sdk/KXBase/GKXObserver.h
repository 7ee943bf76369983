#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/QVariant>

class QObject;

// The host's event bus: events by name, carried as a QVariantList.
//
// Thread: both operations may be called on any thread. A receiver is called on its own thread: directly when that is
// the current thread, otherwise queued. Ownership: receivers stay owned by their makers; a destroyed receiver is
// forgotten, and no call reaches it afterwards. Errors: an event nobody listens to is dropped.
class KX_HOST_EXPORT GKXObserver
{
public:
    // Calls `pszSlot` of `pReceiver` for every event of that name from now on. `pszSlot` is in the form of Qt's SLOT():
    // a leading "1", the name, and the one argument type QVariantList. Both texts are copied.
    static void attach(const char* pszEvent, const QObject* pReceiver, const char* pszSlot);

    // Sends an event. The QVariant form delivers a list with that one element.
    static void notify(const char* pszEvent, const QVariant& payload);
    static void notify(const char* pszEvent, const QVariantList& payload);
};
