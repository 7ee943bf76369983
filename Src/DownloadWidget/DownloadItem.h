#pragma once

#include "DownloadWidget/RowLook.h"
#include "Model/DownloadRecordInfo.h"

#include <QtCore/QEvent>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QSize>
#include <QtWidgets/QGraphicsItem>

class KXSvgPixmap;
class QGraphicsPixmapItem;

// One row of the download list: thumbnail, name, progress, state, a delete button and a state button. It paints what
// its record and its state say and reports clicks; what becomes of the download is the panel's business.
//
// Thread: the GUI thread. Ownership: the view owns the row; the button pictures stay with the panel.
class DownloadItem : public QObject, public QGraphicsItem
{
    Q_OBJECT
    Q_INTERFACES(QGraphicsItem)

public:
    DownloadItem(QObject* pParent, const QMap<int, KXSvgPixmap*>& mapButtonPixmap);
    ~DownloadItem() override;

    // Stores the record and makes its id the key by which the view finds the row.
    void SetRecord(const DownloadRecordInfoPtr& pRecord);
    // Stores the record; the key stays.
    void UpdateRecord(const DownloadRecordInfoPtr& pRecord);
    // While its picture is the device's own, which is being turned into one of ours, the row shows the default one.
    void SetAwaitsPicture(bool bAwaits) { m_bAwaitsPicture = bAwaits; }
    DownloadRecordInfoPtr Record() const { return m_pRecord; }
    // Paused and failed rows start over: their received size becomes 0.
    void SetState(RowState state);
    RowState State() const { return m_state; }
    // As the row shows it: a word or the percentage, in the user's language.
    QString StateText() const;
    // What the bar shows, in whole percent.
    int ShownPercent() const;

    // A frame around the row, where the keyboard acts.
    void SetFocusFrame(bool bShown);
    // Assistive technology holds an object of this row from now on.
    void SetAskedFor() { m_bAskedFor = true; }
    bool WasAskedFor() const { return m_bAskedFor; }

    // What a press of that button does. The click is reported with the event that pressed it. Afterwards the row may be
    // gone.
    void PressDeleteButton(QEvent::Type type, Qt::MouseButtons buttons);
    void PressStateButton(QEvent::Type type, Qt::MouseButtons buttons);

    // Moves both buttons below the texts, for a taller row.
    virtual void PlaceButtonsBelow();

    QRectF boundingRect() const override;
    void paint(QPainter* pPainter, const QStyleOptionGraphicsItem* pOption, QWidget* pWidget) override;

signals:
    void SgnDeleteRecord(QString strRecordId);
    void SgnChangeDownloadState(bool bStart); // true start, false pause

protected:
    void hoverMoveEvent(QGraphicsSceneHoverEvent* pEvent) override;
    void mousePressEvent(QGraphicsSceneMouseEvent* pEvent) override;

private:
    void PaintTexts(QPainter& painter) const;
    void PaintProgress(QPainter& painter) const;
    void PaintFocusFrame(QPainter& painter, const QWidget* pWidget) const;

    QSize m_size;
    DownloadRecordInfoPtr m_pRecord;
    QGraphicsPixmapItem* m_pDeleteButton;
    QGraphicsPixmapItem* m_pStateButton;
    QMap<int, KXSvgPixmap*> m_mapButtonPixmap;
    bool m_bRunning = true; // the state button offers "pause"
    bool m_bAwaitsPicture = false;
    bool m_bFocusFrame = false;
    bool m_bAskedFor = false;
    RowState m_state = RowState::Waiting;
};
