#include "Host/Client/Window/WindowSettings.h"

#include "Host/Client/Console.h"
#include "Host/Client/Window/Languages.h"
#include "ktl/TPrintLog.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>

#include <algorithm>

namespace KXClient {

namespace {

constexpr qint64 LargestFile = 64 * 1024;

const QString KeyFolder = QStringLiteral("download/folder");
const QString KeyRecent = QStringLiteral("download/recentFolders");
const QString KeyLanguage = QStringLiteral("window/language");
const QString KeyDark = QStringLiteral("window/dark");
const QString KeyGeometry = QStringLiteral("window/geometry");
const QString KeySplitter = QStringLiteral("window/splitter");

void LogProblem(const QString& strFile, const QString& strWhat)
{
    ktl::TPrintLog::instance()->Log("Host/Client/Window/WindowSettings", __LINE__, "WindowSettings::Load", "Client",
                                    FailureLevel, "settings file %s: %s", strFile.toUtf8().constData(),
                                    strWhat.toUtf8().constData());
}

// As Qt reads an INI file; it would leave out what it does not understand.
bool IsIniLine(const QByteArray& line)
{
    const QByteArray text = line.trimmed();
    if (text.isEmpty() || text.startsWith(';') || text.startsWith('#'))
        return true;
    return text.startsWith('[') ? text.endsWith(']') : text.contains('=');
}

// What is wrong with the file as such; empty when it can be read or is not there. Serialized values are not ours: they
// are refused before they are decoded, because a count in them is believed.
QString FileProblem(const QString& strFile)
{
    QFile file(strFile);
    if (!file.exists())
        return QString();
    if (!QFileInfo(strFile).isFile() || !file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot be read");
    const QByteArray text = file.read(LargestFile + 1);
    if (text.size() > LargestFile)
        return QStringLiteral("is too large");
    if (text.contains('\0') || text.contains("@Variant") || text.contains("@DateTime"))
        return QStringLiteral("holds values of an unknown kind");
    const QList<QByteArray> lines = text.split('\n');
    return std::all_of(lines.begin(), lines.end(), IsIniLine) ? QString() : QStringLiteral("is no INI file");
}

// Reads one value; one that is no good is logged and left at its default.
class Reader
{
public:
    explicit Reader(const QString& strFile)
        : m_strFile(strFile)
        , m_settings(strFile, QSettings::IniFormat)
    {
        m_settings.setIniCodec("UTF-8");
    }

    template <class Target, class IsGood>
    void Take(const QString& strKey, Target& target, IsGood&& isGood)
    {
        if (!m_settings.contains(strKey))
            return;
        const QVariant value = m_settings.value(strKey);
        if (value.canConvert<Target>() && isGood(value.value<Target>()))
            target = value.value<Target>();
        else
            LogProblem(m_strFile, strKey + QLatin1String(" is no good"));
    }

private:
    QString m_strFile;
    QSettings m_settings;
};

bool IsAbsolute(const QString& strPath)
{
    return QDir::isAbsolutePath(strPath) && !strPath.startsWith(QLatin1Char(':'));
}

} // namespace

QString WindowSettings::DefaultFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + QLatin1String("/kxclient.ini");
}

WindowSettings WindowSettings::Load(const QString& strFile)
{
    WindowSettings settings;
    const QString strProblem = FileProblem(strFile);
    if (!strProblem.isEmpty()) {
        LogProblem(strFile, strProblem);
        return settings;
    }
    Reader reader(strFile);
    const auto any = [](const QByteArray&) { return true; };
    const auto allAbsolute = [](const QStringList& folders) {
        return folders.size() <= MostRecentFolders && std::all_of(folders.begin(), folders.end(), IsAbsolute);
    };
    QString strDark;
    const auto isTruth = [](const QString& strText) {
        return strText == QLatin1String("true") || strText == QLatin1String("false");
    };
    reader.Take(KeyFolder, settings.strFolder, IsAbsolute);
    reader.Take(KeyRecent, settings.recentFolders, allAbsolute);
    reader.Take(KeyLanguage, settings.strLanguage, IsLanguage);
    reader.Take(KeyDark, strDark, isTruth);
    reader.Take(KeyGeometry, settings.geometry, any);
    reader.Take(KeySplitter, settings.splitter, any);
    settings.bDark = strDark == QLatin1String("true");
    return settings;
}

bool WindowSettings::Save(const QString& strFile) const
{
    const QString strBad = strFile + QLatin1String(".bad");
    if (QFileInfo(strFile).isFile() && !FileProblem(strFile).isEmpty()) {
        QFile::remove(strBad);
        QFile::rename(strFile, strBad);
    }
    QDir().mkpath(QFileInfo(strFile).absolutePath());
    QSettings settings(strFile, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    const auto put = [&settings](const QString& strKey, const QVariant& value, bool bKnown) {
        bKnown ? settings.setValue(strKey, value) : settings.remove(strKey);
    };
    put(KeyFolder, strFolder, !strFolder.isEmpty());
    put(KeyRecent, recentFolders, !recentFolders.isEmpty());
    put(KeyLanguage, strLanguage, true);
    put(KeyDark, bDark, true);
    put(KeyGeometry, geometry, !geometry.isEmpty());
    put(KeySplitter, splitter, !splitter.isEmpty());
    settings.sync();
    if (settings.status() == QSettings::NoError)
        return true;
    LogProblem(strFile, QStringLiteral("cannot be written"));
    return false;
}

void WindowSettings::UseFolder(const QString& strPath)
{
    strFolder = QDir::cleanPath(strPath);
    recentFolders.removeAll(strFolder);
    recentFolders.prepend(strFolder);
    while (recentFolders.size() > MostRecentFolders)
        recentFolders.removeLast();
}

} // namespace KXClient
