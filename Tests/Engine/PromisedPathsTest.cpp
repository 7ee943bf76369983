// Two tasks never write one file: how long a target path belongs to its task, and which number is free again.

#include "Engine/EngineCases.h"
#include "TestMain.h"

#include <utility>

using namespace EngineCases;

class PromisedPathsTest : public QObject
{
    Q_OBJECT

private slots:
    void ARecordSentWhileAnotherIsTakenInGetsItsOwnPath_data();
    void ARecordSentWhileAnotherIsTakenInGetsItsOwnPath();
    void ARetriedTaskHoldsItsPathAgain();
    void AFreedNumberIsGivenToTheNextList();
    void AFreedNumberIsGivenToTheNextRetry();
    void ADeletedTaskGivesUpItsOwnPathOnly();
    void ADeletedTaskHoldsItsPathUntilItsFilesAreGone_data();
    void ADeletedTaskHoldsItsPathUntilItsFilesAreGone();
    void ATaskDeletedInsideItsStartHoldsItsPathUntilItsFileIsGone();
    void AFileFinishedMeanwhileIsSeenByTheListThatReadTheFolder_data();
    void AFileFinishedMeanwhileIsSeenByTheListThatReadTheFolder();
    void ThousandsOfTasksKeepTheirPaths();
    void TasksWithoutAPathStayWithoutOne();
    void OneNameInOtherLettersIsOneFile_data();
    void OneNameInOtherLettersIsOneFile();

private:
    static void SendAs(EngineRig& rig, int iType, const char* pszRecordId, const char* pszFile);
};

// One task whose target is that file of the world's folder.
void PromisedPathsTest::SendAs(EngineRig& rig, int iType, const char* pszRecordId, const char* pszFile)
{
    rig.SendTyped(iType, pszRecordId, [&](auto& record) { record.strDownloadPath = rig.World().Path(pszFile); });
}

void PromisedPathsTest::ARecordSentWhileAnotherIsTakenInGetsItsOwnPath_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("inside"); // the first of these calls
    QTest::newRow("cloud, while its picture is asked for") << 0 << QByteArray("get ");
    QTest::newRow("device, while its row is announced") << 1 << QByteArray("SignalAddDownloadInfo 1");
    QTest::newRow("device, while it is started") << 1 << QByteArray("StartDeviceRecordDownload 1");
    QTest::newRow("IOT LAN, while its row is announced") << 2 << QByteArray("SignalAddDownloadInfo 1");
    QTest::newRow("LAN module, while its row is announced") << 3 << QByteArray("SignalAddDownloadInfo 1");
}

void PromisedPathsTest::ARecordSentWhileAnotherIsTakenInGetsItsOwnPath()
{
    QFETCH(int, type);
    QFETCH(QByteArray, inside);
    EngineRig rig(NoPictures);
    bool bSent = false;
    rig.Calls().WhenAdded(inside.constData(), [&rig, &bSent, iType = type] {
        if (!std::exchange(bSent, true))
            SendAs(rig, iType, "2", "x.mp4");
    });
    SendAs(rig, type, "1", "x.mp4");
    QCOMPARE(Paths(rig, {"1", "2"}), Texts({"~/x.mp4", "~/x(1).mp4"}));
}

// A finished task has given its path back. Retried, it writes there once more.
void PromisedPathsTest::ARetriedTaskHoldsItsPathAgain()
{
    EngineRig rig;
    SendAs(rig, 1, "1", "x.mp4");
    rig.RaiseState(Source::Device, "1", 2);
    rig.Engine().StartRecordDownloads(Rows(rig, {"1"}));
    SendAs(rig, 1, "2", "x.mp4");
    QCOMPARE(Paths(rig, {"1", "2"}), Texts({"~/x.mp4", "~/x(1).mp4"}));
}

void PromisedPathsTest::AFreedNumberIsGivenToTheNextList()
{
    EngineRig rig;
    SendAs(rig, 1, "1", "x.mp4");
    SendAs(rig, 1, "2", "x.mp4");
    rig.Engine().DeleteRecordDownload(1, QStringLiteral("2"), rig.World().Path("x(1).mp4"));
    SendAs(rig, 1, "3", "x.mp4");
    QCOMPARE(Paths(rig, {"2", "3"}), Texts({"~/x(1).mp4", "~/x(1).mp4"}));
}

void PromisedPathsTest::AFreedNumberIsGivenToTheNextRetry()
{
    EngineRig rig;
    for (const char* pszId : {"1", "2"}) {
        SendAs(rig, 1, pszId, "x.mp4");
        rig.RaiseState(Source::Device, pszId, 2);
    }
    SendAs(rig, 1, "3", "x.mp4"); // has the path that both had
    rig.Engine().StartRecordDownloads(Rows(rig, {"1"}));
    QCOMPARE(Paths(rig, {"1"}), Texts({"~/x(1).mp4"}));
    rig.Engine().DeleteRecordDownload(1, QStringLiteral("1"), rig.World().Path("x(1).mp4"));
    rig.Engine().StartRecordDownloads(Rows(rig, {"2"}));
    QCOMPARE(Paths(rig, {"2"}), Texts({"~/x(1).mp4"}));
}

void PromisedPathsTest::ADeletedTaskGivesUpItsOwnPathOnly()
{
    EngineRig rig;
    SendAs(rig, 1, "1", "x.mp4");
    rig.Engine().DeleteRecordDownload(1, QStringLiteral("gone"), rig.World().Path("x.mp4"));
    SendAs(rig, 1, "2", "x.mp4");
    QCOMPARE(Paths(rig, {"1", "2"}), Texts({"~/x.mp4", "~/x(1).mp4"}));
}

void PromisedPathsTest::ADeletedTaskHoldsItsPathUntilItsFilesAreGone_data()
{
    AddSourceRows();
}

// A record that the client sends inside the stop would otherwise write to the file that the stop is about to remove.
void PromisedPathsTest::ADeletedTaskHoldsItsPathUntilItsFilesAreGone()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    SendAs(rig, of.iType, "1", "x.mp4");
    rig.Calls().WhenAdded("Stop", [&rig, iType = of.iType] {
        SendAs(rig, iType, "2", "x.mp4");
        rig.World().WriteFile("x.mp4"); // the host's last bytes
    });
    rig.Engine().DeleteRecordDownload(of.iType, QStringLiteral("1"), rig.World().Path("x.mp4"));
    QCOMPARE(Paths(rig, {"2"}), Texts({"~/x(1).mp4"}));
    SendAs(rig, of.iType, "3", "x.mp4");
    QCOMPARE(Paths(rig, {"3"}), Texts({"~/x.mp4"}));
}

// The other source has a free place, and would write there at once.
void PromisedPathsTest::ATaskDeletedInsideItsStartHoldsItsPathUntilItsFileIsGone()
{
    EngineRig rig;
    Once(rig.Calls(), "StartDeviceRecordDownload 1", [&rig] {
        rig.Engine().DeleteRecordDownload(1, QStringLiteral("1"), rig.World().Path("x.mp4"));
        SendAs(rig, 3, "2", "x.mp4");
    });
    SendAs(rig, 1, "1", "x.mp4");
    QCOMPARE(Paths(rig, {"2"}), Texts({"~/x(1).mp4"}));
}

void PromisedPathsTest::AFileFinishedMeanwhileIsSeenByTheListThatReadTheFolder_data()
{
    QTest::addColumn<QByteArray>("inside");
    QTest::newRow("inside the list") << QByteArray("SignalAddDownloadInfo free39");
    QTest::newRow("inside a list inside it") << QByteArray("SignalAddDownloadInfo inner");
}

// The list is long enough for its folder to be read before that file is there.
void PromisedPathsTest::AFileFinishedMeanwhileIsSeenByTheListThatReadTheFolder()
{
    QFETCH(QByteArray, inside);
    EngineRig rig;
    SendAs(rig, 1, "1", "late.mp4");
    QStringList ids;
    for (int i = 0; i < 40; ++i)
        ids.append(QStringLiteral("free%1").arg(i));
    if (inside.endsWith("inner"))
        Once(rig.Calls(), "SignalAddDownloadInfo free39", [&rig] { SendAs(rig, 1, "inner", "inner.mp4"); });
    Once(rig.Calls(), inside.constData(), [&rig] {
        rig.World().WriteFile("late.mp4");
        rig.RaiseState(Source::Device, "1", 2);
    });
    const auto atLate = [&rig](auto& record) { record.strDownloadPath = rig.World().Path("late.mp4"); };
    const QByteArray bytes = rig.StreamTyped(2, ids) + rig.StreamTyped(2, Texts({"last"}), atLate);
    rig.Send("EventNotifyDownloadRecordList", {bytes, 2});
    QCOMPARE(rig.Calls().Count("SignalDownloadRecordStates 1 2"), 1);
    QCOMPARE(Paths(rig, {"last"}), Texts({"~/late(1).mp4"}));
}

void PromisedPathsTest::ThousandsOfTasksKeepTheirPaths()
{
    EngineRig rig;
    std::vector<KXDownLoadList::DownloadLanModuleRecordInfo> records;
    for (int i = 0; i < 2500; ++i) {
        records.push_back(rig.LanModule(QByteArray::number(i).constData()));
        records.back().strDownloadPath = rig.World().Path("x.mp4");
    }
    rig.SendList(3, records);
    SendAs(rig, 3, "last", "x.mp4");
    QCOMPARE(Paths(rig, {"0", "1", "2", "999", "2499", "last"}),
             Texts({"~/x.mp4", "~/x(1).mp4", "~/x(2).mp4", "~/x(999).mp4", "~/x(2499).mp4", "~/x(2500).mp4"}));
}

void PromisedPathsTest::TasksWithoutAPathStayWithoutOne()
{
    EngineRig rig;
    for (const char* pszId : {"1", "2"})
        rig.SendTyped(1, pszId, [](auto& record) { record.strDownloadPath = QString(); });
    QCOMPARE(Paths(rig, {"1", "2"}), Texts({"", ""}));
    QCOMPARE(rig.Calls().Short({"Start", "Signal"}), Texts({"SignalAddDownloadInfo 1", "SignalAddDownloadInfo 2"}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void PromisedPathsTest::OneNameInOtherLettersIsOneFile_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("given");
    const auto row = [](const char* pszName, const char* pszFirst, const char* pszSecond, const char* pszGiven) {
        QTest::newRow(pszName) << QString::fromUtf8(pszFirst) << QString::fromUtf8(pszSecond)
                               << QString::fromUtf8(pszGiven);
    };
    row("capitals", "x.mp4", "X.MP4", "~/X(1).MP4");
    row("capitals with marks", "ü.mp4", "Ü.mp4", "~/Ü(1).mp4");
    row("capitals beyond the first plane", "𐐨.mp4", "𐐀.mp4", "~/𐐀(1).mp4");
    row("two slashes", "d/x.mp4", "d//x.mp4", "~/d//x(1).mp4");
    row("a dot folder", "d/x.mp4", "d/./x.mp4", "~/d/./x(1).mp4");
    row("the folder above", "d/x.mp4", "e/../d/x.mp4", "~/d/x(1).mp4");
}

void PromisedPathsTest::OneNameInOtherLettersIsOneFile()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QString, given);
    EngineRig rig;
    SendAs(rig, 1, "1", first.toUtf8().constData());
    SendAs(rig, 1, "2", second.toUtf8().constData());
    QCOMPARE(Paths(rig, {"2"}), QStringList{given});
}

KX_TEST(PromisedPathsTest, QCoreApplication)
#include "PromisedPathsTest.moc"
