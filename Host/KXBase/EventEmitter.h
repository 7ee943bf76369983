#pragma once

#include <QtCore/QMetaMethod>
#include <QtCore/QObject>
#include <QtCore/QVariant>

// One subscription: a single connection, made before any other thread sees it. Qt's connection decides the thread of
// each call and forgets a destroyed receiver. One emitter for all receivers would not do: Qt 5 publishes an added
// connection to a thread that is emitting without a barrier.
//
// Thread: emitted and asked on any thread; may be destroyed on any thread, since it gets no events.
class EventEmitter : public QObject
{
    Q_OBJECT

public:
    EventEmitter(const QObject* pReceiver, int iMethod)
        : m_pReceiver(pReceiver)
        , m_iMethod(iMethod)
    {
        // The types are given here, for Qt would else find them out at the first queued call, again without a barrier.
        const int iSignal = QMetaMethod::fromSignal(&EventEmitter::Notified).methodIndex();
        QMetaObject::connect(this, iSignal, pReceiver, iMethod, Qt::AutoConnection,
                             new int[2]{QMetaType::QVariantList, QMetaType::UnknownType}); // the connection owns them
    }

    bool HasReceiver() const { return isSignalConnected(QMetaMethod::fromSignal(&EventEmitter::Notified)); }
    bool IsFor(const QObject* pReceiver, int iMethod) const { return pReceiver == m_pReceiver && iMethod == m_iMethod; }

signals:
    void Notified(QVariantList listPayload);

private:
    const QObject* const m_pReceiver; // compared only: it may be gone
    const int m_iMethod;
};
