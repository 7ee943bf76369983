#include "DownloadWidget/DownloadItem.h"

#include "DownloadWidget/ClickReport.h"
#include "DownloadWidget/RowLook.h"
#include "DownloadWidget/RowNews.h"
#include "DownloadWidget/ThumbnailCache.h"
#include "KXGui/GraphicsGridView.h"
#include "KXGui/KXColor.h"
#include "KXGui/KXSvgPixmap.h"
#include "Model/NameText.h"

#include <QtCore/QPointer>
#include <QtGui/QCursor>
#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsPixmapItem>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsSceneHoverEvent>
#include <QtWidgets/QGraphicsSceneMouseEvent>

#include <utility>

namespace {

constexpr QRectF RowRect(0, 0, 610, 88);
constexpr QRectF ThumbnailRect(30, 10, 120, 68);
constexpr QPointF NameBaseline(170, 25);
constexpr QPointF StateBaseline(170, 70);
constexpr qreal TrackRadius = 2;
constexpr QSize IconSize(30, 30);
// Around what the row paints, at the same distance left and right.
constexpr QRectF FrameRect(20, 3, 570, 82);
constexpr qreal FrameWidth = 2;
constexpr qreal FrameRadius = 6;

QColor Color(const char* pszKey)
{
    return KXColor::color(QLatin1String(pszKey), 1.0);
}

QString IconTemplate(const char* pszMainColorKey)
{
    return QStringLiteral("<xml><p p-id='1' style='fill:%1;'/><p p-id='2' style='fill:%2;'/></xml>")
        .arg(Color("pc009").name(), Color(pszMainColorKey).name());
}

QPixmap NormalIcon(KXSvgPixmap* pPixmap)
{
    return pPixmap ? pPixmap->normalPixmap(IconSize, IconTemplate("pc004")) : QPixmap();
}

QPixmap HoverIcon(KXSvgPixmap* pPixmap)
{
    return pPixmap ? pPixmap->hoverPixmap(IconSize, IconTemplate("pc001")) : QPixmap();
}

bool Hits(const QGraphicsPixmapItem* pButton, const QPointF& scenePos)
{
    return pButton->sceneBoundingRect().contains(scenePos);
}

} // namespace

DownloadItem::DownloadItem(QObject* pParent, const QMap<int, KXSvgPixmap*>& mapButtonPixmap)
    : QObject(pParent)
    , QGraphicsItem(nullptr)
    , m_pDeleteButton(new QGraphicsPixmapItem(this))
    , m_pStateButton(new QGraphicsPixmapItem(this))
    , m_mapButtonPixmap(mapButtonPixmap)
{
    m_pDeleteButton->setPixmap(NormalIcon(m_mapButtonPixmap.value(RowLook::IconDelete)));
    m_pStateButton->setPixmap(NormalIcon(m_mapButtonPixmap.value(RowLook::IconPause)));
    m_pDeleteButton->setPos(550, 26);
    m_pStateButton->setPos(500, 26);
    m_pDeleteButton->setVisible(true);
    m_pStateButton->setVisible(true);
    setAcceptHoverEvents(true);
}

DownloadItem::~DownloadItem() = default;

void DownloadItem::SetRecord(const DownloadRecordInfoPtr& pRecord)
{
    m_pRecord = pRecord;
    setData(GraphicsGridView::KeyRole, pRecord->strRecordId);
    update();
}

void DownloadItem::UpdateRecord(const DownloadRecordInfoPtr& pRecord)
{
    m_pRecord = pRecord;
    update();
}

void DownloadItem::SetState(RowState state)
{
    const bool bChanged = std::exchange(m_state, state) != state;
    m_pStateButton->setPixmap(NormalIcon(m_mapButtonPixmap.value(RowLook::StateIcon(state))));
    const bool bStartsOver = state == RowState::Paused || state == RowState::Failed;
    if (bStartsOver && m_pRecord)
        m_pRecord->lReceivedSize = 0;
    if (state != RowState::Failed)
        m_bRunning = state != RowState::Paused;
    update();
    if (bChanged)
        RowNews::StateChanged(*this);
}

QString DownloadItem::StateText() const
{
    if (!RowLook::StateColorKey(m_state))
        return QString();
    const char* pszTextKey = RowLook::StateTextKey(m_state);
    return pszTextKey ? tr(pszTextKey) : RowLook::PercentText(m_pRecord->lReceivedSize, m_pRecord->lFileSize);
}

int DownloadItem::ShownPercent() const
{
    if (m_state != RowState::Downloading)
        return 0;
    return RowLook::ShownPercent(m_pRecord->lReceivedSize, m_pRecord->lFileSize);
}

void DownloadItem::SetFocusFrame(bool bShown)
{
    if (std::exchange(m_bFocusFrame, bShown) != bShown)
        update();
}

void DownloadItem::PlaceButtonsBelow()
{
    m_pDeleteButton->setPos(180, 90);
    m_pStateButton->setPos(220, 90);
}

QRectF DownloadItem::boundingRect() const
{
    return RowRect;
}

void DownloadItem::paint(QPainter* pPainter, const QStyleOptionGraphicsItem*, QWidget* pWidget)
{
    if (!m_pRecord)
        return;
    const QString strPicture = m_bAwaitsPicture ? QString() : m_pRecord->strPicturePath;
    const qreal dRatio = pPainter->device()->devicePixelRatioF();
    pPainter->drawImage(ThumbnailRect, ThumbnailCache::Shared()->Thumbnail(strPicture, *this, dRatio));
    pPainter->setPen(Color("pc004"));
    pPainter->drawText(NameBaseline, NameText::Shown(m_pRecord->strFileName));
    PaintProgress(*pPainter);
    PaintTexts(*pPainter);
    if (m_bFocusFrame)
        PaintFocusFrame(*pPainter, pWidget);
}

void DownloadItem::PaintProgress(QPainter& painter) const
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(Color("pc010"));
    painter.drawRoundedRect(RowLook::TrackRect, TrackRadius, TrackRadius);
    QRectF fill = RowLook::TrackRect;
    fill.setWidth(RowLook::FillWidth(m_state, m_pRecord->lReceivedSize, m_pRecord->lFileSize));
    painter.setBrush(Color("pc001"));
    if (fill.width() > 0)
        painter.drawRoundedRect(fill, TrackRadius, TrackRadius);
}

void DownloadItem::PaintTexts(QPainter& painter) const
{
    const char* pszColorKey = RowLook::StateColorKey(m_state);
    if (!pszColorKey)
        return;
    painter.setPen(Color(pszColorKey));
    painter.drawText(StateBaseline, StateText());
}

// A view that is narrower than the row, because of its scroll bar, has the whole frame all the same.
void DownloadItem::PaintFocusFrame(QPainter& painter, const QWidget* pWidget) const
{
    QRectF frame = FrameRect;
    if (pWidget)
        frame.setRight(qMin(frame.right(), pWidget->width() - FrameWidth));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Color("pc001"), FrameWidth));
    painter.drawRoundedRect(frame, FrameRadius, FrameRadius);
    painter.restore();
}

void DownloadItem::hoverMoveEvent(QGraphicsSceneHoverEvent* pEvent)
{
    if (!scene())
        return;
    KXSvgPixmap* pDelete = m_mapButtonPixmap.value(RowLook::IconDelete);
    KXSvgPixmap* pState = m_mapButtonPixmap.value(RowLook::StateIcon(m_state));
    const bool bOnDelete = Hits(m_pDeleteButton, pEvent->scenePos());
    const bool bOnState = !bOnDelete && Hits(m_pStateButton, pEvent->scenePos());
    setCursor(bOnDelete || bOnState ? Qt::PointingHandCursor : Qt::ArrowCursor);
    if (bOnDelete) {
        m_pDeleteButton->setPixmap(HoverIcon(pDelete));
    } else if (bOnState) {
        m_pStateButton->setPixmap(HoverIcon(pState));
    } else {
        m_pDeleteButton->setPixmap(NormalIcon(pDelete));
        m_pStateButton->setPixmap(NormalIcon(pState));
    }
}

void DownloadItem::mousePressEvent(QGraphicsSceneMouseEvent* pEvent)
{
    if (!scene())
        return;
    if (pEvent->button() != Qt::LeftButton) {
        QGraphicsItem::mousePressEvent(pEvent);
        return;
    }
    if (Hits(m_pDeleteButton, pEvent->scenePos()))
        PressDeleteButton(pEvent->type(), pEvent->buttons());
    else if (Hits(m_pStateButton, pEvent->scenePos()))
        PressStateButton(pEvent->type(), pEvent->buttons());
}

void DownloadItem::PressDeleteButton(QEvent::Type type, Qt::MouseButtons buttons)
{
    const QPointer<DownloadItem> pAlive(this); // the download may end inside the report, and the row with it
    SendClickReport(QStringLiteral("btnDelete") + ElementPath(this), type, buttons);
    if (pAlive)
        emit SgnDeleteRecord(m_pRecord->strRecordId); // the panel may have deleted this row when it returns
}

void DownloadItem::PressStateButton(QEvent::Type type, Qt::MouseButtons buttons)
{
    const QPointer<DownloadItem> pAlive(this); // inside a signal or a report the download may end, and the row with it
    const QString strPath = ElementPath(this);
    if (m_state == RowState::Failed) {
        SendClickReport(QStringLiteral("btnRetry") + strPath, type, buttons);
        if (pAlive)
            emit SgnChangeDownloadState(true);
        if (!pAlive || m_state == RowState::Paused)
            return; // inside its start all downloads were stopped
        m_bRunning = true;
        m_pStateButton->setPixmap(NormalIcon(m_mapButtonPixmap.value(RowLook::IconPause)));
        return;
    }
    bool bRunning = !m_bRunning;
    m_bRunning = bRunning;
    emit SgnChangeDownloadState(bRunning);
    if (pAlive)
        bRunning = m_bRunning;
    SendClickReport((bRunning ? QStringLiteral("btnRestart") : QStringLiteral("btnPause")) + strPath, type, buttons);
    if (pAlive)
        m_pStateButton->setPixmap(
            NormalIcon(m_mapButtonPixmap.value(bRunning ? RowLook::IconPause : RowLook::IconResume)));
}
