// The real free-space query, which the engine's other tests replace by a scripted one.

#include "Module/DiskFreeSpace.h"

#include "ScratchDir.h"

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

private:
    ScratchDir m_folder;
};

void DiskFreeSpaceTest::AFoldersVolumeIsMeasured_data()
{
    QTest::addColumn<QString>("folder");
    QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("an ä folder")));
    QTest::newRow("a folder") << m_folder.path();
    QTest::newRow("a slash at its end") << m_folder.path() + QLatin1Char('/');
    QTest::newRow("a name that is not ASCII") << m_folder.filePath(QStringLiteral("an ä folder"));
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
        const std::optional<quint64> measured = FreeBytesOfVolume(folder.toLocal8Bit());
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
    QVERIFY(!FreeBytesOfVolume(folder.toLocal8Bit()).has_value());
}

QTEST_GUILESS_MAIN(DiskFreeSpaceTest)
#include "DiskFreeSpaceTest.moc"
