#include "Matrix/RowState.h"

#include "DownloadWidget/DownloadItem.h"

#include <QtGui/QPaintDevice>
#include <QtGui/QPaintEngine>
#include <QtGui/QPainter>

namespace {

// Keeps the texts that are painted, and paints nothing: much quicker than to compare pictures.
class TextEngine final : public QPaintEngine
{
public:
    TextEngine()
        : QPaintEngine(AllFeatures)
    {}
    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState&) override {}
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
    void drawImage(const QRectF&, const QImage&, const QRectF&, Qt::ImageConversionFlags) override {}
    void drawPath(const QPainterPath&) override {}
    void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
    void drawTextItem(const QPointF&, const QTextItem& item) override { m_strLast = item.text(); }
    Type type() const override { return User; }

    QString m_strLast;
};

class TextDevice final : public QPaintDevice
{
public:
    QPaintEngine* paintEngine() const override { return &m_engine; }
    QString LastText() const { return m_engine.m_strLast; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        const bool bLength = metric == PdmWidth || metric == PdmHeight;
        const bool bDots =
            metric == PdmDpiX || metric == PdmDpiY || metric == PdmPhysicalDpiX || metric == PdmPhysicalDpiY;
        if (metric == PdmDevicePixelRatioScaled)
            return static_cast<int>(devicePixelRatioFScale());
        return bLength ? 1000 : bDots ? 96 : metric == PdmDepth ? 32 : 1;
    }

private:
    mutable TextEngine m_engine;
};

} // namespace

RowIs StateOfRow(DownloadItem* pRow)
{
    if (!pRow)
        return RowIs::Absent;
    TextDevice device;
    {
        QPainter painter(&device);
        pRow->paint(&painter, nullptr, nullptr);
    }
    const QString strText = device.LastText(); // the state stands below the name
    if (strText == QLatin1String("mobile_common_download_manager_wait_download"))
        return RowIs::Waiting;
    if (strText == QLatin1String("mobile_common_download_manager_download_failure"))
        return RowIs::Failed;
    if (strText == QLatin1String("panel_pause"))
        return RowIs::Paused;
    return strText.endsWith(QLatin1Char('%')) ? RowIs::Downloading : RowIs::Unclear;
}

const char* NameOf(RowIs state)
{
    constexpr const char* Names[] = {"absent", "waiting", "downloading", "failed", "paused", "unclear"};
    return Names[static_cast<int>(state)];
}
