#include "Engine/EngineCases.h"
#include "TestMain.h"

#include <QtCore/QDir>

using namespace EngineCases;

// Target folders, unique paths, the disk guard, removal of partial files: driven from outside, on real files in the
// world's folder.
class StorageTest : public QObject
{
    Q_OBJECT

private slots:
    void ExistingFolderIsUsedWithoutALine();
    void MissingFolderChainIsMadeBeforeTheStart_data();
    void MissingFolderChainIsMadeBeforeTheStart();
    void FolderOfARelativePathIsMadeAbsolute();
    void FirstFreePathIsTaken_data();
    void FirstFreePathIsTaken();
    void UnarmedGuardDoesNotMeasure();
    void ArmedGuardDecidesByWholeMebibytes_data();
    void ArmedGuardDecidesByWholeMebibytes();
    void ArmedGuardHoldsEverySource_data();
    void ArmedGuardHoldsEverySource();
    void FullDiskIsLoggedOncePerSchedulerRun();
    void GuardDisarmsAtTheFirstRunWithRoom();
    void EventArmsTheGuardAgain();
    void DeletingRemovesFileAndPicture_data();
    void DeletingRemovesFileAndPicture();
    void FileThatCannotBeRemovedIsLoggedAsFailure_data();
    void FileThatCannotBeRemovedIsLoggedAsFailure();
    void EveryLineNamesTheEngineAsItsFile();

private:
    static void Arm(EngineRig& rig, std::optional<quint64> freeBytes);
};

void StorageTest::Arm(EngineRig& rig, std::optional<quint64> freeBytes)
{
    ScriptedDisk::SetFreeBytes(freeBytes);
    rig.Send("EventNotifyDeleteDownloadRecord", {QStringLiteral("/v")});
    rig.Calls().Clear();
}

void StorageTest::ExistingFolderIsUsedWithoutALine()
{
    EngineRig rig;
    rig.SendTyped(1, "7");
    QCOMPARE(rig.Calls().Count("Start"), 1);
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void StorageTest::MissingFolderChainIsMadeBeforeTheStart_data()
{
    AddSourceRows();
}

void StorageTest::MissingFolderChainIsMadeBeforeTheStart()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    FakeWorld& world = rig.World();
    bool bThereAtStart = false;
    rig.Calls().WhenAdded("Start", [&] { bThereAtStart = world.HasFile("new/b ö/c"); });
    rig.SendTyped(of.iType, "7", [&](auto& record) { record.strDownloadPath = world.Path("new/b ö/c/r.mp4"); });
    QCOMPARE(bThereAtStart, true);
    QCOMPARE(world.Log().Lines(),
             Texts({"2 RecordDownloadModule::EnsureDownloadPathExists Created download directory: ~/new/b ö/c"}));
}

void StorageTest::FolderOfARelativePathIsMadeAbsolute()
{
    EngineRig rig;
    const QString strBefore = QDir::currentPath();
    QVERIFY(QDir::setCurrent(rig.World().Folder()));
    rig.SendTyped(1, "7", [](auto& record) { record.strDownloadPath = QStringLiteral("rel/r.mp4"); });
    QVERIFY(QDir::setCurrent(strBefore));
    QCOMPARE(rig.World().HasFile("rel"), true);
    QCOMPARE(rig.World().Log().Lines(),
             Texts({"2 RecordDownloadModule::EnsureDownloadPathExists Created download directory: ~/rel"}));
}

void StorageTest::FirstFreePathIsTaken_data()
{
    QTest::addColumn<QStringList>("existing");
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QString>("given");
    const auto row = [](const char* pszName, const QStringList& existing, const char* pszAsked, const char* pszGiven) {
        QTest::newRow(pszName) << existing << QString::fromUtf8(pszAsked) << QString::fromUtf8(pszGiven);
    };
    row("nothing is there", Texts({}), "x.mp4", "x.mp4");
    row("the file is there", Texts({"x.mp4"}), "x.mp4", "x(1).mp4");
    row("the file and the first number are there", Texts({"x.mp4", "x(1).mp4"}), "x.mp4", "x(2).mp4");
    row("only the first number is there", Texts({"x(1).mp4"}), "x.mp4", "x.mp4");
    row("a gap is filled", Texts({"x.mp4", "x(2).mp4"}), "x.mp4", "x(1).mp4");
    row("a numbered name is a name like any other", Texts({"x(1).mp4"}), "x(1).mp4", "x(1)(1).mp4");
    row("the last dot counts", Texts({"a.b.mp4"}), "a.b.mp4", "a.b(1).mp4");
    row("a name without a dot is numbered at its end", Texts({"x"}), "x", "x(1)");
    row("a dot of the folder does not count", Texts({"d.d/x"}), "d.d/x", "d.d/x(1)");
    row("a name that begins with its only dot", Texts({".mp4"}), ".mp4", "(1).mp4");
    row("blanks and other letters stay", Texts({"ä ö.mp4"}), "ä ö.mp4", "ä ö(1).mp4");
    row("a percent sign stays", Texts({"a%1.mp4"}), "a%1.mp4", "a%1(1).mp4");
    row("a folder of that name is in the way too", Texts({"x.mp4/inside"}), "x.mp4", "x(1).mp4");
    row("ten are there",
        Texts({"x.mp4", "x(1).mp4", "x(2).mp4", "x(3).mp4", "x(4).mp4", "x(5).mp4", "x(6).mp4", "x(7).mp4", "x(8).mp4",
               "x(9).mp4"}),
        "x.mp4", "x(10).mp4");
}

void StorageTest::FirstFreePathIsTaken()
{
    QFETCH(QStringList, existing);
    QFETCH(QString, asked);
    QFETCH(QString, given);
    EngineRig rig;
    for (const QString& strName : existing)
        rig.World().WriteFile(strName.toUtf8().constData());
    rig.SendTyped(1, "7", [&](auto& record) { record.strDownloadPath = rig.World().Path(asked.toUtf8().constData()); });
    QCOMPARE(rig.Task("7")->strDownloadPath, rig.World().Path(given.toUtf8().constData()));
    QVERIFY(
        rig.Calls().Lines("StartDeviceRecordDownload 7").value(0).contains(QStringLiteral(" path=~/%1 ").arg(given)));
    // The name is the one that was received.
    QCOMPARE(rig.Task("7")->strFileName, asked.section(QLatin1Char('/'), -1));
}

void StorageTest::UnarmedGuardDoesNotMeasure()
{
    EngineRig rig;
    ScriptedDisk::SetFreeBytes(0);
    rig.SendTyped(1, "7");
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 7"}));
    QCOMPARE(ScriptedDisk::Asked(), QList<QByteArray>());
}

void StorageTest::ArmedGuardDecidesByWholeMebibytes_data()
{
    QTest::addColumn<bool>("measured");
    QTest::addColumn<quint64>("freeBytes");
    QTest::addColumn<int>("starts");
    QTest::newRow("49 MiB are too few") << true << Q_UINT64_C(51380224) << 0;
    QTest::newRow("50 MiB less one byte are too few") << true << Q_UINT64_C(52428799) << 0;
    QTest::newRow("50 MiB are enough") << true << Q_UINT64_C(52428800) << 1;
    QTest::newRow("nothing is too few") << true << Q_UINT64_C(0) << 0;
    QTest::newRow("more than a signed number holds is enough") << true << Q_UINT64_C(18446744073709551615) << 1;
    QTest::newRow("a failed query counts as nothing") << false << Q_UINT64_C(0) << 0;
}

void StorageTest::ArmedGuardDecidesByWholeMebibytes()
{
    QFETCH(bool, measured);
    QFETCH(quint64, freeBytes);
    QFETCH(int, starts);
    EngineRig rig;
    Arm(rig, measured ? std::optional<quint64>(freeBytes) : std::nullopt);
    rig.SendTyped(1, "7");
    QCOMPARE(rig.Calls().Count("Start"), starts);
    QCOMPARE(rig.World().Log().Lines(),
             starts ? Texts({})
                    : Texts({"6 RecordDownloadModule::JudgeDiskIsFull The free disk space is less than 50 MB."}));
    QCOMPARE(ScriptedDisk::Asked(), QList<QByteArray>{"/v"});
}

void StorageTest::ArmedGuardHoldsEverySource_data()
{
    AddSourceRows();
}

void StorageTest::ArmedGuardHoldsEverySource()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    Arm(rig, 49 * ScriptedDisk::MiB);
    rig.SendTyped(of.iType, "7");
    QCOMPARE(rig.Calls().Short({"Start", "Signal"}), Texts({"SignalAddDownloadInfo 7"}));
    QCOMPARE(rig.World().Log().Lines("6 ").size(), 1);
}

void StorageTest::FullDiskIsLoggedOncePerSchedulerRun()
{
    EngineRig rig;
    Arm(rig, 49 * ScriptedDisk::MiB);
    rig.SendList(1, std::vector<KXDownLoadList::DownloadDeviceRecordInfo>{rig.Device("a"), rig.Device("b")});
    QCOMPARE(rig.World().Log().Lines(),
             Texts({"6 RecordDownloadModule::JudgeDiskIsFull The free disk space is less than 50 MB.",
                    "6 RecordDownloadModule::JudgeDiskIsFull The free disk space is less than 50 MB."}));
    rig.SendOne(rig.LanModule("l"));
    QCOMPARE(rig.World().Log().Lines("6 ").size(), 3);
    QCOMPARE(ScriptedDisk::Asked(), (QList<QByteArray>{"/v", "/v", "/v"}));
}

void StorageTest::GuardDisarmsAtTheFirstRunWithRoom()
{
    EngineRig rig;
    Arm(rig, 49 * ScriptedDisk::MiB);
    rig.SendTyped(1, "7");
    ScriptedDisk::SetFreeBytes(50 * ScriptedDisk::MiB);
    rig.SendOne(rig.Device("b"));
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 7", "StartDeviceRecordDownload b"}));
    ScriptedDisk::SetFreeBytes(0);
    rig.SendOne(rig.LanModule("l"));
    QCOMPARE(rig.Calls().Short("StartLan"), Texts({"StartLanModuleRecordDownload l"}));
    QCOMPARE(ScriptedDisk::Asked(), (QList<QByteArray>{"/v", "/v"}));
}

void StorageTest::EventArmsTheGuardAgain()
{
    EngineRig rig;
    Arm(rig, 50 * ScriptedDisk::MiB);
    rig.SendOne(rig.Device("a"));
    Arm(rig, 49 * ScriptedDisk::MiB);
    rig.SendOne(rig.Device("b"));
    QCOMPARE(rig.Calls().Count("Start"), 0);
    QCOMPARE(ScriptedDisk::Asked(), (QList<QByteArray>{"/v", "/v"}));
}

void StorageTest::DeletingRemovesFileAndPicture_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("existing");
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<QStringList>("lines");
    const auto row = [](const char* pszName, const char* pszPath, const QStringList& existing, const QStringList& left,
                        const QStringList& removed) {
        QStringList lines;
        for (const QString& strPath : removed)
            lines.append(QStringLiteral("2 RecordDownloadModule::RemoveFileJpg remove file[~/%1]").arg(strPath));
        QTest::newRow(pszName) << QString::fromUtf8(pszPath) << existing << left << lines;
    };
    row("both are there", "d/r.mp4", Texts({"d/r.mp4", "d/r.jpg"}), Texts({}), Texts({"d/r.mp4", "d/r.jpg"}));
    row("only the file is there", "d/r.mp4", Texts({"d/r.mp4"}), Texts({}), Texts({"d/r.mp4"}));
    row("only the picture is there", "d/r.mp4", Texts({"d/r.jpg"}), Texts({}), Texts({"d/r.jpg"}));
    row("nothing is there", "d/r.mp4", Texts({}), Texts({}), Texts({}));
    row("files beside stay", "d/r.mp4", Texts({"d/r.mp4", "d/r(1).mp4", "d/r.jpeg"}), Texts({"d/r(1).mp4", "d/r.jpeg"}),
        Texts({"d/r.mp4"}));
    row("a path without .mp4 is removed once", "d/r.dat", Texts({"d/r.dat", "d/r.jpg"}), Texts({"d/r.jpg"}),
        Texts({"d/r.dat"}));
    row("capitals are no .mp4", "d/r.MP4", Texts({"d/r.MP4", "d/r.jpg"}), Texts({"d/r.jpg"}), Texts({"d/r.MP4"}));
    row("every .mp4 of the path is replaced", "a.mp4/b.mp4.mp4", Texts({"a.mp4/b.mp4.mp4", "a.jpg/b.jpg.jpg"}),
        Texts({}), Texts({"a.mp4/b.mp4.mp4", "a.jpg/b.jpg.jpg"}));
    row("other letters and a percent sign", "d/ä%s.mp4", Texts({"d/ä%s.mp4", "d/ä%s.jpg"}), Texts({}),
        Texts({"d/ä%s.mp4", "d/ä%s.jpg"}));
}

void StorageTest::DeletingRemovesFileAndPicture()
{
    QFETCH(QString, path);
    QFETCH(QStringList, existing);
    QFETCH(QStringList, left);
    QFETCH(QStringList, lines);
    EngineRig rig;
    for (const QString& strName : existing)
        rig.World().WriteFile(strName.toUtf8().constData());
    rig.Engine().DeleteRecordDownload(1, QStringLiteral("7"), rig.World().Path(path.toUtf8().constData()));
    QStringList found;
    for (const QString& strName : existing) {
        if (rig.World().HasFile(strName.toUtf8().constData()))
            found.append(strName);
    }
    QCOMPARE(found, left);
    QCOMPARE(rig.World().Log().Lines(), lines);
}

void StorageTest::FileThatCannotBeRemovedIsLoggedAsFailure_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("lines");
    const QString strLine = QStringLiteral("6 RecordDownloadModule::RemoveFileJpg remove file[~/%1]");
    QTest::newRow("a path with .mp4, the picture goes all the same")
        << QStringLiteral("stuck.mp4")
        << QStringList{strLine.arg(QStringLiteral("stuck.mp4")),
                       QStringLiteral("2 RecordDownloadModule::RemoveFileJpg remove file[~/stuck.jpg]")};
    QTest::newRow("a path without .mp4 is tried twice")
        << QStringLiteral("stuck.dat")
        << QStringList{strLine.arg(QStringLiteral("stuck.dat")), strLine.arg(QStringLiteral("stuck.dat"))};
}

void StorageTest::FileThatCannotBeRemovedIsLoggedAsFailure()
{
    QFETCH(QString, path);
    QFETCH(QStringList, lines);
    EngineRig rig;
    // A folder of that name is the one thing that no user may remove as a file.
    rig.World().WriteFile((path + QStringLiteral("/inside")).toUtf8().constData());
    rig.World().WriteFile("stuck.jpg");
    rig.Engine().DeleteRecordDownload(1, QStringLiteral("7"), rig.World().Path(path.toUtf8().constData()));
    QCOMPARE(rig.World().HasFile(path.toUtf8().constData()), true);
    QCOMPARE(rig.World().Log().Lines(), lines);
}

void StorageTest::EveryLineNamesTheEngineAsItsFile()
{
    EngineRig rig;
    rig.SendTyped(1, "7", [&](auto& record) { record.strDownloadPath = rig.World().Path("new/7.mp4"); });
    rig.World().WriteFile("new/7.mp4");
    rig.Engine().DeleteRecordDownload(1, QStringLiteral("7"), rig.World().Path("new/7.mp4"));
    rig.World().WriteFile("inTheWay");
    Arm(rig, 50 * ScriptedDisk::MiB);
    rig.SendOne([&] {
        auto record = rig.Device("8");
        record.strDownloadPath = rig.World().Path("inTheWay/b/8.mp4");
        return record;
    }());
    Arm(rig, 0);
    rig.SendOne(rig.Device("9"));
    const std::vector<LogEntry> entries = rig.World().Log().Entries();
    QCOMPARE(entries.size(), std::size_t(4));
    for (const LogEntry& entry : entries) {
        QCOMPARE(entry.strFile, QStringLiteral("Src/Module/RecordDownloadModule"));
        QCOMPARE(entry.strModule, QString());
        QVERIFY(entry.iLine > 0);
    }
}

KX_TEST(StorageTest, QCoreApplication)
#include "StorageTest.moc"
