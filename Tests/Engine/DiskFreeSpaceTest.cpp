// The real free-space query, which the engine's other tests replace by a scripted one.

#include "Module/DiskFreeSpace.h"

#include "ScratchDir.h"
#include "TestMain.h"

#include <QtCore/QStorageInfo>
#include <QtTest/QtTest>

class DiskFreeSpaceTest : public QObject
{
    Q_OBJECT

private slots:
    void AFoldersVolumeIsMeasured_data();
    void AFoldersVolumeIsMeasured();
    void WhatNamesNoFolderCannotBeMeasured_data();
    void WhatNamesNoFolderCannotBeMeasured();
    void ASmallVolumeIsMeasuredToTheMebibyte_data();
    void ASmallVolumeIsMeasuredToTheMebibyte();

private:
    ScratchDir m_folder;
};

void DiskFreeSpaceTest::AFoldersVolumeIsMeasured_data()
{
    QTest::addColumn<QString>("folder");
    QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("an ä folder")));
    QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("北门 камера")));
    QTest::newRow("a folder") << m_folder.path();
    QTest::newRow("a slash at its end") << m_folder.path() + QLatin1Char('/');
    QTest::newRow("a name that is not ASCII") << m_folder.filePath(QStringLiteral("an ä folder"));
    QTest::newRow("letters of another alphabet") << m_folder.filePath(QStringLiteral("北门 камера"));
    QTest::newRow("the root") << QDir::rootPath();
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (volume.isReady() && volume.bytesAvailable() > 0)
            QTest::newRow(qPrintable(QStringLiteral("volume ") + volume.rootPath())) << volume.rootPath();
    }
}

// Qt asks the system by another way. Others write to the disk meanwhile: asked before and after, it lies between.
void DiskFreeSpaceTest::AFoldersVolumeIsMeasured()
{
    QFETCH(QString, folder);
    const auto agrees = [&folder] {
        const quint64 uBefore = static_cast<quint64>(QStorageInfo(folder).bytesAvailable());
        const std::optional<quint64> measured = FreeBytesOfVolume(folder);
        const quint64 uAfter = static_cast<quint64>(QStorageInfo(folder).bytesAvailable());
        return measured && uAfter > 0 && *measured >= qMin(uBefore, uAfter) && *measured <= qMax(uBefore, uAfter);
    };
    QTRY_VERIFY(agrees());
}

void DiskFreeSpaceTest::WhatNamesNoFolderCannotBeMeasured_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("it does not exist") << m_folder.filePath(QStringLiteral("missing"));
    QTest::newRow("nor does the folder it lies in") << m_folder.filePath(QStringLiteral("missing/missing"));
}

void DiskFreeSpaceTest::WhatNamesNoFolderCannotBeMeasured()
{
    QFETCH(QString, folder);
    QVERIFY(!FreeBytesOfVolume(folder).has_value());
}

void DiskFreeSpaceTest::ASmallVolumeIsMeasuredToTheMebibyte_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("freeMiB");
    for (const int iMiB : {49, 50, 51}) {
        for (const QString& strFolder :
             {QStringLiteral("plain"), QStringLiteral("Aufnahmen für später"), QStringLiteral("北门 камера")})
            QTest::newRow(qPrintable(QStringLiteral("%1 MiB, %2").arg(iMiB).arg(strFolder))) << strFolder << iMiB;
    }
}

// The volume is this test's own: all of it that is not free is in the file that the test writes.
void DiskFreeSpaceTest::ASmallVolumeIsMeasuredToTheMebibyte()
{
    QFETCH(QString, folder);
    QFETCH(int, freeMiB);
    const QString strVolume = qEnvironmentVariable("KX_SMALL_VOLUME");
    QFile reason(strVolume + QStringLiteral("/reason"));
    if (strVolume.isEmpty())
        QSKIP("no small volume was made for this run", "");
    if (reason.open(QIODevice::ReadOnly))
        QSKIP(reason.readAll().constData(), "");
    const QString strFolder = strVolume + QLatin1Char('/') + folder;
    QVERIFY(QDir().mkpath(strFolder));
    QFile filler(strVolume + QStringLiteral("/filler"));
    QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Truncate));
    const QByteArray mebibyte(1 << 20, 'x');
    for (int iWritten = 0; iWritten < 64 - freeMiB; ++iWritten)
        QCOMPARE(filler.write(mebibyte), qint64(mebibyte.size()));
    filler.close();
    const std::optional<quint64> measured = FreeBytesOfVolume(strFolder);
    QVERIFY(measured.has_value());
    QCOMPARE(static_cast<int>(*measured >> 20), freeMiB);
    QCOMPARE(static_cast<int>((*measured - 1) >> 20), freeMiB - 1); // to the byte
}

KX_TEST(DiskFreeSpaceTest, QCoreApplication)
#include "DiskFreeSpaceTest.moc"
