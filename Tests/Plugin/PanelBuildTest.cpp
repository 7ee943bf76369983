// How the panel is built, shown, told of another language and taken down.

#include "PanelRig.h"
#include "TestMain.h"

#include <QtCore/QMetaMethod>
#include <QtCore/QMutex>
#include <QtCore/QThread>
#include <QtCore/QTranslator>
#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QGraphicsDropShadowEffect>
#include <QtWidgets/QGraphicsScene>

// Counts how often a widget was raised.
class RaiseCounter : public QObject
{
public:
    bool eventFilter(QObject*, QEvent* pEvent) override
    {
        iCount += pEvent->type() == QEvent::ZOrderChange ? 1 : 0;
        return false;
    }
    int iCount = 0;
};

class PanelBuildTest : public QObject
{
    Q_OBJECT

private slots:
    void SignalsAndSlotsAreThese();
    void TheWindowIsABorderlessPopUpWithAShadow();
    void ItCannotBeDragged();
    void ItStartsEmptyWithItsTexts();
    void TheHostIsAskedInThisOrder();
    void RowsStandWithoutGapsAndWithoutHorizontalBar();
    void ItOwnsOneThreadThatEndsWithIt();
    void ItsPartsGoInThisOrder();
    void AShownPanelRepaintsAndComesToTheFront();
    void AShownPanelTakesTheKeyboardBack();
    void TheSettingsButtonTellsTheClientThenHides();
    void OnCloseHides();
    void TextsFollowALanguage();
    void StopEndsTheEngineForGood();
    void TheEnginesCopyRequestsAreRelayed();
};

void PanelBuildTest::SignalsAndSlotsAreThese()
{
    const QMetaObject& meta = DownloadWidget::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        methods.append(
            (method.methodType() == QMetaMethod::Signal ? QStringLiteral("signal ") : QStringLiteral("slot ")) +
            QString::fromUtf8(method.methodSignature()));
    }
    QCOMPARE(methods,
             Texts({"signal SignalDeleteRecord(int,QString,QString)", "signal SignalStartWork(QString,QString,QString)",
                    "slot OnGetDeviceRecordThumbs(QVariantList)", "slot AddDownloadInfo(DownloadRecordInfoPtr)",
                    "slot UpdateCloudPictureInfo(QString,QString)", "slot OnDownloadRecordData(QString,int)",
                    "slot OnDownloadRecordStates(QString,int,bool)", "slot OnStopAllDownload()", "slot OnClose()",
                    "slot OnBtnSetting()", "slot OnBtnAllStart()", "slot OnDeleteRecord(QString)",
                    "slot OnChangeDownloadState(bool)", "slot OnScrollValueChanged(int)",
                    "slot OnCopyPictureFinished(QString,QString)"}));
}

void PanelBuildTest::TheWindowIsABorderlessPopUpWithAShadow()
{
    PanelRig rig;
    DownloadWidget& panel = rig.Panel();
    QCOMPARE(panel.windowFlags(), Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    QVERIFY(panel.testAttribute(Qt::WA_TranslucentBackground));
    auto* pShadow = qobject_cast<QGraphicsDropShadowEffect*>(panel.graphicsEffect());
    QVERIFY(pShadow);
    QCOMPARE(pShadow->parent(), &panel);
    QCOMPARE(panel.findChild<QGraphicsDropShadowEffect*>(), pShadow);
    QCOMPARE(pShadow->blurRadius(), 10.0);
    QCOMPARE(pShadow->color(), QColor(0xC9, 0xD0, 0xDA, 0xFF)); // pc008 of the light table
    QCOMPARE(pShadow->offset(), QPointF(0, 0));
    QVERIFY(panel.inherits("KXGui::KXDialog"));
    QCOMPARE(panel.minimumSize(), QSize(630, 564));
    QCOMPARE(panel.maximumSize(), QSize(630, 564));
}

void PanelBuildTest::ItCannotBeDragged()
{
    PanelRig rig;
    rig.Show();
    const QPoint before = rig.Panel().pos();
    QTest::mousePress(&rig.Panel(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    const QPoint there(60, 60);
    QMouseEvent move(QEvent::MouseMove, there, rig.Panel().mapToGlobal(there), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(&rig.Panel(), &move);
    QCOMPARE(rig.Panel().pos(), before);
}

void PanelBuildTest::ItStartsEmptyWithItsTexts()
{
    PanelRig rig;
    QCOMPARE(rig.Panel().windowTitle(), QStringLiteral("common_download_list"));
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_suspend_all"));
    QCOMPARE(rig.Find<QPushButton>("btnSetting").text(), QStringLiteral("common_set"));
    QCOMPARE(rig.TextOf("labelText"), QStringLiteral("ib_mobile_common_download_manager_no_download_task"));
    QCOMPARE(rig.Find<QStackedWidget>("stackedWidget").currentIndex(), 0);
    const QPixmap noTask(QStringLiteral(":/KXRecordManage/images/pic_notask.svg"));
    QVERIFY(!noTask.isNull());
    QCOMPARE(rig.Find<QLabel>("labelPic").property("pixmap").value<QPixmap>().toImage(), noTask.toImage());
    QCOMPARE(rig.Counts(), QList<int>({0}));
    QCOMPARE(rig.Panel().findChildren<KXSvgPixmap*>(QString(), Qt::FindDirectChildrenOnly).size(), 4);
    QCOMPARE(PanelLog(rig.World()), Texts({}));
    QVERIFY(QMetaType::type("DownloadRecordInfoPtr") != QMetaType::UnknownType);
}

void PanelBuildTest::TheHostIsAskedInThisOrder()
{
    PanelRig rig;
    QCOMPARE(rig.Calls().Lines({"attach", "notify"}),
             Texts({"attach EventNotifyDownloadRecordList OnGetDownloadList(QVariantList)",
                    "attach EventNotifyDeleteDownloadRecord OnClearListForRecDiskFull(QVariantList)",
                    "attach EventNotifyGetRecordDownloading OnGetDownloadStates(QVariantList)",
                    "attach EventNotifyDownloadRecordPath OnDownloadRecordPathChanged(QVariantList)",
                    "attach EventNotifyDeviceRecordThumbsPath OnGetDeviceRecordThumbs(QVariantList)",
                    "notify EventNotifyDownloadNumber"}));
}

void PanelBuildTest::RowsStandWithoutGapsAndWithoutHorizontalBar()
{
    PanelRig rig;
    QCOMPARE(rig.View().horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    rig.Send({"a", "b", "c"});
    rig.Show();
    QCOMPARE(rig.Row("a")->pos(), QPointF(0, 0));
    QCOMPARE(rig.Row("b")->pos(), QPointF(0, 88));
    QCOMPARE(rig.Row("c")->pos(), QPointF(0, 176));
}

void PanelBuildTest::ItOwnsOneThreadThatEndsWithIt()
{
    PanelRig rig;
    const QList<QThread*> threads = rig.Panel().findChildren<QThread*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(threads.size(), 1);
    QVERIFY(threads[0]->isRunning());
    QCOMPARE(threads[0]->priority(), QThread::InheritPriority);
    bool bFinished = false; // at the end, before the thread object itself goes
    connect(
        threads[0], &QThread::finished, this, [&] { bFinished = true; }, Qt::DirectConnection);
    rig.Destroy();
    QVERIFY(bFinished);
}

// What is still paused loses its file between the pictures of the buttons and the thread.
void PanelBuildTest::ItsPartsGoInThisOrder()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Panel().OnBtnAllStart();
    rig.World().WriteFile("a.mp4");
    QMutex mutex; // the thread's end is told on the thread
    QStringList order;
    const auto note = [&](const char* pszWhat) {
        const QMutexLocker locker(&mutex);
        order.append(QString::fromUtf8(pszWhat) +
                     (rig.World().HasFile("a.mp4") ? QStringLiteral(", file") : QStringLiteral(", no file")));
    };
    void* pEngine = nullptr;
    rig.World().Downloads().CloudDataCallbackOf(pEngine); // the engine registered itself
    connect(static_cast<RecordDownloadModule*>(pEngine), &QObject::destroyed, this, [&] { note("engine"); });
    for (const KXSvgPixmap* pPicture : rig.Panel().findChildren<KXSvgPixmap*>())
        connect(pPicture, &QObject::destroyed, this, [&] { note("picture"); });
    connect(
        rig.Panel().findChild<QThread*>(), &QThread::finished, this, [&] { note("thread"); }, Qt::DirectConnection);
    connect(&rig.Panel(), &QObject::destroyed, this, [&] { note("panel"); });
    rig.Destroy();
    QCOMPARE(order, Texts({"engine, file", "picture, file", "picture, file", "picture, file", "picture, file",
                           "thread, no file", "panel, no file"}));
}

void PanelBuildTest::AShownPanelRepaintsAndComesToTheFront()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.Panel().hide();
    EngineRig::Settle();
    QSignalSpy repainted(rig.View().scene(), &QGraphicsScene::changed);
    RaiseCounter raises;
    rig.Panel().installEventFilter(&raises);
    rig.Panel().show();
    const int iInsideShow = raises.iCount;
    QVERIFY(repainted.count() > 0 || repainted.wait());
    QTRY_COMPARE(raises.iCount, iInsideShow + 1); // once control is back in the event loop
}

void PanelBuildTest::AShownPanelTakesTheKeyboardBack()
{
    if (QGuiApplication::platformName() != QLatin1String("offscreen"))
        QSKIP("on a real screen another window that becomes active closes a popup", "");
    PanelRig rig;
    QWidget other;
    other.show();
    EngineRig::Settle();
    QStringList active;
    const QObject connection; // goes before what the lambda uses
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, &connection, [&](const QWindow* pWindow) {
        active.append(pWindow == other.windowHandle() ? QStringLiteral("other") : QStringLiteral("panel"));
    });
    rig.Panel().show();
    other.windowHandle()->requestActivate(); // before control is back in the event loop
    QTRY_COMPARE(active, Texts({"panel", "other", "panel"}));
}

void PanelBuildTest::TheSettingsButtonTellsTheClientThenHides()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    bool bShownWhenTold = false;
    rig.Calls().WhenAdded("notifyList EventNotifyEnterDownloadSetting",
                          [&] { bShownWhenTold = rig.Panel().isVisible(); });
    QTest::mouseClick(&rig.Find<QPushButton>("btnSetting"), Qt::LeftButton);
    const auto payloads = rig.World().Bus().Payloads("EventNotifyEnterDownloadSetting");
    QCOMPARE(payloads.size(), std::size_t(1));
    QCOMPARE(payloads[0], QVariantList());
    QVERIFY(bShownWhenTold);
    QVERIFY(!rig.Panel().isVisible());
}

void PanelBuildTest::OnCloseHides()
{
    PanelRig rig;
    rig.Show();
    QVERIFY(rig.Panel().isVisible());
    rig.Panel().OnClose();
    QVERIFY(!rig.Panel().isVisible());
    QCOMPARE(rig.Calls().Count("notifyList"), 0);
}

void PanelBuildTest::TextsFollowALanguage()
{
    PanelRig rig;
    rig.Send({"a"});
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/KXRecordManage/Translates/KXRecordManage_en.qm")));
    QCoreApplication::installTranslator(&translator);
    rig.Panel().RefreshTexts();
    QCOMPARE(rig.AllStartText(), QStringLiteral("Pause all"));
    QCOMPARE(rig.Find<QPushButton>("btnSetting").text(), QStringLiteral("Settings"));
    QCOMPARE(rig.TextOf("labelText"), QStringLiteral("No downloads"));
    QCOMPARE(rig.TextOf("labelNumber"), QStringLiteral("1 download"));
    rig.Send({"b"});
    QCOMPARE(rig.TextOf("labelNumber"), QStringLiteral("2 downloads"));
}

void PanelBuildTest::StopEndsTheEngineForGood()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Panel().Stop();
    QCOMPARE(rig.Calls().Lines("UnregisterCallbacks"), Texts({"UnregisterCallbacks known"}));
    rig.Send({"b"});
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload a"}));
    rig.Panel().Stop();
    rig.Destroy();
}

void PanelBuildTest::TheEnginesCopyRequestsAreRelayed()
{
    PanelRig rig;
    QSignalSpy requests(&rig.Panel(), &DownloadWidget::SignalStartWork);
    void* pUser = nullptr;
    rig.World().Downloads().CloudDataCallbackOf(pUser); // the engine registered itself
    emit static_cast<RecordDownloadModule*>(pUser)->SignalStartCopyPic(rig.World().Path("none"), QStringLiteral("to"),
                                                                       QStringLiteral("id"));
    QCOMPARE(requests.size(), 1);
    QCOMPARE(requests[0], QVariantList({rig.World().Path("none"), QStringLiteral("to"), QStringLiteral("id")}));
}

KX_TEST(PanelBuildTest, QApplication)

#include "PanelBuildTest.moc"
