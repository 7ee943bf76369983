#pragma once

#include <QtCore/QStringList>
#include <QtWidgets/QMenuBar>

namespace KXClient {

struct WindowSettings;

// The window's menus. Thread: the GUI thread.
class MenuBar : public QMenuBar
{
    Q_OBJECT

public:
    explicit MenuBar(const WindowSettings& settings, QWidget* pParent = nullptr);

    // The latest first; the first is the present one and not offered.
    void SetRecentFolders(const QStringList& folders);

signals:
    void SignalDownload();
    void SignalSelectAll(bool bSelected);
    void SignalQuit();
    void SignalChooseFolder();
    void SignalOpenFolder();
    void SignalFolder(const QString& strFolder);
    void SignalClearRecent();
    void SignalLanguage(const QString& strCode);
    void SignalDark(bool bDark);
    void SignalAbout();

private:
    void AddRecordings();
    void AddFolder();
    void AddLanguages(const QString& strCurrent);
    void AddViewAndHelp(bool bDark);

    QMenu* m_pRecent = nullptr;
};

} // namespace KXClient
