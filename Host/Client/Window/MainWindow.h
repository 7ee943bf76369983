#pragma once

#include "Host/Client/Window/WindowDownloads.h"
#include "Host/Client/Window/WindowSettings.h"

#include <QtCore/QTimer>
#include <QtWidgets/QMainWindow>

class QLabel;
class QSplitter;

namespace KXClient {

class MenuBar;
class PanelFrame;
class PluginHost;
class RecordingPane;

// The client's window: recordings to choose from on the left, the plug-in's panel on the right.
// Thread: the GUI thread.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    // All outlive the window. `plugin` is open; its folder and language are those of `settings`, which the window keeps
    // up to date.
    MainWindow(DownloadInput& input, PluginHost& plugin, WindowSettings& settings);
    ~MainWindow() override;

    RecordingPane& Pane() { return *m_pPane; }
    WindowDownloads& Downloads() { return m_downloads; }

    void SetLanguage(const QString& strCode);
    void SetFolder(const QString& strFolder);
    void Download();

protected:
    // Asks first while transfers run.
    void closeEvent(QCloseEvent* pEvent) override;

private slots:
    void OnEnterDownloadSetting(QVariantList list);

private:
    void SetUpLayout(PluginHost& plugin);
    void SetUpMenus();
    void RestoreGeometry();
    void ChooseFolder();
    void OpenFolder();
    void ShowRecent();
    void ShowStatus();
    void SetDark(bool bDark);
    bool MayQuit();

    WindowSettings& m_settings;
    WindowDownloads m_downloads;
    RecordingPane* m_pPane = nullptr;
    MenuBar* m_pMenus = nullptr;
    QLabel* m_pStatus = nullptr;
    QSplitter* m_pSplitter = nullptr;
    QTimer m_counted; // counts once for all changes of one turn of the event loop
};

} // namespace KXClient
