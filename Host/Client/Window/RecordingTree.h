#pragma once

#include "Host/Client/Window/WindowDownloads.h"

#include <QtCore/QTimer>
#include <QtCore/QVector>
#include <QtWidgets/QTreeWidget>

namespace KXClient {

// The recordings, below their sources, each with a check box that can be checked as long as it may be asked for.
// Thread: the GUI thread.
class RecordingTree : public QTreeWidget
{
    Q_OBJECT

public:
    // `downloads` outlives this.
    explicit RecordingTree(const WindowDownloads& downloads, QWidget* pParent = nullptr);

    // Indexes into the tasks, in their order.
    QVector<int> Checked() const;
    int CheckableCount() const;
    void CheckAll(bool bChecked);
    void Check(int iIndex, bool bChecked);
    // Shows a task as it is now.
    void Refresh(int iIndex);

signals:
    // At once when the user changed them; once for all that was refreshed in one turn of the event loop.
    void SignalChecksChanged();

private:
    enum Column { Name, Recorded, Length, Size, StateColumn, ColumnCount };

    void AddSources();
    void AddRecording(int iIndex);
    void SetUpColumns();
    bool IsCheckable(int iIndex) const;

    const WindowDownloads& m_downloads;
    QVector<QTreeWidgetItem*> m_items; // by task, owned by the tree
    QTimer m_refreshed;
};

} // namespace KXClient
