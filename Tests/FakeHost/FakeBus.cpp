#include "FakeHost/FakeBus.h"

#include <QtCore/QMutexLocker>

FakeBus::FakeBus(CallList& calls)
    : m_calls(calls)
{}

void FakeBus::Attach(const char* pszEvent, const QObject* pReceiver, const char* pszSlot)
{
    // The leading code character "1" is what tells a slot from a signal in the texts of SLOT() and SIGNAL().
    const QByteArray signature = pszSlot[0] == '1' ? QMetaObject::normalizedSignature(pszSlot + 1) : QByteArray();
    const int iSlot = pReceiver->metaObject()->indexOfSlot(signature.constData());
    m_calls.Add(QStringLiteral("%1 %2 %3")
                    .arg(iSlot < 0 ? QStringLiteral("attachRefused") : QStringLiteral("attach"),
                         QString::fromUtf8(pszEvent),
                         iSlot < 0 ? QString::fromUtf8(pszSlot) : QString::fromUtf8(signature)));
    if (iSlot < 0)
        return;
    QMutexLocker locker(&m_mutex);
    m_subscriptions.push_back({pszEvent, const_cast<QObject*>(pReceiver), pReceiver->metaObject()->method(iSlot)});
}

void FakeBus::Notify(const char* pszEvent, const QVariantList& payload, bool bSingle)
{
    {
        QMutexLocker locker(&m_mutex);
        m_sent.push_back({pszEvent, payload});
    }
    m_calls.Add(
        (bSingle ? QStringLiteral("notify %1") : QStringLiteral("notifyList %1")).arg(QString::fromUtf8(pszEvent)));
    Send(pszEvent, payload);
}

void FakeBus::Send(const char* pszEvent, const QVariantList& payload)
{
    std::vector<Subscription> receivers;
    {
        QMutexLocker locker(&m_mutex);
        for (const Subscription& subscription : m_subscriptions) {
            if (subscription.event == pszEvent)
                receivers.push_back(subscription);
        }
    }
    for (const Subscription& subscription : receivers) {
        if (subscription.pReceiver)
            subscription.slot.invoke(subscription.pReceiver, Qt::AutoConnection, Q_ARG(QVariantList, payload));
    }
}

std::vector<QVariantList> FakeBus::Payloads(const char* pszEvent) const
{
    QMutexLocker locker(&m_mutex);
    std::vector<QVariantList> found;
    for (const Sent& sent : m_sent) {
        if (sent.event == pszEvent)
            found.push_back(sent.payload);
    }
    return found;
}

QStringList FakeBus::Texts(const char* pszEvent) const
{
    QStringList found;
    for (const QVariantList& payload : Payloads(pszEvent))
        found.append(payload.value(0).toString());
    return found;
}

QByteArray FakeBus::Dump() const
{
    QMutexLocker locker(&m_mutex);
    QByteArray dump;
    for (const Sent& sent : m_sent) {
        dump += sent.event + '\n';
        for (const QVariant& element : sent.payload)
            dump += element.toByteArray() + '\n';
    }
    return dump;
}

void FakeBus::Clear()
{
    QMutexLocker locker(&m_mutex);
    std::vector<Sent>().swap(m_sent);
}
