#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace KXClient {

// What the window remembers, in an INI file. Thread: the GUI thread.
struct WindowSettings
{
    static constexpr int MostRecentFolders = 8;

    QString strFolder;         // absolute; empty: none chosen yet
    QStringList recentFolders; // absolute, the latest first
    QString strLanguage = QStringLiteral("en");
    bool bDark = false;
    QByteArray geometry; // of the window, and of its splitter, as Qt saves them; empty: none saved yet
    QByteArray splitter;

    // The file in the user's configuration folder.
    static QString DefaultFile();
    // A file that cannot be read gives the defaults, a value that is no good the default of that value, and a log line
    // each. A file that is not there is neither.
    static WindowSettings Load(const QString& strFile);
    // A file whose content is no settings at all is kept under the name FILE.bad. False, and a log line, on failure.
    bool Save(const QString& strFile) const;

    // Makes it the download folder and the latest of the recent ones.
    void UseFolder(const QString& strPath);
};

} // namespace KXClient
