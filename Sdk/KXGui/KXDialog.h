#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtWidgets/QDialog>

namespace KXGui {

// Base of the host's dialogs. Thread: the GUI thread.
class KX_HOST_EXPORT KXDialog : public QDialog
{
    Q_OBJECT

public:
    // `iStyle` 0: a plain dialog; 1: a frameless dialog that paints its own background, as its style sheet says. Any
    // other style is taken as 0.
    explicit KXDialog(QWidget* pParent = nullptr, int iStyle = 0);
    ~KXDialog() override;

    // Whether the user may drag the dialog with the left button, and by which area of it (in its own coordinates;
    // empty: anywhere). Until the first call a frameless dialog is dragged anywhere, a plain one by its frame only.
    void setDialogMovable(bool bMovable, const QRect& area);

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;

private:
    bool m_bFrameless;
    bool m_bMovable;
    bool m_bDragging = false;
    QRect m_movableArea;
    QPoint m_pressOffset;
};

} // namespace KXGui
