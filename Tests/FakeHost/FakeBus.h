#pragma once

#include "FakeHost/CallList.h"

#include <QtCore/QMetaMethod>
#include <QtCore/QPointer>
#include <QtCore/QVariant>

// What stands behind GKXObserver: records every attach and notify, delivers on the receiver's own thread.
//
// Lines: "attach Event Slot(QVariantList)", "notify Event" for the QVariant form, "notifyList Event" for the list form;
// "attachRefused Event Slot" when the receiver has no such slot.
class KX_HOST_EXPORT FakeBus
{
public:
    explicit FakeBus(CallList& calls);

    void Attach(const char* pszEvent, const QObject* pReceiver, const char* pszSlot);
    void Notify(const char* pszEvent, const QVariantList& payload, bool bSingle);

    // An event from another part of the client: delivered, not recorded.
    void Send(const char* pszEvent, const QVariantList& payload);
    // Payloads of the recorded events of that name, in order.
    std::vector<QVariantList> Payloads(const char* pszEvent) const;
    // The same for events whose payload is one text.
    QStringList Texts(const char* pszEvent) const;
    // All recorded events with their payloads, for a search.
    QByteArray Dump() const;
    // Forgets the events recorded so far.
    void Clear();

private:
    struct Subscription
    {
        QByteArray event;
        QPointer<QObject> pReceiver;
        QMetaMethod slot;
    };
    struct Sent
    {
        QByteArray event;
        QVariantList payload;
    };

    CallList& m_calls;
    mutable QMutex m_mutex;
    std::vector<Subscription> m_subscriptions;
    std::vector<Sent> m_sent;
};
