#pragma once

#include <QtWidgets/QWidget>

namespace KXClient {

class PluginHost;

// The place of the plug-in's panel in the window. The panel is made to pop up alone and hides itself when its settings
// button is pressed; here it is a part of the window and stays. Thread: the GUI thread.
class PanelFrame : public QWidget
{
    Q_OBJECT

public:
    // `plugin` is open and outlives this.
    explicit PanelFrame(PluginHost& plugin, QWidget* pParent = nullptr);
    // Gives the panel, if it still is there, back to the plug-in as it was.
    ~PanelFrame() override;

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    PluginHost& m_plugin;
};

} // namespace KXClient
