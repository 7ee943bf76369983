#include "KXGui/KXSvgPixmap.h"

#include "Host/KXGui/SvgRecolour.h"
#include "ktl/TPrintLog.h"

#include <QtCore/QFile>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtGui/QPixmapCache>
#include <QtSvg/QSvgRenderer>

namespace {

void LogFailure(int iLine, const char* pszFunction, const QString& strText)
{
    ktl::TPrintLog::instance()->Log("Host/KXGui/KXSvgPixmap", iLine, pszFunction, "", 6, "%s",
                                    strText.toUtf8().constData());
}

// The largest rectangle of the picture's proportions in the middle of the canvas.
QRectF Fitted(const QSize& picture, const QSize& canvas)
{
    const QSizeF size = QSizeF(picture).scaled(canvas, Qt::KeepAspectRatio);
    return QRectF(QPointF((canvas.width() - size.width()) / 2, (canvas.height() - size.height()) / 2), size);
}

} // namespace

KXSvgPixmap::KXSvgPixmap(const QString& strSvgPath, QObject* pParent)
    : QObject(pParent)
    , m_strSvgPath(strSvgPath)
{}

KXSvgPixmap::~KXSvgPixmap() = default;

QPixmap KXSvgPixmap::normalPixmap(const QSize& size, const QString& strColorTemplate)
{
    return Pixmap(size, strColorTemplate);
}

QPixmap KXSvgPixmap::hoverPixmap(const QSize& size, const QString& strColorTemplate)
{
    return Pixmap(size, strColorTemplate);
}

QPixmap KXSvgPixmap::Pixmap(const QSize& size, const QString& strColorTemplate)
{
    if (size.isEmpty())
        return QPixmap();
    const qreal dRatio = qGuiApp->devicePixelRatio();
    const QString strKey = QStringLiteral("KXSvgPixmap|%1|%2x%3|%4|%5")
                               .arg(QString::number(dRatio), QString::number(size.width()),
                                    QString::number(size.height()), strColorTemplate, m_strSvgPath);
    QPixmap pixmap;
    if (QPixmapCache::find(strKey, &pixmap))
        return pixmap;
    Load();
    if (m_svg.isEmpty())
        return QPixmap();
    pixmap = Render(size, strColorTemplate, dRatio);
    QPixmapCache::insert(strKey, pixmap);
    return pixmap;
}

// Reads the file once; one that is no picture is not tried again.
void KXSvgPixmap::Load()
{
    if (m_bLoaded)
        return;
    m_bLoaded = true;
    QFile file(m_strSvgPath);
    if (!file.open(QIODevice::ReadOnly))
        return LogFailure(__LINE__, "KXSvgPixmap::Load",
                          QStringLiteral("cannot read %1: %2").arg(m_strSvgPath, file.errorString()));
    m_svg = KXHost::RecolourSvg(file.readAll(), {});
    if (m_svg.isEmpty() || !QSvgRenderer(m_svg).isValid()) {
        m_svg.clear();
        LogFailure(__LINE__, "KXSvgPixmap::Load", QStringLiteral("%1 is no SVG picture").arg(m_strSvgPath));
    }
}

QPixmap KXSvgPixmap::Render(const QSize& size, const QString& strColorTemplate, qreal dRatio) const
{
    KXHost::SvgStyles styles;
    if (!KXHost::ReadSvgTemplate(strColorTemplate, styles))
        LogFailure(__LINE__, "KXSvgPixmap::Render",
                   QStringLiteral("colour template of %1 is no XML: %2").arg(m_strSvgPath, strColorTemplate));
    QSvgRenderer renderer(KXHost::RecolourSvg(m_svg, styles));
    QPixmap pixmap(size * dRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, Fitted(renderer.defaultSize(), pixmap.size()));
    painter.end();
    pixmap.setDevicePixelRatio(dRatio);
    return pixmap;
}
