#include "KXBase/GKXObserver.h"
#include "LogFile.h"
#include "TestMain.h"

#include <QtCore/QSemaphore>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <functional>
#include <memory>
#include <thread>
#include <vector>

// Notes each event with the thread that it came on.
class Receiver : public QObject
{
    Q_OBJECT

public slots:
    void OnEvent(QVariantList listPayload)
    {
        m_listThreads.append(QThread::currentThread());
        m_listPayloads.append(listPayload);
        if (m_react)
            m_react();
        m_called.release();
    }
    void OnOther(int) {}

signals:
    void SignalCalled();

public:
    // For a test that waits on another thread.
    bool WaitForCall() { return m_called.tryAcquire(1, 10000); }

    QVector<QThread*> m_listThreads;
    QVector<QVariantList> m_listPayloads;
    QSemaphore m_called;
    std::function<void()> m_react;

private slots:
    void OnPrivateEvent(QVariantList listPayload) { OnEvent(listPayload); }
};

namespace {

constexpr char Slot[] = "1OnEvent(QVariantList)";

// A thread with an event loop; ended with the test.
class LoopThread : public QThread
{
public:
    LoopThread() { start(); }
    ~LoopThread() override
    {
        quit();
        wait();
    }
};

} // namespace

class GKXObserverTest : public QObject
{
    Q_OBJECT

private slots:
    void AReceiverOfThisThreadIsCalledBeforeNotifyReturns();
    void OneValueArrivesAsAListOfOne();
    void AListArrivesAsItIs();
    void AnEventReachesItsOwnReceiversOnlyInTheOrderOfAttaching();
    void AnEventNobodyListensToIsDropped();
    void APrivateSlotIsCalled();
    void AttachingTwiceCallsOnce();
    void TheNamesAreCopied();
    void AReceiverOfAnotherThreadIsCalledThere();
    void AnEventFromAForeignThreadWaitsForTheReceiversLoop();
    void AMovedReceiverIsCalledOnItsNewThread();
    void ADestroyedReceiverIsNotCalled();
    void AReceiverDestroyedWhileItsEventWaitsIsNotCalled();
    void AReceiverDestroyedByAnEarlierSlotIsNotCalled();
    void AReceiverMayDestroyItselfLater();
    void AttachingInsideASlotHoldsFromTheNextEventOn();
    void NotifyingInsideASlotWorks();
    void AMissingSlotIsLoggedAndNothingElse_data();
    void AMissingSlotIsLoggedAndNothingElse();
    void AReceiverAtTheAddressOfAGoneOneIsCalled();
    void AReceiverThatCutItsOwnConnectionsIsStillCalledAndForgotten();
    void ManyThreadsMayAttachNotifyAndDestroyAtOnce();
    void ManyThreadsMayNotifyOneReceiver();
};

void GKXObserverTest::AReceiverOfThisThreadIsCalledBeforeNotifyReturns()
{
    Receiver receiver;
    GKXObserver::attach("EventDirect", &receiver, Slot);
    GKXObserver::notify("EventDirect", QVariant(1));
    QCOMPARE(receiver.m_listThreads, QVector<QThread*>{QThread::currentThread()});
}

void GKXObserverTest::OneValueArrivesAsAListOfOne()
{
    Receiver receiver;
    GKXObserver::attach("EventOneValue", &receiver, Slot);
    GKXObserver::notify("EventOneValue", QVariant(QStringLiteral("{}")));
    GKXObserver::notify("EventOneValue", QVariant());
    GKXObserver::notify("EventOneValue", QVariant(QVariantList{1, 2}));
    QCOMPARE(receiver.m_listPayloads.value(0), QVariantList{QStringLiteral("{}")});
    QCOMPARE(receiver.m_listPayloads.value(1).size(), 1);
    QCOMPARE(receiver.m_listPayloads.value(2).size(), 1);
    QCOMPARE(receiver.m_listPayloads.value(2).at(0).toList(), (QVariantList{1, 2}));
}

void GKXObserverTest::AListArrivesAsItIs()
{
    Receiver receiver;
    GKXObserver::attach("EventList", &receiver, Slot);
    GKXObserver::notify("EventList", QVariantList());
    GKXObserver::notify("EventList", QVariantList{QByteArray("a\0b", 3), 3});
    QCOMPARE(receiver.m_listPayloads.value(0), QVariantList());
    QCOMPARE(receiver.m_listPayloads.value(1), (QVariantList{QByteArray("a\0b", 3), 3}));
}

void GKXObserverTest::AnEventReachesItsOwnReceiversOnlyInTheOrderOfAttaching()
{
    Receiver first, second, other;
    QStringList listOrder;
    first.m_react = [&listOrder] { listOrder << QStringLiteral("first"); };
    second.m_react = [&listOrder] { listOrder << QStringLiteral("second"); };
    GKXObserver::attach("EventOrder", &first, Slot);
    GKXObserver::attach("EventOrder", &second, Slot);
    GKXObserver::attach("EventOrderOther", &other, Slot);
    GKXObserver::notify("EventOrder", QVariant(1));
    QCOMPARE(listOrder, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
    QVERIFY(other.m_listPayloads.isEmpty());
}

void GKXObserverTest::AnEventNobodyListensToIsDropped()
{
    Receiver late;
    GKXObserver::notify("EventNobody", QVariant(1));
    GKXObserver::attach("EventNobody", &late, Slot);
    QCoreApplication::processEvents();
    QVERIFY(late.m_listPayloads.isEmpty());
}

void GKXObserverTest::APrivateSlotIsCalled()
{
    Receiver receiver;
    GKXObserver::attach("EventPrivate", &receiver, "1OnPrivateEvent(QVariantList)");
    GKXObserver::notify("EventPrivate", QVariant(1));
    QCOMPARE(receiver.m_listPayloads.size(), 1);
}

void GKXObserverTest::AttachingTwiceCallsOnce()
{
    const LogFile log;
    Receiver receiver;
    GKXObserver::attach("EventTwice", &receiver, Slot);
    GKXObserver::attach("EventTwice", &receiver, Slot);
    GKXObserver::notify("EventTwice", QVariant(1));
    QCOMPARE(receiver.m_listPayloads.size(), 1);
    QCOMPARE(log.Lines(), QStringList());
}

void GKXObserverTest::TheNamesAreCopied()
{
    Receiver receiver;
    QByteArray strEvent("EventCopied");
    QByteArray strSlot(Slot);
    GKXObserver::attach(strEvent.constData(), &receiver, strSlot.constData());
    strEvent.fill('x');
    strSlot.fill('x');
    GKXObserver::notify("EventCopied", QVariant(1));
    QCOMPARE(receiver.m_listPayloads.size(), 1);
}

void GKXObserverTest::AReceiverOfAnotherThreadIsCalledThere()
{
    auto pReceiver = std::make_unique<Receiver>();
    {
        LoopThread thread;
        pReceiver->moveToThread(&thread);
        GKXObserver::attach("EventThread", pReceiver.get(), Slot);
        GKXObserver::notify("EventThread", QVariant(5));
        QVERIFY(pReceiver->WaitForCall());
        GKXObserver::notify("EventThread", QVariant(6)); // handled before the thread ends or dropped with it
        thread.quit();
        thread.wait();
        QCOMPARE(pReceiver->m_listThreads.value(0), static_cast<QThread*>(&thread));
        QCOMPARE(pReceiver->m_listPayloads.value(0), QVariantList{5});
    }
}

void GKXObserverTest::AnEventFromAForeignThreadWaitsForTheReceiversLoop()
{
    Receiver receiver;
    GKXObserver::attach("EventForeign", &receiver, Slot);
    std::thread([] {
        GKXObserver::notify("EventForeign", QVariant(1));
        GKXObserver::notify("EventForeign", QVariant(2));
    }).join();
    QVERIFY(receiver.m_listPayloads.isEmpty());
    QTRY_COMPARE(receiver.m_listPayloads, (QVector<QVariantList>{{1}, {2}}));
    QCOMPARE(receiver.m_listThreads.value(0), QThread::currentThread());
}

void GKXObserverTest::AMovedReceiverIsCalledOnItsNewThread()
{
    auto pReceiver = std::make_unique<Receiver>();
    GKXObserver::attach("EventMoved", pReceiver.get(), Slot);
    LoopThread thread;
    pReceiver->moveToThread(&thread);
    GKXObserver::notify("EventMoved", QVariant(1));
    QVERIFY(pReceiver->WaitForCall());
    thread.quit();
    thread.wait();
    QCOMPARE(pReceiver->m_listThreads.value(0), static_cast<QThread*>(&thread));
}

void GKXObserverTest::ADestroyedReceiverIsNotCalled()
{
    int iCalls = 0;
    auto pReceiver = std::make_unique<Receiver>();
    pReceiver->m_react = [&iCalls] { ++iCalls; };
    GKXObserver::attach("EventDestroyed", pReceiver.get(), Slot);
    GKXObserver::notify("EventDestroyed", QVariant(1));
    pReceiver.reset();
    GKXObserver::notify("EventDestroyed", QVariant(2));
    QCOMPARE(iCalls, 1);
}

void GKXObserverTest::AReceiverDestroyedWhileItsEventWaitsIsNotCalled()
{
    int iCalls = 0;
    auto pReceiver = std::make_unique<Receiver>();
    pReceiver->m_react = [&iCalls] { ++iCalls; };
    GKXObserver::attach("EventWaits", pReceiver.get(), Slot);
    std::thread([] { GKXObserver::notify("EventWaits", QVariant(1)); }).join();
    pReceiver.reset();
    QCoreApplication::processEvents();
    QCOMPARE(iCalls, 0);
}

void GKXObserverTest::AReceiverDestroyedByAnEarlierSlotIsNotCalled()
{
    int iCalls = 0;
    Receiver first;
    auto pSecond = std::make_unique<Receiver>();
    Receiver third;
    first.m_react = [&pSecond] { pSecond.reset(); };
    pSecond->m_react = [&iCalls] { ++iCalls; };
    for (const QObject* pReceiver :
         {static_cast<QObject*>(&first), static_cast<QObject*>(pSecond.get()), static_cast<QObject*>(&third)})
        GKXObserver::attach("EventKills", pReceiver, Slot);
    GKXObserver::notify("EventKills", QVariant(1));
    QCOMPARE(iCalls, 0);
    QCOMPARE(third.m_listPayloads.size(), 1);
}

void GKXObserverTest::AReceiverMayDestroyItselfLater()
{
    auto* pReceiver = new Receiver;
    QSignalSpy spyDestroyed(pReceiver, &QObject::destroyed);
    pReceiver->m_react = [pReceiver] { pReceiver->deleteLater(); };
    GKXObserver::attach("EventSelf", pReceiver, Slot);
    GKXObserver::notify("EventSelf", QVariant(1));
    QVERIFY(spyDestroyed.wait());
    GKXObserver::notify("EventSelf", QVariant(2));
}

void GKXObserverTest::AttachingInsideASlotHoldsFromTheNextEventOn()
{
    Receiver first, added;
    first.m_react = [&added] { GKXObserver::attach("EventAdds", &added, Slot); };
    GKXObserver::attach("EventAdds", &first, Slot);
    GKXObserver::notify("EventAdds", QVariant(1));
    QVERIFY(added.m_listPayloads.isEmpty());
    GKXObserver::notify("EventAdds", QVariant(2));
    QCOMPARE(added.m_listPayloads, QVector<QVariantList>{{2}});
}

void GKXObserverTest::NotifyingInsideASlotWorks()
{
    Receiver question, answer;
    question.m_react = [&question] {
        GKXObserver::notify("EventAnswer", QVariant(question.m_listPayloads.size()));
        if (question.m_listPayloads.size() < 3)
            GKXObserver::notify("EventQuestion", QVariant(0));
    };
    GKXObserver::attach("EventQuestion", &question, Slot);
    GKXObserver::attach("EventAnswer", &answer, Slot);
    GKXObserver::notify("EventQuestion", QVariant(0));
    QCOMPARE(answer.m_listPayloads, (QVector<QVariantList>{{1}, {2}, {3}}));
}

void GKXObserverTest::AMissingSlotIsLoggedAndNothingElse_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::newRow("no such slot") << QByteArray("1OnNothing(QVariantList)");
    QTest::newRow("other arguments") << QByteArray("1OnOther(int)");
    QTest::newRow("without the leading 1") << QByteArray("OnEvent(QVariantList)");
    QTest::newRow("a signal") << QByteArray("2SignalCalled()");
    QTest::newRow("an empty text") << QByteArray("");
}

void GKXObserverTest::AMissingSlotIsLoggedAndNothingElse()
{
    QFETCH(QByteArray, slot);
    const LogFile log;
    Receiver receiver;
    GKXObserver::attach("EventMissing", &receiver, slot.constData());
    GKXObserver::notify("EventMissing", QVariant(1));
    QCOMPARE(log.Lines().size(), 1);
    QVERIFY(log.Lines().first().contains(QLatin1String("[error]")));
    QVERIFY(log.Lines().first().contains(QLatin1String("event[EventMissing]: Receiver has no slot[") +
                                         QString::fromUtf8(slot) + QLatin1Char(']')));
}

void GKXObserverTest::AReceiverAtTheAddressOfAGoneOneIsCalled()
{
    std::aligned_storage_t<sizeof(Receiver), alignof(Receiver)> place;
    for (int i = 0; i < 2; ++i) {
        auto* pReceiver = new (&place) Receiver;
        GKXObserver::attach("EventPlace", pReceiver, Slot);
        GKXObserver::notify("EventPlace", QVariant(i));
        const int iCalls = pReceiver->m_listPayloads.size();
        pReceiver->~Receiver();
        QCOMPARE(iCalls, 1);
    }
}

void GKXObserverTest::AReceiverThatCutItsOwnConnectionsIsStillCalledAndForgotten()
{
    int iCalls = 0;
    auto pReceiver = std::make_unique<Receiver>();
    pReceiver->m_react = [&iCalls] { ++iCalls; };
    GKXObserver::attach("EventCut", pReceiver.get(), Slot);
    QObject::disconnect(pReceiver.get(), nullptr, nullptr, nullptr);
    GKXObserver::notify("EventCut", QVariant(1));
    QCOMPARE(iCalls, 1);
    pReceiver.reset();
    GKXObserver::notify("EventCut", QVariant(2));
    QCOMPARE(iCalls, 1);
}

void GKXObserverTest::ManyThreadsMayNotifyOneReceiver()
{
    Receiver receiver;
    GKXObserver::attach("EventOne", &receiver, Slot);
    std::vector<std::thread> listThreads;
    listThreads.reserve(4);
    for (int iThread = 0; iThread < 4; ++iThread) {
        listThreads.emplace_back([iThread] {
            for (int i = 0; i < 100; ++i)
                GKXObserver::notify("EventOne", QVariantList{iThread, i});
        });
    }
    for (std::thread& thread : listThreads)
        thread.join();
    QTRY_COMPARE(receiver.m_listPayloads.size(), 400);
    QVector<int> listNext(4, 0); // what one thread sends arrives in its order
    for (const QVariantList& payload : qAsConst(receiver.m_listPayloads))
        QCOMPARE(payload.at(1).toInt(), listNext[payload.at(0).toInt()]++);
}

void GKXObserverTest::ManyThreadsMayAttachNotifyAndDestroyAtOnce()
{
    Receiver receiver;
    GKXObserver::attach("EventMany", &receiver, Slot);
    std::vector<std::thread> listThreads;
    listThreads.reserve(4);
    for (int iThread = 0; iThread < 4; ++iThread) {
        listThreads.emplace_back([iThread] {
            const QByteArray strOwn = "EventManyOwn" + QByteArray::number(iThread);
            for (int i = 0; i < 250; ++i) {
                Receiver passing;
                GKXObserver::attach(strOwn.constData(), &passing, Slot);
                GKXObserver::attach("EventMany", &passing, Slot);
                GKXObserver::notify("EventMany", QVariant(i));
            }
        });
    }
    for (std::thread& thread : listThreads)
        thread.join();
    QTRY_COMPARE(receiver.m_listPayloads.size(), 1000);
}

KX_TEST(GKXObserverTest, QCoreApplication)
#include "GKXObserverTest.moc"
