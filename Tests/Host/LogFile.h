#pragma once

#include "Host/ktl/LogSettings.h"
#include "ScratchDir.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>

// The log of one test, in a file that goes with it; the console stays quiet.
class LogFile
{
public:
    explicit LogFile(std::size_t uMaxFileBytes = 5u * 1024u * 1024u)
    {
        KXHost::LogSettings settings;
        settings.strFilePath = Path();
        settings.uMaxFileBytes = uMaxFileBytes;
        settings.iConsoleLevel = 7;
        m_bOpened = KXHost::SetLogSettings(settings);
    }
    ~LogFile()
    {
        KXHost::LogSettings settings; // lets go of the file
        settings.iConsoleLevel = 7;
        KXHost::SetLogSettings(settings);
    }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    bool IsOpened() const { return m_bOpened; }
    QString Path() const { return m_folder.filePath(QStringLiteral("kx.log")); }
    QString Folder() const { return m_folder.path(); }
    QStringList Lines() const
    {
        QFile file(Path());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QStringList listLines = QString::fromUtf8(file.readAll()).remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
        listLines.removeAll(QString());
        return listLines;
    }

private:
    ScratchDir m_folder;
    bool m_bOpened = false;
};
