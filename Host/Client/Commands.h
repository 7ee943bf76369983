#pragma once

class QStringList;

namespace KXClient {

// The sub-commands: each reads its own arguments, those behind its name, and gives the exit status of the process.
int RunDownload(const QStringList& arguments);
int RunGui(const QStringList& arguments);
int RunScreenshot(const QStringList& arguments);
int RunServe(const QStringList& arguments);

} // namespace KXClient
