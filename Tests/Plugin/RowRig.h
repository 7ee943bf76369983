#pragma once

#include "DownloadWidget/DownloadItem.h"
#include "DownloadWidget/ThumbnailCache.h"
#include "FakeHost/FakeWorld.h"
#include "KXGui/KXSvgPixmap.h"

#include <QtGui/QImage>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsPixmapItem>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>

// One row in a scene and a view of its own, at the scene's origin, with the plug-in's button pictures. The row's
// record: id "r", name "Front door.mp4", 1,000 bytes, nothing received.
class RowRig
{
public:
    static constexpr QPoint DeleteButton{565, 41};
    static constexpr QPoint StateButton{515, 41};
    static constexpr QPoint NoButton{300, 41};

    RowRig()
        : m_pRecord(std::make_shared<KXDownLoadList::DownloadDeviceRecordInfo>())
    {
        int iKey = 0;
        for (const char* pszName : {"btnStop", "btnStart", "btnDelete", "btnReload"}) {
            const QString strPath = QStringLiteral(":/KXRecordManage/images/%1.svg").arg(QLatin1String(pszName));
            m_pixmaps.insert(iKey++, new KXSvgPixmap(strPath, &m_panel));
        }
        m_pRow = new DownloadItem(&m_panel, m_pixmaps);
        m_pRecord->strRecordId = QStringLiteral("r");
        m_pRecord->strFileName = QStringLiteral("Front door.mp4");
        m_pRecord->lFileSize = 1000;
        m_pRecord->lReceivedSize = 0;
        m_scene.setSceneRect(0, 0, 610, 88);
        m_scene.addItem(m_pRow);
        m_pRow->SetRecord(m_pRecord);
        m_view.setFrameShape(QFrame::NoFrame);
        m_view.setScene(&m_scene);
        m_view.resize(610, 88);
        m_view.show();
    }

    FakeWorld& World() { return m_world; }
    QObject& Panel() { return m_panel; }
    DownloadItem& Row() { return *m_pRow; }
    KXDownLoadList::DownloadRecordInfo& Record() { return *m_pRecord; }
    // By its number, also one that is no state.
    void SetState(int iState) { m_pRow->SetState(static_cast<RowState>(iState)); }
    const QMap<int, KXSvgPixmap*>& Pixmaps() const { return m_pixmaps; }
    QWidget* Viewport() { return m_view.viewport(); }

    // The row as it is painted, its buttons included, on white.
    QImage Painted(qreal dRatio = 1)
    {
        QImage image(QSize(610, 88) * dRatio, QImage::Format_RGB32);
        image.setDevicePixelRatio(dRatio);
        image.fill(Qt::white);
        QPainter painter(&image);
        m_scene.render(&painter, QRectF(0, 0, 610, 88), QRectF(0, 0, 610, 88));
        return image;
    }
    // True when something other than white is painted in that part.
    bool HasInk(const QRect& part)
    {
        const QImage image = Painted().copy(part);
        QImage white(image.size(), image.format());
        white.fill(Qt::white);
        return image != white;
    }
    void Press(const QPoint& pos, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(Viewport(), button, Qt::NoModifier, pos);
    }
    // By the window, so that it is this process's own pointer: the tests that run beside it share the screen's.
    void Hover(const QPoint& pos) { QTest::mouseMove(m_view.windowHandle(), Viewport()->mapTo(&m_view, pos)); }
    // The picture of the normal or hover form of a button key, as the row shows it.
    QImage Icon(int iKey, bool bHover)
    {
        const QString strTemplate =
            QStringLiteral("<xml><p p-id='1' style='fill:#edf1f6;'/><p p-id='2' style='fill:%1;'/></xml>")
                .arg(bHover ? QStringLiteral("#1f6feb") : QStringLiteral("#1d2430"));
        KXSvgPixmap& pixmap = *m_pixmaps[iKey];
        const QSize size(30, 30);
        return (bHover ? pixmap.hoverPixmap(size, strTemplate) : pixmap.normalPixmap(size, strTemplate)).toImage();
    }
    // From now on the row's state follows its presses, as the panel makes it.
    void FollowPresses()
    {
        QObject::connect(m_pRow, &DownloadItem::SgnChangeDownloadState, m_pRow,
                         [this](bool bStart) { SetState(bStart ? 0 : 5); });
    }
    // True when the state button shows that key, in its normal or its hover form: the pointer may be on it.
    bool ShowsKey(int iKey)
    {
        const QImage shown = Shown(StateButton);
        return shown == Icon(iKey, false) || shown == Icon(iKey, true);
    }
    // What the row's child at that position shows.
    QImage Shown(const QPoint& button)
    {
        for (QGraphicsItem* pChild : m_pRow->childItems()) {
            if (pChild->sceneBoundingRect().contains(button))
                return static_cast<QGraphicsPixmapItem*>(pChild)->pixmap().toImage();
        }
        return QImage();
    }

private:
    FakeWorld m_world;
    std::shared_ptr<ThumbnailCache> m_pThumbnails = ThumbnailCache::Shared(); // as the panel keeps it
    QObject m_panel;
    QMap<int, KXSvgPixmap*> m_pixmaps;
    std::shared_ptr<KXDownLoadList::DownloadDeviceRecordInfo> m_pRecord;
    QGraphicsScene m_scene;
    DownloadItem* m_pRow;
    QGraphicsView m_view;
};
