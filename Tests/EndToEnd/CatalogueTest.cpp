#include "EndToEnd/ClientProcess.h"
#include "TestMain.h"

#include <QtCore/QDir>
#include <QtGui/QImage>
#include <QtTest/QtTest>

using namespace EndToEnd;

// The demonstration: no input but the embedded site.
class CatalogueTest : public QObject
{
    Q_OBJECT

private slots:
    void TheWholeCatalogueArrives();
};

void CatalogueTest::TheWholeCatalogueArrives()
{
    Workplace place;
    const ClientResult result = RunClient({"download"_s, "--out"_s, place.Path("out"_s), "--json"_s,
                                           place.Path("report.json"_s), "--timeout"_s, "300"_s});
    QVERIFY2(result.iExit == 0, result.Said());
    QCOMPARE(result.LastOutLine(), "14 recordings, 14 whole, 0 failed"_s);
    QCOMPARE(result.strOut.count("recordings, "_s), 1);
    QVERIFY2(result.strErr.isEmpty(), result.Said());
    QVERIFY2(!result.strOut.contains(QChar(0x1B)), "nothing is redrawn where there is no terminal");

    QMap<QString, int> perSource;
    qint64 lLargest = 0;
    for (const QJsonValue value : place.Report().value("list"_s).toArray()) {
        const QJsonObject entry = value.toObject();
        const QString strFile = entry.value("file"_s).toString();
        ++perSource[entry.value("source"_s).toString()];
        lLargest = qMax(lLargest, QFileInfo(strFile).size());
#if !defined(Q_OS_WIN) // the program lies on the machine that builds
        QCOMPARE(QProcess::execute("ffprobe"_s, {"-v"_s, "error"_s, strFile}), 0);
#endif
    }
    QCOMPARE(perSource, (QMap<QString, int>{{"cloud"_s, 5}, {"device"_s, 4}, {"iotLan"_s, 2}, {"lanModule"_s, 3}}));
    QVERIFY(lLargest >= 200000000);
    QCOMPARE(QDir(place.Path("out"_s)).entryList({"*.mp4"_s}, QDir::Files).size(), 14);

    // Every cloud recording has a cover; each lies beside its recording.
    const QStringList covers = QDir(place.Path("out"_s)).entryList({"*.jpg"_s}, QDir::Files);
    QCOMPARE(covers.size(), 5);
    for (const QString& strName : covers) {
        QVERIFY2(!QImage(place.OutPath(strName), "JPG").isNull(), qPrintable(strName));
        QVERIFY2(QFileInfo(place.OutPath(QString(strName).replace(".jpg"_s, ".mp4"_s))).isFile(), qPrintable(strName));
    }
}

KX_TEST(CatalogueTest, QCoreApplication)
#include "CatalogueTest.moc"
