#pragma once

#include "DownloadWidget/PressGuard.h"
#include "DownloadWidget/RowFocus.h"

#include <QtCore/QObject>

class QMouseEvent;

// What the list does beside the mouse: it takes the keyboard, and assistive technology can read and work it. It knows
// of any host's view only what the contract says: it listens to the view's events before the view does.
//
// Thread: the GUI thread. The view outlives this.
class ListAccess : public QObject
{
public:
    explicit ListAccess(GraphicsGridView& view);
    ~ListAccess() override;

    // To be told by the panel: the row is in the view now; it is about to be removed.
    void OnRowAdded(DownloadItem& row);
    void OnRowGoes(DownloadItem& row);

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    bool FilterViewEvent(QEvent& event);
    bool FilterPress(const QMouseEvent& press);

    RowFocus m_focus;
    PressGuard m_guard;
};
