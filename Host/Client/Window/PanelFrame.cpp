#include "Host/Client/Window/PanelFrame.h"

#include "Host/Client/PluginHost.h"

#include <QtCore/QEvent>
#include <QtCore/QTimer>
#include <QtWidgets/QVBoxLayout>

namespace KXClient {

PanelFrame::PanelFrame(PluginHost& plugin, QWidget* pParent)
    : QWidget(pParent)
    , m_plugin(plugin)
{
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    QWidget* pPanel = plugin.Panel();
    pPanel->setParent(this, Qt::Widget);
    pLayout->addWidget(pPanel, 0, Qt::AlignTop | Qt::AlignHCenter);
    pPanel->installEventFilter(this);
    plugin.Show();
}

PanelFrame::~PanelFrame()
{
    QWidget* pPanel = m_plugin.Panel();
    if (!pPanel || pPanel->parentWidget() != this)
        return;
    pPanel->removeEventFilter(this);
    pPanel->hide();
    pPanel->setParent(nullptr);
}

// Later: whoever hides the panel is still at it.
bool PanelFrame::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::HideToParent)
        QTimer::singleShot(0, this, [this] { m_plugin.Show(); });
    return QWidget::eventFilter(pWatched, pEvent);
}

} // namespace KXClient
