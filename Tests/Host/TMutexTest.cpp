#include "ktl/TMutex.h"
#include "TestMain.h"

#include <QtTest/QtTest>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

class TMutexTest : public QObject
{
    Q_OBJECT

private slots:
    void OneThreadAtATimeHoldsTheLock();
    void ASecondThreadWaitsUntilTheLockIsFree();
    void AUniqueLockMayUnlockEarly();
};

void TMutexTest::OneThreadAtATimeHoldsTheLock()
{
    ktl::TMutex mutex;
    int iCount = 0;
    const auto work = [&mutex, &iCount] {
        for (int i = 0; i < 20000; ++i) {
            const std::lock_guard<ktl::TMutex> lock(mutex);
            ++iCount;
        }
    };
    std::vector<std::thread> listThreads;
    listThreads.reserve(4);
    for (int i = 0; i < 4; ++i)
        listThreads.emplace_back(work);
    for (std::thread& thread : listThreads)
        thread.join();
    QCOMPARE(iCount, 80000);
}

void TMutexTest::ASecondThreadWaitsUntilTheLockIsFree()
{
    ktl::TMutex mutex;
    std::atomic<bool> bEntered{false};
    mutex.lock();
    std::thread second([&mutex, &bEntered] {
        const std::lock_guard<ktl::TMutex> lock(mutex);
        bEntered = true;
    });
    const bool bEnteredEarly = QTest::qWaitFor([&bEntered] { return bEntered.load(); }, 50);
    mutex.unlock();
    second.join();
    QVERIFY(!bEnteredEarly);
    QVERIFY(bEntered);
}

void TMutexTest::AUniqueLockMayUnlockEarly()
{
    ktl::TMutex mutex;
    std::unique_lock<ktl::TMutex> lock(mutex);
    lock.unlock();
    const std::lock_guard<ktl::TMutex> again(mutex); // would never return if it were still held
    QVERIFY(!lock.owns_lock());
}

KX_TEST(TMutexTest, NoApplication)
#include "TMutexTest.moc"
