#include "DownloadWidget/DownloadWidget.h"

#include "ui_DownloadWidget.h"

#include "DownloadWidget/DownloadItem.h"
#include "DownloadWidget/ListAccess.h"
#include "DownloadWidget/PanelLog.h"
#include "DownloadWidget/PanelShadow.h"
#include "DownloadWidget/RecordMetaType.h"
#include "DownloadWidget/SaveDeviceRecordThumbWorker.h"
#include "DownloadWidget/SharpPicture.h"
#include "DownloadWidget/ThumbnailCache.h"
#include "KXBase/GKXObserver.h"
#include "KXGui/KXColor.h"
#include "KXGui/KXSvgPixmap.h"
#include "Model/HostEvents.h"
#include "Module/RecordDownloadModule.h"

#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtWidgets/QScrollBar>

// The panel's window: how it is built, shown and taken down. What its slots do lies in DownloadWidgetRows.cpp.

DownloadWidget::DownloadWidget(QWidget* pParent)
    : KXGui::KXDialog(pParent, 1)
    , ui(std::make_unique<Ui::DownloadWidget>())
    , m_pThumbnails(ThumbnailCache::Shared())
{
    SetUpWindow();
    SetUpForm();
    ConnectEngine();
    GKXObserver::attach(HostEvents::DeviceRecordThumbsPath, this, SLOT(OnGetDeviceRecordThumbs(QVariantList)));
    SetEmptyText();
    SetEmptyPicture();
    RefreshCount();
    MakeButtonPixmaps();
    StartThumbnailThread();
}

// The engine goes first, so that no signal finds a half-dead panel; the thread is joined before its worker's answers
// could outlive us.
DownloadWidget::~DownloadWidget()
{
    delete m_pEngine;
    m_pEngine = nullptr;
    qDeleteAll(m_mapButtonPixmap);
    m_mapButtonPixmap.clear();
    ClearPauseRecordFile();
    m_pThumbnailThread->requestInterruption(); // for the picture under way
    m_pThumbnailThread->quit();
    m_pThumbnailThread->wait();
    RemoveDroppedPictures();
    m_pListAccess.reset();
    delete ui->downloadListView; // with its rows, which leave a living parent at once but a dying one slowly
}

void DownloadWidget::SetUpWindow()
{
    ui->setupUi(this);
    setWindowTitle(tr("common_download_list"));
    setWindowFlags(Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    auto* pShadow = new PanelShadow(this);
    pShadow->setBlurRadius(10.0);
    pShadow->setColor(KXColor::color(QStringLiteral("pc008"), 1.0));
    pShadow->setOffset(0, 0);
    setGraphicsEffect(pShadow);
    setDialogMovable(false, QRect());
}

void DownloadWidget::SetUpForm()
{
    connect(ui->downloadListView->verticalScrollBar(), &QScrollBar::valueChanged, this,
            &DownloadWidget::OnScrollValueChanged);
    connect(ui->btnSetting, &QPushButton::clicked, this, &DownloadWidget::OnBtnSetting);
    connect(ui->btnAllStart, &QPushButton::clicked, this, &DownloadWidget::OnBtnAllStart);
    SetAllStartText(false);
    ui->downloadListView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    ui->downloadListView->SetVerticalSpacing(0);
    m_pListAccess = std::make_unique<ListAccess>(*ui->downloadListView);
}

void DownloadWidget::ConnectEngine()
{
    m_pEngine = new RecordDownloadModule(nullptr);
    RecordMetaType::Register();
    connect(m_pEngine, &RecordDownloadModule::SignalAddDownloadInfo, this, &DownloadWidget::AddDownloadInfo);
    connect(m_pEngine, &RecordDownloadModule::SignalUpdateCloudPictureInfo, this,
            &DownloadWidget::UpdateCloudPictureInfo);
    connect(m_pEngine, &RecordDownloadModule::SignalDownloadRecordData, this, &DownloadWidget::OnDownloadRecordData);
    connect(m_pEngine, &RecordDownloadModule::SignalDownloadRecordStates, this,
            &DownloadWidget::OnDownloadRecordStates);
    connect(m_pEngine, &RecordDownloadModule::SignalStopAllRecord, this, &DownloadWidget::OnStopAllDownload);
    connect(m_pEngine, &RecordDownloadModule::SignalStopAllRecord, this, &DownloadWidget::KeepRowsThatGoOn);
    connect(m_pEngine, &RecordDownloadModule::SignalStartCopyPic, this, &DownloadWidget::SignalStartWork);
}

void DownloadWidget::MakeButtonPixmaps()
{
    const char* const Names[] = {"btnStop", "btnStart", "btnDelete", "btnReload"};
    int iKey = 0;
    for (const char* pszName : Names) {
        const QString strPath = QStringLiteral(":/KXRecordManage/images/%1.svg").arg(QLatin1String(pszName));
        m_mapButtonPixmap.insert(iKey++, new KXSvgPixmap(strPath, this));
    }
}

void DownloadWidget::StartThumbnailThread()
{
    m_pThumbnailThread = new QThread(this);
    m_pThumbnailWorker = new SaveDeviceRecordThumbWorker;
    m_pThumbnailWorker->moveToThread(m_pThumbnailThread);
    connect(m_pThumbnailThread, &QThread::finished, m_pThumbnailWorker, &QObject::deleteLater);
    if (!connect(this, &DownloadWidget::SignalStartWork, m_pThumbnailWorker, &SaveDeviceRecordThumbWorker::OnStartTask))
        KX_PANEL_LOG(118, PanelLogEvent, "DownloadWidget::DownloadWidget", "error");
    connect(m_pThumbnailWorker, &SaveDeviceRecordThumbWorker::SignalFinished, this,
            &DownloadWidget::OnCopyPictureFinished);
    m_pThumbnailThread->start(QThread::InheritPriority);
}

void DownloadWidget::RefreshTexts()
{
    SetAllStartText(false);
    ui->btnSetting->setText(tr("common_set"));
    SetEmptyText();
    SetCountText();
    ui->downloadListView->viewport()->update(); // rows translate when they paint
}

void DownloadWidget::SetEmptyText()
{
    ui->labelText->setText(tr("ib_mobile_common_download_manager_no_download_task"));
}

// Anew for a screen with another pixel ratio.
void DownloadWidget::SetEmptyPicture()
{
    const qreal dRatio = devicePixelRatioF();
    if (m_dEmptyPictureRatio == dRatio)
        return;
    m_dEmptyPictureRatio = dRatio;
    const QString strPath = QStringLiteral(":/KXRecordManage/images/pic_notask.svg");
    ui->labelPic->setPixmap(QPixmap::fromImage(SharpPicture(strPath, dRatio)));
}

void DownloadWidget::SetAllStartText(bool bResume)
{
    ui->btnAllStart->setText(bResume ? tr("pc_download_video_resume_all") : tr("pc_download_video_suspend_all"));
}

void DownloadWidget::SetCountText()
{
    const QString strTotal = tr("play_multiple_views_total", nullptr, m_iRowCount);
    ui->labelNumber->setText(strTotal.arg(m_iRowCount, 0, 10, QLatin1Char(' ')));
}

void DownloadWidget::RefreshCount()
{
    SetCountText();
    ui->stackedWidget->setCurrentIndex(m_iRowCount != 0 ? 1 : 0);
    GKXObserver::notify(HostEvents::DownloadNumber, QVariant(m_iRowCount));
}

void DownloadWidget::Stop()
{
    m_pEngine->Shutdown();
    for (const DownloadItem* pRow : Rows())
        DropPicture(*pRow->Record());
}

void DownloadWidget::StartRecordDownloads(const QList<DownloadRecordInfoPtr>& list)
{
    m_pEngine->StartRecordDownloads(list);
}

void DownloadWidget::PauseRecordDownloads(const QList<DownloadRecordInfoPtr>& list)
{
    m_pEngine->PauseRecordDownloads(list);
}

void DownloadWidget::OnClose()
{
    hide();
}

void DownloadWidget::OnBtnSetting()
{
    GKXObserver::notify(HostEvents::EnterDownloadSetting, QVariantList());
    hide();
}

void DownloadWidget::showEvent(QShowEvent* pEvent)
{
    KXGui::KXDialog::showEvent(pEvent);
    if (ui->downloadListView->scene())
        ui->downloadListView->scene()->update(QRectF());
    ui->downloadListView->viewport()->update();
    update();
    QTimer::singleShot(0, this, [this] {
        raise();
        activateWindow();
    });
}

void DownloadWidget::paintEvent(QPaintEvent* pEvent)
{
    KXGui::KXDialog::paintEvent(pEvent);
    SetEmptyPicture();
}
