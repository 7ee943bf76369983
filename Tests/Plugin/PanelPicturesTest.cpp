// The pictures of rows: what is asked of the thumbnail thread, and what its answers do.

#include "HostilePictures.h"
#include "PaintedRegion.h"
#include "PanelRig.h"
#include "TestMain.h"

#include <QtCore/QBuffer>
#include <QtCore/QThread>
#include <QtTest/QSignalSpy>

using namespace KXDownLoadList;

class PanelPicturesTest : public QObject
{
    Q_OBJECT

private slots:
    void OnlyADeviceRecordWithAPictureAsksForIt_data();
    void OnlyADeviceRecordWithAPictureAsksForIt();
    void TheTargetLiesBesideTheVideo_data();
    void TheTargetLiesBesideTheVideo();
    void TheThumbsEventAsksForTheRowsPicture();
    void TheThumbsEventAsksWhateverTheType_data();
    void TheThumbsEventAsksWhateverTheType();
    void AnIncompleteOrUnknownThumbsEventIsIgnored_data();
    void AnIncompleteOrUnknownThumbsEventIsIgnored();
    void AThumbnailArrivesInItsRow();
    void AThumbnailIsTakenByThePanelsThread();
    void ADevicesOwnPictureIsNotShown();
    void ACostlyPictureRepaintsItsRowAlone();
    void AMissingPictureEmptiesTheRowsPath();
    void OnlyDeviceRowsTakeTheirThumbnail();
    void ACloudPictureIsTakenAsItComes();
    void TheCoverOfAnEncryptedRecordingArrives();
    void AResumedRowWhosePictureKeyIsWrongShowsFailed();
    void ThePanelMayGoWhileThumbnailsAreQueued();

private:
    static QByteArray PngPicture();
    // The middle of the row's thumbnail.
    static QColor Shown(PanelRig& rig, const char* pszRecordId);
};

QColor PanelPicturesTest::Shown(PanelRig& rig, const char* pszRecordId)
{
    QImage image(610, 88, QImage::Format_RGB32);
    QPainter painter(&image);
    rig.Row(pszRecordId)->paint(&painter, nullptr, nullptr);
    painter.end();
    return image.pixelColor(90, 44);
}

QByteArray PanelPicturesTest::PngPicture()
{
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

void PanelPicturesTest::OnlyADeviceRecordWithAPictureAsksForIt_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("picture");
    QTest::addColumn<int>("requests");
    QTest::newRow("cloud") << 0 << QStringLiteral("/pic") << 0;
    QTest::newRow("device") << 1 << QStringLiteral("/pic") << 1;
    QTest::newRow("device without picture") << 1 << QString() << 0;
    QTest::newRow("IOT LAN") << 2 << QStringLiteral("/pic") << 0;
    QTest::newRow("LAN module") << 3 << QStringLiteral("/pic") << 0;
}

void PanelPicturesTest::OnlyADeviceRecordWithAPictureAsksForIt()
{
    QFETCH(int, type);
    QFETCH(QString, picture);
    QFETCH(int, requests);
    PanelRig rig;
    const QSignalSpy asked(&rig.Panel(), &DownloadWidget::SignalStartWork);
    const auto pRecord = rig.Made("a", type);
    pRecord->strPicturePath = picture;
    rig.Panel().AddDownloadInfo(pRecord);
    rig.Panel().AddDownloadInfo(pRecord); // shown already: not asked for again
    QCOMPARE(asked.size(), requests);
    QVERIFY(rig.Row("a"));
}

void PanelPicturesTest::TheTargetLiesBesideTheVideo_data()
{
    QTest::addColumn<QString>("video");
    QTest::addColumn<QString>("target");
    QTest::newRow("plain") << QStringLiteral("/d/a.mp4") << QStringLiteral("/d/a.jpg");
    QTest::newRow("wherever it stands") << QStringLiteral("/d.mp4/a.mp4.mp4") << QStringLiteral("/d.jpg/a.jpg.jpg");
    QTest::newRow("case counts") << QStringLiteral("/d/a.MP4") << QStringLiteral("/d/a.MP4");
    QTest::newRow("another suffix") << QStringLiteral("/d/a.avi") << QStringLiteral("/d/a.avi");
}

void PanelPicturesTest::TheTargetLiesBesideTheVideo()
{
    QFETCH(QString, video);
    QFETCH(QString, target);
    PanelRig rig;
    const QSignalSpy asked(&rig.Panel(), &DownloadWidget::SignalStartWork);
    const auto pRecord = rig.Made("a");
    pRecord->strDownloadPath = video;
    pRecord->strPicturePath = rig.World().Path("none.png");
    rig.Panel().AddDownloadInfo(pRecord);
    rig.Send("EventNotifyDeviceRecordThumbsPath", {QStringLiteral("a"), rig.World().Path("none2.png")});
    QCOMPARE(asked.size(), 2);
    QCOMPARE(asked[0], QVariantList({rig.World().Path("none.png"), target, QStringLiteral("a")}));
    QCOMPARE(asked[1], QVariantList({rig.World().Path("none2.png"), target, QStringLiteral("a")}));
}

void PanelPicturesTest::TheThumbsEventAsksForTheRowsPicture()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    const QString strSource = rig.World().WriteFile("thumb", PngPicture());
    rig.Send("EventNotifyDeviceRecordThumbsPath", {QStringLiteral("b"), strSource, QStringLiteral("more")});
    QTRY_COMPARE(rig.Record("b").strPicturePath, rig.World().Path("b.jpg"));
    QCOMPARE(QImage(rig.World().Path("b.jpg")).size(), QSize(4, 3));
    QCOMPARE(rig.Record("a").strPicturePath, QString());
}

void PanelPicturesTest::TheThumbsEventAsksWhateverTheType_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("cloud") << 0;
    QTest::newRow("device") << 1;
    QTest::newRow("IOT LAN") << 2;
    QTest::newRow("LAN module") << 3;
}

void PanelPicturesTest::TheThumbsEventAsksWhateverTheType()
{
    QFETCH(int, type);
    PanelRig rig;
    rig.Panel().AddDownloadInfo(rig.Made("a", type));
    const QSignalSpy asked(&rig.Panel(), &DownloadWidget::SignalStartWork);
    rig.Send("EventNotifyDeviceRecordThumbsPath", {QStringLiteral("a"), rig.World().Path("none.png")});
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked[0], QVariantList({rig.World().Path("none.png"), rig.World().Path("a.jpg"), QStringLiteral("a")}));
}

void PanelPicturesTest::AnIncompleteOrUnknownThumbsEventIsIgnored_data()
{
    QTest::addColumn<QVariantList>("payload");
    QTest::newRow("nothing") << QVariantList();
    QTest::newRow("an id alone") << QVariantList({QStringLiteral("a")});
    QTest::newRow("an id without a row") << QVariantList({QStringLiteral("none"), QStringLiteral("/pic")});
}

void PanelPicturesTest::AnIncompleteOrUnknownThumbsEventIsIgnored()
{
    QFETCH(QVariantList, payload);
    PanelRig rig;
    rig.Send({"a"});
    const QSignalSpy asked(&rig.Panel(), &DownloadWidget::SignalStartWork);
    rig.World().Log().Clear();
    rig.Send("EventNotifyDeviceRecordThumbsPath", payload);
    QCOMPARE(asked.size(), 0);
    QCOMPARE(PanelLog(rig.World()), Texts({}));
}

void PanelPicturesTest::AThumbnailArrivesInItsRow()
{
    PanelRig rig;
    const auto pRecord = rig.Made("a");
    pRecord->strPicturePath = rig.World().WriteFile("thumb", PngPicture());
    rig.Panel().AddDownloadInfo(pRecord);
    QTRY_COMPARE(rig.Record("a").strPicturePath, rig.World().Path("a.jpg"));
    QVERIFY(rig.World().HasFile("a.jpg"));
}

// The worker starts the second picture when it has answered the first; until this thread turns, nothing changes.
void PanelPicturesTest::AThumbnailIsTakenByThePanelsThread()
{
    const DebugMessages messages;
    PanelRig rig;
    const QString strSource = rig.World().WriteFile("thumb", PngPicture());
    for (const char* pszId : {"a", "b"}) {
        const auto pRecord = rig.Made(pszId);
        pRecord->strPicturePath = strSource;
        rig.Panel().AddDownloadInfo(pRecord);
    }
    QVERIFY(DebugMessages::WaitFor(2));
    QCOMPARE(rig.Record("a").strPicturePath, strSource);
    QTRY_COMPARE(rig.Record("a").strPicturePath, rig.World().Path("a.jpg"));
}

// Only what the worker made of it.
void PanelPicturesTest::ADevicesOwnPictureIsNotShown()
{
    PanelRig rig;
    const auto pRecord = rig.Made("a");
    pRecord->strPicturePath =
        rig.World().WriteFile("thumb", HostilePictures::Encoded(HostilePictures::Red(120, 68), "PNG"));
    rig.Panel().AddDownloadInfo(pRecord);
    rig.Panel().AddDownloadInfo(rig.Made("b"));
    QCOMPARE(Shown(rig, "a"), Shown(rig, "b"));
    QTRY_COMPARE(rig.Record("a").strPicturePath, rig.World().Path("a.jpg"));
    QVERIFY(Shown(rig, "a").red() > 250 && Shown(rig, "a").blue() < 5);
}

void PanelPicturesTest::ACostlyPictureRepaintsItsRowAlone()
{
    PanelRig rig;
    rig.Show();
    rig.Send({"a", "b", "c"});
    PaintedRegion painted(*rig.View().viewport());
    rig.View().viewport()->repaint();
    painted.Forget();
    rig.Record("b").strPicturePath =
        rig.World().WriteFile("b.jpg", HostilePictures::Encoded(HostilePictures::Red(120, 68), "JPG", true));
    const QColor missing = Shown(rig, "b");
    QCOMPARE(missing, Shown(rig, "a"));
    const auto middle = [&rig](const char* pszRecordId) {
        const QRectF row = rig.Row(pszRecordId)->mapToScene(QRectF(30, 20, 120, 48)).boundingRect();
        return rig.View().mapFromScene(row).boundingRect();
    };
    QTRY_VERIFY(painted.Contains(middle("b")));
    QVERIFY(!painted.Contains(middle("a")) && !painted.Contains(middle("c")));
    QVERIFY(Shown(rig, "b").red() > 250);
}

void PanelPicturesTest::AMissingPictureEmptiesTheRowsPath()
{
    PanelRig rig;
    const auto pRecord = rig.Made("a");
    pRecord->strPicturePath = rig.World().Path("none.png");
    rig.Panel().AddDownloadInfo(pRecord);
    QTRY_COMPARE(rig.Record("a").strPicturePath, QString());
    QVERIFY(!rig.World().HasFile("a.jpg"));
}

void PanelPicturesTest::OnlyDeviceRowsTakeTheirThumbnail()
{
    PanelRig rig;
    rig.Panel().AddDownloadInfo(rig.Made("device", 1));
    for (const int iType : {0, 2, 3})
        rig.Panel().AddDownloadInfo(rig.Made(QByteArray::number(iType).constData(), iType));
    for (const char* pszRecordId : {"device", "0", "2", "3", "none"})
        rig.Panel().OnCopyPictureFinished(QString::fromUtf8(pszRecordId), QStringLiteral("/new.jpg"));
    QCOMPARE(rig.Record("device").strPicturePath, QStringLiteral("/new.jpg"));
    QCOMPARE(rig.Record("0").strPicturePath, QString());
    QCOMPARE(rig.Record("2").strPicturePath, QString());
    QCOMPARE(rig.Record("3").strPicturePath, QString());
}

void PanelPicturesTest::ACloudPictureIsTakenAsItComes()
{
    PanelRig rig;
    rig.Panel().AddDownloadInfo(rig.Made<DownloadCloudRecordInfo>("7", 0));
    rig.Panel().AddDownloadInfo(rig.Made<DownloadCloudRecordInfo>("8", 0));
    rig.World().Log().Clear();
    rig.Panel().UpdateCloudPictureInfo(QStringLiteral("7"), QStringLiteral("/cover.jpg"));
    rig.Panel().UpdateCloudPictureInfo(QStringLiteral("none"), QStringLiteral("/other.jpg"));
    QCOMPARE(rig.Record("7").strPicturePath, QStringLiteral("/cover.jpg"));
    QCOMPARE(rig.Record("8").strPicturePath, QString());
    QCOMPARE(PanelLog(rig.World()), Texts({}));
}

// It has its row before its cover, because its password came first.
void PanelPicturesTest::TheCoverOfAnEncryptedRecordingArrives()
{
    PanelRig rig;
    rig.World().Pictures().FailAll(false);
    const auto pRecord = rig.Made<DownloadCloudRecordInfo>("7", 0);
    pRecord->strText1 = QStringLiteral("account");
    pRecord->strCloudText1 = QStringLiteral("cover");
    pRecord->strCloudText2 = QStringLiteral("canary-record-key");
    rig.Show();
    rig.Send("EventNotifyDownloadRecordList", {EngineRig::Stream<DownloadCloudRecordInfo>({*pRecord}), 0});
    rig.World().Cloud().AnswerPassword(0, 1, "canary-fetched");
    QTRY_VERIFY(rig.Row("7"));
    PaintedRegion painted(*rig.View().viewport());
    rig.World().Cloud().QueueDecryption(0, PngPicture());
    rig.World().Pictures().AnswerWithFile("cover", "encrypted");
    QTRY_COMPARE(rig.Record("7").strPicturePath, rig.World().Path("7.jpg"));
    QTRY_VERIFY(painted.Contains(QRect(30, 10, 120, 68)));
}

void PanelPicturesTest::AResumedRowWhosePictureKeyIsWrongShowsFailed()
{
    PanelRig rig;
    rig.Show();
    rig.Send("EventNotifyDownloadRecordList",
             {EngineRig::Stream<DownloadCloudRecordInfo>({*rig.Made<DownloadCloudRecordInfo>("7", 0)}), 0});
    rig.Press("7", PanelRig::StateButton);
    QCOMPARE(rig.StateOf("7"), 5);
    rig.World().Pictures().FailAll(false);
    rig.Press("7", PanelRig::StateButton);
    QCOMPARE(rig.StateOf("7"), 0);
    rig.World().Cloud().QueueDecryption(2, QByteArray());
    rig.World().Pictures().AnswerWithFile("", "encrypted");
    QTRY_COMPARE(rig.StateOf("7"), 3);
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartCloudRecordDownload 7"})); // before it was paused
}

void PanelPicturesTest::ThePanelMayGoWhileThumbnailsAreQueued()
{
    PanelRig rig;
    rig.Send({"a"});
    const QString strSource = rig.World().WriteFile("thumb", PngPicture());
    bool bFinished = false;
    connect(
        rig.Panel().findChild<QThread*>(), &QThread::finished, this, [&] { bFinished = true; }, Qt::DirectConnection);
    for (int i = 0; i < 200; ++i)
        rig.World().Bus().Send("EventNotifyDeviceRecordThumbsPath", {QStringLiteral("a"), strSource});
    rig.Destroy();
    QVERIFY(bFinished);
}

KX_TEST(PanelPicturesTest, QApplication)

#include "PanelPicturesTest.moc"
