#pragma once

#include <QtCore/QPluginLoader>
#include <QtCore/QString>

class IKXWidgetPluginInterface;
class QWidget;

namespace KXClient {

// Loads one widget plug-in and takes it through its life: identity, Init, and at the end Stop, Destory, unload.
// Thread: the GUI thread.
class PluginHost
{
public:
    PluginHost() = default;
    ~PluginHost() { Close(); }
    PluginHost(const PluginHost&) = delete;
    PluginHost& operator=(const PluginHost&) = delete;

    // The plug-in library beside the executable.
    static QString DefaultFile();

    // False, with the reason, when the file is no plug-in of the right interface or did not make its widget.
    bool Open(const QString& strFile, const QString& strLanguage, QString& strError);
    // The plug-in's widget, owned by the plug-in; null when nothing is open.
    QWidget* Panel() const;
    // Has the plug-in show its widget; harmless when nothing is open.
    void Show();
    // Harmless when nothing is open.
    void Close();

private:
    bool Load(const QString& strFile, QString& strError);

    QPluginLoader m_loader;
    IKXWidgetPluginInterface* m_pPlugin = nullptr; // owned by the loader's library
    bool m_bInitialised = false;
};

} // namespace KXClient
