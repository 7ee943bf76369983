#include "Host/Client/Window/MainWindow.h"

#include "Host/Client/PluginHost.h"
#include "Host/Client/Window/MenuBar.h"
#include "Host/Client/Window/PanelFrame.h"
#include "Host/Client/Window/RecordingPane.h"
#include "Host/Client/Window/WindowStyle.h"
#include "Host/Client/Window/WindowText.h"
#include "Host/KXLogic/RunningTransfers.h"
#include "KXBase/GKXObserver.h"
#include "Model/HostEvents.h"

#include <QtCore/QDir>
#include <QtCore/QUrl>
#include <QtGui/QCloseEvent>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QVBoxLayout>

namespace KXClient {

namespace {

constexpr int FirstWidth = 1380; // the height is that which the panel needs
constexpr int Gap = 12;
constexpr int MessageMs = 6000;

} // namespace

MainWindow::MainWindow(DownloadInput& input, PluginHost& plugin, WindowSettings& settings)
    : m_settings(settings)
    , m_downloads(input, plugin.Panel())
{
    setWindowTitle(Say(Word::AppTitle));
    SetUpLayout(plugin);
    SetUpMenus();
    m_pPane->SetFolder(m_settings.strFolder);
    connect(&m_downloads, &WindowDownloads::SignalChanged, this, [this](int iIndex) {
        m_pPane->Tree().Refresh(iIndex);
        m_counted.start();
    });
    connect(&m_downloads, &WindowDownloads::SignalCounted, &m_counted, QOverload<>::of(&QTimer::start));
    m_counted.setSingleShot(true);
    connect(&m_counted, &QTimer::timeout, this, &MainWindow::ShowStatus);
    GKXObserver::attach(HostEvents::EnterDownloadSetting, this, SLOT(OnEnterDownloadSetting(QVariantList)));
    ShowStatus();
    RestoreGeometry();
    m_pPane->setFocus();
}

MainWindow::~MainWindow() = default;

void MainWindow::SetUpLayout(PluginHost& plugin)
{
    m_pPane = new RecordingPane(m_downloads);
    m_pPane->setMinimumWidth(480);
    m_pSplitter = new QSplitter;
    m_pSplitter->addWidget(m_pPane);
    m_pSplitter->addWidget(new PanelFrame(plugin));
    m_pSplitter->setStretchFactor(0, 1);
    m_pSplitter->setStretchFactor(1, 0);
    m_pSplitter->setChildrenCollapsible(false);
    m_pSplitter->setHandleWidth(Gap);
    auto* pCentral = new QWidget(this);
    auto* pLayout = new QVBoxLayout(pCentral);
    pLayout->setContentsMargins(Gap, Gap, Gap, Gap);
    pLayout->addWidget(m_pSplitter);
    setCentralWidget(pCentral);
    m_pStatus = new QLabel(this);
    m_pStatus->setObjectName(QStringLiteral("status"));
    statusBar()->addPermanentWidget(m_pStatus);
    connect(m_pPane, &RecordingPane::SignalDownload, this, &MainWindow::Download);
    connect(m_pPane, &RecordingPane::SignalChangeFolder, this, &MainWindow::ChooseFolder);
}

void MainWindow::SetUpMenus()
{
    m_pMenus = new MenuBar(m_settings, this);
    setMenuBar(m_pMenus);
    connect(m_pMenus, &MenuBar::SignalDownload, this, &MainWindow::Download);
    connect(m_pMenus, &MenuBar::SignalSelectAll, this, [this](bool bAll) { m_pPane->Tree().CheckAll(bAll); });
    connect(m_pMenus, &MenuBar::SignalQuit, this, &MainWindow::close);
    connect(m_pMenus, &MenuBar::SignalChooseFolder, this, &MainWindow::ChooseFolder);
    connect(m_pMenus, &MenuBar::SignalOpenFolder, this, &MainWindow::OpenFolder);
    connect(m_pMenus, &MenuBar::SignalFolder, this, &MainWindow::SetFolder);
    connect(m_pMenus, &MenuBar::SignalClearRecent, this, [this] {
        m_settings.recentFolders = QStringList{m_settings.strFolder};
        ShowRecent();
    });
    connect(m_pMenus, &MenuBar::SignalLanguage, this, &MainWindow::SetLanguage);
    connect(m_pMenus, &MenuBar::SignalDark, this, &MainWindow::SetDark);
    connect(m_pMenus, &MenuBar::SignalAbout, this,
            [this] { QMessageBox::about(this, Say(Word::AppTitle), Say(Word::AboutText)); });
}

// What was saved is no good when it is from elsewhere; Qt then leaves the window as it is.
void MainWindow::RestoreGeometry()
{
    resize(FirstWidth, sizeHint().height());
    if (!m_settings.geometry.isEmpty())
        restoreGeometry(m_settings.geometry);
    if (!m_settings.splitter.isEmpty())
        m_pSplitter->restoreState(m_settings.splitter);
}

void MainWindow::SetLanguage(const QString& strCode)
{
    m_settings.strLanguage = strCode;
    GKXObserver::notify(HostEvents::ConfigPluginUpdateLanguage, QVariantList{strCode});
}

// Those in the list keep the target that they were given.
void MainWindow::SetFolder(const QString& strFolder)
{
    m_settings.UseFolder(strFolder);
    m_pPane->SetFolder(m_settings.strFolder);
    ShowRecent();
    GKXObserver::notify(HostEvents::DownloadRecordPath, QVariantList{m_settings.strFolder});
}

void MainWindow::ShowRecent()
{
    // Later: the menu that is rebuilt is the one that was chosen from.
    QMetaObject::invokeMethod(
        this, [this] { m_pMenus->SetRecentFolders(m_settings.recentFolders); }, Qt::QueuedConnection);
}

void MainWindow::Download()
{
    const QVector<int> checked = m_pPane->Tree().Checked();
    if (checked.isEmpty() || m_downloads.Ask(checked, m_settings.strFolder))
        return;
    QMessageBox::warning(this, Say(Word::AppTitle),
                         AsWritten(Say(Word::FolderFailed).arg(QDir::toNativeSeparators(m_settings.strFolder))));
}

void MainWindow::ChooseFolder()
{
    const QString strFolder =
        QFileDialog::getExistingDirectory(this, Say(Word::ChooseFolderTitle), m_settings.strFolder);
    if (!strFolder.isEmpty())
        SetFolder(strFolder);
}

void MainWindow::OpenFolder()
{
    const bool bThere = QDir().mkpath(m_settings.strFolder);
    if (!bThere || !QDesktopServices::openUrl(QUrl::fromLocalFile(m_settings.strFolder)))
        statusBar()->showMessage(Say(Word::OpenFolderFailed).arg(QDir::toNativeSeparators(m_settings.strFolder)),
                                 MessageMs);
}

void MainWindow::SetDark(bool bDark)
{
    m_settings.bDark = bDark;
    statusBar()->showMessage(Say(Word::DarkLater), MessageMs);
}

// The panel's settings are the download folder. Later: the panel hides itself first.
void MainWindow::OnEnterDownloadSetting(QVariantList)
{
    QMetaObject::invokeMethod(this, &MainWindow::ChooseFolder, Qt::QueuedConnection);
}

void MainWindow::ShowStatus()
{
    using State = WindowDownloads::State;
    const int iFailed =
        m_downloads.CountOf(State::Failed) + m_downloads.CountOf(State::Refused) + m_downloads.CountOf(State::Dropped);
    m_pStatus->setText(Say(Word::Status)
                           .arg(QString::number(m_downloads.RowCount()),
                                QString::number(m_downloads.CountOf(State::Whole)), QString::number(iFailed)));
}

bool MainWindow::MayQuit()
{
    if (KXHost::RunningTransfers().isEmpty())
        return true;
    QMessageBox question(QMessageBox::Question, Say(Word::AppTitle), Say(Word::QuitQuestion), QMessageBox::NoButton,
                         this);
    question.setInformativeText(Say(Word::QuitDetail));
    const QPushButton* pQuit = question.addButton(Say(Word::QuitAnyway), QMessageBox::DestructiveRole);
    QPushButton* pStay = question.addButton(Say(Word::CancelQuit), QMessageBox::RejectRole);
    question.setDefaultButton(pStay);
    question.setEscapeButton(pStay);
    question.exec();
    return question.clickedButton() == pQuit;
}

void MainWindow::closeEvent(QCloseEvent* pEvent)
{
    if (!MayQuit()) {
        pEvent->ignore();
        return;
    }
    m_settings.geometry = saveGeometry();
    m_settings.splitter = m_pSplitter->saveState();
    pEvent->accept();
}

} // namespace KXClient
