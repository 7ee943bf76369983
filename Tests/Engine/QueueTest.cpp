// The engine's two containers: the queue of tasks and the promised target paths.

#include "FakeHost/FakeWorld.h"
#include "Module/PromisedPaths.h"
#include "Module/RecordQueue.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

#include <algorithm>
#include <deque>
#include <random>

using Task = KXDownLoadList::DownloadDeviceRecordInfo;

class QueueTest : public QObject
{
    Q_OBJECT

private slots:
    void AnEmptyQueueHasNothing();
    void TasksComeOutInTheOrderTheyWentIn();
    void FindGivesTheOldestOfAnId();
    void FindIfGivesTheOldestThatIsAccepted();
    void RemoveTakesEveryTaskOfAnId();
    void RemoveTaskTakesJustThatTask_data();
    void RemoveTaskTakesJustThatTask();
    void RemoveTaskOfAnotherQueueIsRefused();
    void ClearLetsEveryTaskGo();
    void TasksAreACopyOfTheOrder();
    void AQueueActsLikeAPlainList();
    void AThousandTasksActLikeAPlainList();

    void APathIsPromisedToOneTask();
    void APathIsOneHoweverItIsWritten_data();
    void APathIsOneHoweverItIsWritten();
    void ARelativePathIsTheAbsoluteOne();
    void APromiseEndsWithItsTask();
    void APromiseEndsWhenItIsReleased_data();
    void APromiseEndsWhenItIsReleased();
    void AnEmptyPathIsNeverPromised();
    void ALaterPromiseReplacesAnEarlierOne();
    void LivingPromisesOutliveManyDeadOnes();
};

namespace {

std::shared_ptr<Task> MakeTask(const char* pszId, const char* pszPath = "")
{
    auto pTask = std::make_shared<Task>();
    pTask->strRecordId = QString::fromUtf8(pszId);
    pTask->strDownloadPath = QString::fromUtf8(pszPath);
    return pTask;
}

// Three tasks of id "a" between others: x a1 a2 y a3 z.
struct Six
{
    std::shared_ptr<Task> x = MakeTask("x");
    std::shared_ptr<Task> a1 = MakeTask("a", "1");
    std::shared_ptr<Task> a2 = MakeTask("a", "2");
    std::shared_ptr<Task> y = MakeTask("y");
    std::shared_ptr<Task> a3 = MakeTask("a", "3");
    std::shared_ptr<Task> z = MakeTask("z");
    RecordQueue queue;

    Six()
    {
        for (const auto& pTask : {x, a1, a2, y, a3, z})
            queue.Append(pTask);
    }
};

QStringList Content(const RecordQueue& queue)
{
    QStringList content;
    for (const DownloadRecordInfoPtr& pTask : queue.Tasks())
        content.append(pTask->strRecordId + pTask->strDownloadPath);
    return content;
}

// What a queue does, in the simplest way.
struct PlainQueue
{
    std::deque<std::shared_ptr<Task>> tasks;

    void Append(RecordQueue& queue, const std::shared_ptr<Task>& pTask)
    {
        queue.Append(pTask);
        tasks.push_back(pTask);
    }
    void Remove(const QString& strId)
    {
        const auto hasId = [&strId](const auto& pTask) { return pTask->strRecordId == strId; };
        tasks.erase(std::remove_if(tasks.begin(), tasks.end(), hasId), tasks.end());
    }
    // The oldest place of the task.
    void RemoveTask(const std::shared_ptr<Task>& pTask) { tasks.erase(std::find(tasks.begin(), tasks.end(), pTask)); }
    DownloadRecordInfoPtr Find(const QString& strId) const
    {
        const auto found = std::find_if(tasks.begin(), tasks.end(),
                                        [&strId](const auto& pTask) { return pTask->strRecordId == strId; });
        return found == tasks.end() ? DownloadRecordInfoPtr() : DownloadRecordInfoPtr(*found);
    }
    bool HasTasksOf(const RecordQueue& queue) const
    {
        const QVector<DownloadRecordInfoPtr> others = queue.Tasks();
        return std::equal(tasks.begin(), tasks.end(), others.begin(), others.end());
    }
};

} // namespace

void QueueTest::AnEmptyQueueHasNothing()
{
    RecordQueue queue;
    QVERIFY(queue.IsEmpty());
    QCOMPARE(queue.Count(), 0);
    QVERIFY(!queue.First());
    QVERIFY(!queue.Find(QStringLiteral("a")));
    QVERIFY(!queue.Contains(QString()));
    QVERIFY(!queue.Remove(QStringLiteral("a")));
    QVERIFY(!queue.RemoveTask(MakeTask("a")));
    QVERIFY(!queue.FindIf(QStringLiteral("a"), [](const auto&) { return true; }));
    QVERIFY(queue.Tasks().isEmpty());
}

void QueueTest::TasksComeOutInTheOrderTheyWentIn()
{
    Six six;
    QStringList order;
    while (!six.queue.IsEmpty()) {
        const DownloadRecordInfoPtr pTask = six.queue.First();
        order.append(pTask->strRecordId + pTask->strDownloadPath);
        QVERIFY(six.queue.RemoveTask(pTask));
    }
    QCOMPARE(order, Texts({"x", "a1", "a2", "y", "a3", "z"}));
    QCOMPARE(six.queue.Count(), 0);
}

void QueueTest::FindGivesTheOldestOfAnId()
{
    Six six;
    QCOMPARE(six.queue.Find(QStringLiteral("a")), DownloadRecordInfoPtr(six.a1));
    QCOMPARE(six.queue.Find(QStringLiteral("z")), DownloadRecordInfoPtr(six.z));
    QVERIFY(!six.queue.Find(QStringLiteral("A")));
    QVERIFY(six.queue.RemoveTask(six.a1));
    QCOMPARE(six.queue.Find(QStringLiteral("a")), DownloadRecordInfoPtr(six.a2));
}

void QueueTest::FindIfGivesTheOldestThatIsAccepted()
{
    Six six;
    const auto beyond = [](const char* pszPath) {
        return [pszPath](const auto& record) { return record.strDownloadPath > QString::fromUtf8(pszPath); };
    };
    const QString strId = QStringLiteral("a");
    QCOMPARE(six.queue.FindIf(strId, beyond("0")), DownloadRecordInfoPtr(six.a1));
    QCOMPARE(six.queue.FindIf(strId, beyond("1")), DownloadRecordInfoPtr(six.a2));
    QCOMPARE(six.queue.FindIf(strId, beyond("2")), DownloadRecordInfoPtr(six.a3));
    QVERIFY(!six.queue.FindIf(strId, beyond("3")));
}

void QueueTest::RemoveTakesEveryTaskOfAnId()
{
    Six six;
    QVERIFY(six.queue.Remove(QStringLiteral("a")));
    QCOMPARE(Content(six.queue), Texts({"x", "y", "z"}));
    QVERIFY(!six.queue.Contains(QStringLiteral("a")));
    QVERIFY(!six.queue.Remove(QStringLiteral("a")));
    six.queue.Append(six.a2);
    QCOMPARE(Content(six.queue), Texts({"x", "y", "z", "a2"}));
}

void QueueTest::RemoveTaskTakesJustThatTask_data()
{
    QTest::addColumn<QVector<int>>("removed");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("the oldest of its id") << QVector<int>{1} << Texts({"x", "a2", "y", "a3", "z"});
    QTest::newRow("one in the middle") << QVector<int>{2} << Texts({"x", "a1", "y", "a3", "z"});
    QTest::newRow("the youngest") << QVector<int>{3} << Texts({"x", "a1", "a2", "y", "z"});
    QTest::newRow("oldest, then youngest") << QVector<int>{1, 3} << Texts({"x", "a2", "y", "z"});
    QTest::newRow("youngest, then the middle") << QVector<int>{3, 2} << Texts({"x", "a1", "y", "z"});
    QTest::newRow("all, oldest first") << QVector<int>{1, 2, 3} << Texts({"x", "y", "z"});
    QTest::newRow("all, youngest first") << QVector<int>{3, 2, 1} << Texts({"x", "y", "z"});
}

void QueueTest::RemoveTaskTakesJustThatTask()
{
    QFETCH(QVector<int>, removed);
    QFETCH(QStringList, left);
    Six six;
    const std::shared_ptr<Task> tasks[] = {nullptr, six.a1, six.a2, six.a3};
    for (const int i : removed)
        QVERIFY(six.queue.RemoveTask(tasks[i]));
    QVERIFY(!six.queue.RemoveTask(tasks[removed.last()]));
    QCOMPARE(Content(six.queue), left);
    const auto pNew = MakeTask("a", "4"); // the chain of its id is whole
    six.queue.Append(pNew);
    QCOMPARE(
        six.queue.FindIf(QStringLiteral("a"), [](const auto& r) { return r.strDownloadPath == QLatin1String("4"); }),
        DownloadRecordInfoPtr(pNew));
    QVERIFY(six.queue.Remove(QStringLiteral("a")));
    QCOMPARE(Content(six.queue), Texts({"x", "y", "z"}));
}

void QueueTest::RemoveTaskOfAnotherQueueIsRefused()
{
    Six six;
    QVERIFY(!six.queue.RemoveTask(MakeTask("a", "1"))); // alike, but not the same
    QCOMPARE(six.queue.Count(), 6);
}

void QueueTest::ClearLetsEveryTaskGo()
{
    Six six;
    six.queue.Clear();
    QVERIFY(six.queue.IsEmpty());
    QVERIFY(!six.queue.Contains(QStringLiteral("a")));
    QCOMPARE(six.a1.use_count(), 1L);
    six.queue.Append(six.y);
    QCOMPARE(Content(six.queue), Texts({"y"}));
}

void QueueTest::TasksAreACopyOfTheOrder()
{
    Six six;
    const auto tasks = six.queue.Tasks();
    six.queue.Clear();
    QCOMPARE(tasks.size(), 6);
    QCOMPARE(tasks.first(), DownloadRecordInfoPtr(six.x));
}

// Random operations on the queue and on a list that does the same in the simplest way.
void QueueTest::AQueueActsLikeAPlainList()
{
    std::mt19937 random(20240229); // always the same operations
    RecordQueue queue;
    std::deque<std::shared_ptr<Task>> plain;
    for (int i = 0; i < 5000; ++i) {
        const QByteArray id = QByteArray::number(static_cast<int>(random() % (i < 2500 ? 7 : 400)));
        const auto hasId = [&id](const auto& pTask) { return pTask->strRecordId == QString::fromUtf8(id); };
        const int iOperation = static_cast<int>(random() % 10);
        if (iOperation < 6) {
            const auto pTask = MakeTask(id.constData(), QByteArray::number(i).constData());
            queue.Append(pTask);
            plain.push_back(pTask);
        } else if (iOperation < 9 && !plain.empty()) {
            const auto at = plain.begin() + static_cast<std::ptrdiff_t>(random() % plain.size());
            QVERIFY(queue.RemoveTask(*at));
            plain.erase(at);
        } else if (iOperation == 9 && i % 3 == 0) {
            const auto end = std::remove_if(plain.begin(), plain.end(), hasId);
            QCOMPARE(queue.Remove(QString::fromUtf8(id)), end != plain.end());
            plain.erase(end, plain.end());
        }
        const auto first = std::find_if(plain.begin(), plain.end(), hasId);
        QCOMPARE(queue.Find(QString::fromUtf8(id)),
                 first == plain.end() ? DownloadRecordInfoPtr() : DownloadRecordInfoPtr(*first));
        QCOMPARE(queue.Count(), static_cast<int>(plain.size()));
    }
    QStringList content;
    for (const auto& pTask : plain)
        content.append(pTask->strRecordId + pTask->strDownloadPath);
    QCOMPARE(Content(queue), content);
}

// From a thousand tasks of 300 ids, some of them queued twice, down to none; all is compared after each operation.
void QueueTest::AThousandTasksActLikeAPlainList()
{
    std::mt19937 random(20200102); // always the same operations
    RecordQueue queue;
    PlainQueue plain;
    for (int i = 0; i < 1000; ++i)
        plain.Append(queue, MakeTask(QByteArray::number(static_cast<int>(random() % 300)).constData()));
    QCOMPARE(queue.Count(), 1000);
    for (int i = 0; i < 3000 && !plain.tasks.empty(); ++i) {
        const auto pAny = plain.tasks[random() % plain.tasks.size()];
        const QString strId = pAny->strRecordId;
        switch (random() % 8) {
        case 0:
            plain.Append(queue, MakeTask(QByteArray::number(static_cast<int>(random() % 300)).constData()));
            break;
        case 1:
            plain.Append(queue, pAny); // the same task once more
            break;
        case 2:
            QVERIFY(queue.Remove(strId));
            plain.Remove(strId);
            break;
        case 3:
        case 4:
            QCOMPARE(queue.First(), DownloadRecordInfoPtr(plain.tasks.front()));
            QVERIFY(queue.RemoveTask(queue.First()));
            plain.tasks.pop_front();
            break;
        default:
            QVERIFY(queue.RemoveTask(pAny));
            plain.RemoveTask(pAny);
            break;
        }
        QVERIFY(plain.HasTasksOf(queue));
        for (const QString& strAsked : {strId, QString::number(random() % 300)})
            QCOMPARE(queue.Find(strAsked), plain.Find(strAsked));
    }
    QVERIFY(queue.IsEmpty());
}

void QueueTest::APathIsPromisedToOneTask()
{
    PromisedPaths paths;
    const auto pTask = MakeTask("1", "/d/a.mp4");
    QVERIFY(!paths.IsTaken(pTask->strDownloadPath));
    paths.Hold(pTask);
    QVERIFY(paths.IsTaken(QStringLiteral("/d/a.mp4")));
    QVERIFY(paths.IsTaken(QStringLiteral("/d/a.mp4"), MakeTask("1", "/d/a.mp4"))); // another task of that id
    QVERIFY(!paths.IsTaken(QStringLiteral("/d/a.mp4"), pTask));
    QVERIFY(!paths.IsTaken(QStringLiteral("/d/a(1).mp4")));
    QVERIFY(!paths.IsTaken(QString()));
}

void QueueTest::APathIsOneHoweverItIsWritten_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("taken");
    QTest::newRow("as it stands") << QStringLiteral("/d/Übung.mp4") << true;
    QTest::newRow("with a doubled slash") << QStringLiteral("/d//Übung.mp4") << true;
    QTest::newRow("through a folder and back") << QStringLiteral("/d/e/../Übung.mp4") << true;
    QTest::newRow("in other case, as some file systems ignore it") << QStringLiteral("/D/üBUNG.MP4") << true;
    QTest::newRow("in another folder") << QStringLiteral("/e/Übung.mp4") << false;
}

void QueueTest::APathIsOneHoweverItIsWritten()
{
    QFETCH(QString, path);
    QFETCH(bool, taken);
    PromisedPaths paths;
    const auto pTask = MakeTask("1", "/d/Übung.mp4");
    paths.Hold(pTask);
    QCOMPARE(paths.IsTaken(path), taken);
}

void QueueTest::ARelativePathIsTheAbsoluteOne()
{
    const QString strAbsolute = QDir::currentPath() + QStringLiteral("/folder/a.mp4");
    const auto pRelative = MakeTask("1", "folder/a.mp4");
    const auto pAbsolute = MakeTask("1", strAbsolute.toUtf8().constData());
    for (const auto& pTask : {pRelative, pAbsolute}) {
        PromisedPaths paths;
        paths.Hold(pTask);
        QVERIFY(paths.IsTaken(strAbsolute));
        QVERIFY(paths.IsTaken(QStringLiteral("folder/a.mp4")));
        QVERIFY(paths.IsTaken(QStringLiteral("./folder/a.mp4")));
        QVERIFY(!paths.IsTaken(QStringLiteral("a.mp4")));
        QVERIFY(!paths.IsTaken(QStringLiteral("/folder/a.mp4")));
        paths.Release(pTask == pRelative ? strAbsolute : QStringLiteral("folder/a.mp4"), QStringLiteral("1"));
        QVERIFY(!paths.IsTaken(strAbsolute));
        QVERIFY(!paths.IsTaken(QStringLiteral("folder/a.mp4")));
    }
}

void QueueTest::APromiseEndsWithItsTask()
{
    PromisedPaths paths;
    paths.Hold(MakeTask("1", "/d/a.mp4")); // nobody else holds it
    QVERIFY(!paths.IsTaken(QStringLiteral("/d/a.mp4")));
}

void QueueTest::APromiseEndsWhenItIsReleased_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("taken");
    QTest::newRow("by its task") << QStringLiteral("/d/a.mp4") << QStringLiteral("1") << false;
    QTest::newRow("by another task") << QStringLiteral("/d/a.mp4") << QStringLiteral("2") << true;
    QTest::newRow("of another path") << QStringLiteral("/d/b.mp4") << QStringLiteral("1") << true;
    QTest::newRow("of no path") << QString() << QStringLiteral("1") << true;
}

void QueueTest::APromiseEndsWhenItIsReleased()
{
    QFETCH(QString, path);
    QFETCH(QString, id);
    QFETCH(bool, taken);
    PromisedPaths paths;
    const auto pTask = MakeTask("1", "/d/a.mp4");
    paths.Hold(pTask);
    paths.Release(path, id);
    QCOMPARE(paths.IsTaken(QStringLiteral("/d/a.mp4")), taken);
}

void QueueTest::AnEmptyPathIsNeverPromised()
{
    PromisedPaths paths;
    const auto pTask = MakeTask("1");
    paths.Hold(pTask);
    QVERIFY(!paths.IsTaken(QString()));
    QVERIFY(!paths.IsTaken(QStringLiteral(".")));
}

void QueueTest::ALaterPromiseReplacesAnEarlierOne()
{
    PromisedPaths paths;
    const auto pFirst = MakeTask("1", "/d/a.mp4");
    const auto pSecond = MakeTask("2", "/d/a.mp4");
    paths.Hold(pFirst);
    paths.Hold(pSecond);
    QVERIFY(paths.IsTaken(QStringLiteral("/d/a.mp4"), pFirst));
    QVERIFY(!paths.IsTaken(QStringLiteral("/d/a.mp4"), pSecond));
}

void QueueTest::LivingPromisesOutliveManyDeadOnes()
{
    PromisedPaths paths;
    QVector<std::shared_ptr<Task>> living;
    for (int i = 0; i < 5000; ++i) {
        const auto pTask = MakeTask("1", QByteArray("/d/").append(QByteArray::number(i)).constData());
        paths.Hold(pTask);
        if (i % 2 == 0)
            living.append(pTask);
    }
    int iTaken = 0;
    for (int i = 0; i < 5000; ++i)
        iTaken += paths.IsTaken(QStringLiteral("/d/%1").arg(i)) ? 1 : 0;
    QCOMPARE(iTaken, 2500);
    for (const auto& pTask : living)
        QVERIFY(paths.IsTaken(pTask->strDownloadPath));
}

QTEST_GUILESS_MAIN(QueueTest)
#include "QueueTest.moc"
