#pragma once

#include "Host/Client/DownloadInput.h"

#include <QtCore/QString>

namespace KXClient {

class CommandLine;

// What every command that loads the plug-in is told.
struct ClientOptions
{
    InputOptions input;
    QString strPluginFile;
    QString strLogFile;
    QString strDatabaseFile;
};

// Declares these options; `strStateFolder` is how the help calls the folder of log and database.
void AddClientOptions(CommandLine& line, const QString& strStateFolder);
// Their values with every default filled in, for a download folder and a folder for log and database.
ClientOptions ReadClientOptions(const CommandLine& line, const QString& strFolder, const QString& strStateFolder);

// False, and the reason printed, when the file cannot be written.
bool StartLogFile(const QString& strFile);
// Reads the input, which starts the embedded site, opens the database and configures the host. False, and the reason
// printed, when anything is no good.
bool SetUpClient(const ClientOptions& options, DownloadInput& input);
// Closes the database, after the plug-in.
void TearDownClient();

} // namespace KXClient
