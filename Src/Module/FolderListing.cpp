#include "Module/FolderListing.h"

#include <QtCore/QDirIterator>

#include <algorithm>

namespace {

constexpr int WorthReading = 32; // a few questions cost less than reading a folder

// File systems take some names for others: by case, composed letters, short names, dropped dots and spaces at the end.
// Only names that are plain in this sense, but for their case, can be looked up in a listing.
bool IsPlain(const QString& strName)
{
    const auto isPlain = [](QChar c) { return c.unicode() >= ' ' && c.unicode() < 0x7F && c != QLatin1Char('~'); };
    const QChar last = strName.isEmpty() ? QChar() : strName.back();
    return last != QLatin1Char('.') && last != QLatin1Char(' ') && !strName.contains(QLatin1Char('\\')) &&
           !strName.isEmpty() && std::all_of(strName.begin(), strName.end(), isPlain);
}

QSet<QString> NamesIn(const QString& strFolder)
{
    QSet<QString> names;
    QDirIterator entries(strFolder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        entries.next();
        names.insert(entries.fileName().toLower());
    }
    return names;
}

} // namespace

bool FolderListing::MayExist(const QString& strPath)
{
    const int iSlash = strPath.lastIndexOf(QLatin1Char('/'));
    const QString strName = strPath.mid(iSlash + 1);
    if (++m_iAsked <= WorthReading || iSlash <= 0 || !IsPlain(strName))
        return true;
    const QString strFolder = strPath.left(iSlash);
    auto names = m_names.find(strFolder);
    if (names == m_names.end())
        names = m_names.insert(strFolder, NamesIn(strFolder));
    return names->contains(strName.toLower());
}
