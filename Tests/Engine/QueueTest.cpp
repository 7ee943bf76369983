// The engine's two containers: the queue of tasks and the promised target paths.

#include "FakeHost/FakeWorld.h"
#include "Module/PromisedPaths.h"
#include "Module/RecordQueue.h"
#include "TestMain.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

using Task = KXDownLoadList::DownloadDeviceRecordInfo;

class QueueTest : public QObject
{
    Q_OBJECT

private slots:
    void AnEmptyQueueHasNothing();
    void TasksStandInTheOrderTheyWentIn();
    void TasksOfAnIdComeOldestFirst();
    void RemoveTakesJustThatTask_data();
    void RemoveTakesJustThatTask();

    void APathIsPromisedToOneTask();
    void APathIsTheSameHoweverItIsWritten_data();
    void APathIsTheSameHoweverItIsWritten();
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

// Three tasks of id "a" between others, told apart by their paths: x a1 a2 y a3 z.
struct Six
{
    Six()
    {
        for (const auto& pRecord : {MakeTask("x"), MakeTask("a", "1"), MakeTask("a", "2"), MakeTask("y"),
                                    MakeTask("a", "3"), MakeTask("z")}) {
            tasks.append(std::make_shared<DownloadTask>(pRecord));
            queue.Append(tasks.last());
        }
    }

    DownloadTasks tasks;
    RecordQueue queue;
};

QStringList Texts(const DownloadTasks& tasks)
{
    QStringList texts;
    for (const DownloadTaskPtr& pTask : tasks)
        texts.append(pTask->strRecordId + pTask->pRecord->strDownloadPath);
    return texts;
}

} // namespace

void QueueTest::AnEmptyQueueHasNothing()
{
    const RecordQueue queue;
    QVERIFY(queue.IsEmpty());
    QCOMPARE(queue.Count(), 0);
    QCOMPARE(Texts(queue.Tasks()), QStringList());
    QCOMPARE(Texts(queue.TasksOf(QStringLiteral("a"))), QStringList());
}

void QueueTest::TasksStandInTheOrderTheyWentIn()
{
    const Six six;
    QCOMPARE(six.queue.Count(), 6);
    QCOMPARE(Texts(six.queue.Tasks()), Texts({"x", "a1", "a2", "y", "a3", "z"}));
    QCOMPARE(*six.queue.begin(), six.tasks[0]);
}

void QueueTest::TasksOfAnIdComeOldestFirst()
{
    const Six six;
    QCOMPARE(Texts(six.queue.TasksOf(QStringLiteral("a"))), Texts({"a1", "a2", "a3"}));
    QCOMPARE(Texts(six.queue.TasksOf(QStringLiteral("b"))), QStringList());
}

void QueueTest::RemoveTakesJustThatTask_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<QStringList>("leftOfA");
    QTest::newRow("the first") << 0 << Texts({"a1", "a2", "y", "a3", "z"}) << Texts({"a1", "a2", "a3"});
    QTest::newRow("the oldest of its id") << 1 << Texts({"x", "a2", "y", "a3", "z"}) << Texts({"a2", "a3"});
    QTest::newRow("the middle of its id") << 2 << Texts({"x", "a1", "y", "a3", "z"}) << Texts({"a1", "a3"});
    QTest::newRow("the youngest of its id") << 4 << Texts({"x", "a1", "a2", "y", "z"}) << Texts({"a1", "a2"});
    QTest::newRow("the last") << 5 << Texts({"x", "a1", "a2", "y", "a3"}) << Texts({"a1", "a2", "a3"});
}

void QueueTest::RemoveTakesJustThatTask()
{
    QFETCH(int, position);
    QFETCH(QStringList, left);
    QFETCH(QStringList, leftOfA);
    Six six;
    six.queue.Remove(six.tasks[position]);
    QCOMPARE(Texts(six.queue.Tasks()), left);
    QCOMPARE(Texts(six.queue.TasksOf(QStringLiteral("a"))), leftOfA);
    six.queue.Append(six.tasks[position]); // and may come back, at the end
    QCOMPARE(six.queue.Tasks().last(), six.tasks[position]);
}

void QueueTest::APathIsPromisedToOneTask()
{
    PromisedPaths paths;
    const auto pTask = MakeTask("1", "/d/a.mp4");
    QVERIFY(!paths.IsTaken(pTask->strDownloadPath));
    paths.Hold(pTask);
    QVERIFY(paths.IsTaken(QStringLiteral("/d/a.mp4")));
    QVERIFY(!paths.IsHeldBy(MakeTask("1", "/d/a.mp4"))); // another task of that id
    QVERIFY(paths.IsHeldBy(pTask));
    QVERIFY(!paths.IsTaken(QStringLiteral("/d/a(1).mp4")));
    QVERIFY(!paths.IsTaken(QString()));
}

void QueueTest::APathIsTheSameHoweverItIsWritten_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("taken");
    QTest::newRow("as it stands") << QStringLiteral("/d/Übung.mp4") << true;
    QTest::newRow("with a doubled slash") << QStringLiteral("/d//Übung.mp4") << true;
    QTest::newRow("through a folder and back") << QStringLiteral("/d/e/../Übung.mp4") << true;
    QTest::newRow("in other case, as some file systems ignore it") << QStringLiteral("/D/üBUNG.MP4") << true;
    QTest::newRow("in another folder") << QStringLiteral("/e/Übung.mp4") << false;
}

void QueueTest::APathIsTheSameHoweverItIsWritten()
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
    QVERIFY(!paths.IsHeldBy(pFirst));
    QVERIFY(paths.IsHeldBy(pSecond));
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

KX_TEST(QueueTest, QCoreApplication)
#include "QueueTest.moc"
