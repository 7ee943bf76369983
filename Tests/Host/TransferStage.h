#pragma once

#include "Host/KXLogic/HostSettings.h"
#include "ScratchDir.h"
#include "ScriptedServer.h"
#include "TransferListener.h"

// What a test of transfers needs: a folder, a server, the download module with its listener, and settings that lead all
// sources to that server, recording "r" to the path "/r".
class TransferStage
{
public:
    TransferStage();

    void Configure() { KXHost::Configure(m_settings); }
    // Of the device's source.
    KXHost::SourceSettings& Source() { return m_settings.sources[1]; }
    QString Path(const QString& strFile) const { return m_folder.filePath(strFile); }
    QByteArray Content(const QString& strFile) const;
    // A transfer of the device's source into the file "ID.mp4".
    int Start(const QString& strId, const QString& strPassword = QString());
    // The same, to its last state: 0, 2 or 3; -1 when there was none in time or it was not started.
    int Run(const QString& strId, const QString& strPassword = QString());
    QString ReasonOf(const QString& strId) const;

    ScratchDir m_folder;
    ScriptedServer m_server;
    KXHost::Settings m_settings;
    KXLogic::IDownloadLogic& m_logic;
    TransferListener m_listener;
};
