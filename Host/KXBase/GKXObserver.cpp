#include "KXBase/GKXObserver.h"

#include "Host/KXBase/EventEmitter.h"
#include "Host/KXBase/HostLog.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using EmitterList = std::vector<std::shared_ptr<EventEmitter>>; // in the order of attaching

// Thread: any. The lock covers the table only, never a call to a receiver.
class EventTable
{
public:
    void Add(const QByteArray& strEvent, const QObject* pReceiver, int iMethod)
    {
        const QMutexLocker lock(&m_mutex);
        EmitterList& listEmitters = m_mapEmitters[strEvent];
        // The receivers that are gone go first: another one may live at the address of such a one.
        const auto isGone = [](const auto& pEmitter) { return !pEmitter->HasReceiver(); };
        listEmitters.erase(std::remove_if(listEmitters.begin(), listEmitters.end(), isGone), listEmitters.end());
        const auto isSame = [pReceiver, iMethod](const auto& pEmitter) { return pEmitter->IsFor(pReceiver, iMethod); };
        if (std::none_of(listEmitters.cbegin(), listEmitters.cend(), isSame))
            listEmitters.push_back(std::make_shared<EventEmitter>(pReceiver, iMethod));
    }
    EmitterList Find(const char* pszEvent)
    {
        const QMutexLocker lock(&m_mutex);
        return m_mapEmitters.value(QByteArray(pszEvent));
    }

private:
    QMutex m_mutex;
    QHash<QByteArray, EmitterList> m_mapEmitters;
};

// Never destroyed: receivers may outlive every other static object.
EventTable& TheTable()
{
    static EventTable* const s_pTable = new EventTable;
    return *s_pTable;
}

// Index of the slot that can take an event; -1 when the receiver has none of that form.
int FindSlot(const QObject* pReceiver, const char* pszSlot)
{
    if (pReceiver == nullptr || pszSlot == nullptr || *pszSlot != '1')
        return -1;
    const QByteArray strSignature = QMetaObject::normalizedSignature(pszSlot + 1);
    const bool bTakesPayload = QMetaObject::checkConnectArgs("Notified(QVariantList)", strSignature.constData());
    return bTakesPayload ? pReceiver->metaObject()->indexOfSlot(strSignature.constData()) : -1;
}

} // namespace

void GKXObserver::attach(const char* pszEvent, const QObject* pReceiver, const char* pszSlot)
{
    const int iMethod = FindSlot(pReceiver, pszSlot);
    if (iMethod >= 0)
        return TheTable().Add(QByteArray(pszEvent), pReceiver, iMethod);
    const char* pszClass = pReceiver != nullptr ? pReceiver->metaObject()->className() : "(null)";
    LogFailure("Host/KXBase/GKXObserver", __LINE__, "GKXObserver::attach",
               QStringLiteral("event[%1]: %2 has no slot[%3]")
                   .arg(QLatin1String(pszEvent), QLatin1String(pszClass), QLatin1String(pszSlot)));
}

void GKXObserver::notify(const char* pszEvent, const QVariant& payload)
{
    notify(pszEvent, QVariantList{payload});
}

void GKXObserver::notify(const char* pszEvent, const QVariantList& payload)
{
    const EmitterList listEmitters = TheTable().Find(pszEvent);
    for (const auto& pEmitter : listEmitters)
        emit pEmitter->Notified(payload);
}
