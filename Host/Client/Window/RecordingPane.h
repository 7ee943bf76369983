#pragma once

#include "Host/Client/Window/RecordingTree.h"

#include <QtWidgets/QWidget>

class QCheckBox;
class QLabel;
class QPushButton;

namespace KXClient {

// The left side of the window: the recordings, the download folder and the button that asks for what is checked.
// Thread: the GUI thread.
class RecordingPane : public QWidget
{
    Q_OBJECT

public:
    explicit RecordingPane(const WindowDownloads& downloads, QWidget* pParent = nullptr);

    RecordingTree& Tree() { return *m_pTree; }
    void SetFolder(const QString& strFolder);

signals:
    // Only while something is checked.
    void SignalDownload();
    void SignalChangeFolder();

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    QWidget* MakeSelectionRow();
    QWidget* MakeFolderRow();
    void ShowSelection();
    void ShowFolder();
    void Download();

    const WindowDownloads& m_downloads;
    RecordingTree* m_pTree;
    QCheckBox* m_pSelectAll = nullptr;
    QLabel* m_pSelection = nullptr;
    QLabel* m_pFolder = nullptr;
    QPushButton* m_pDownload = nullptr;
    QString m_strFolder;
};

} // namespace KXClient
