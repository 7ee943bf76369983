#pragma once

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QString>

// Tells for many paths at once which surely name no file: a folder is read once instead of asking the file system for
// each name. The answer is as old as the object.
//
// Thread: one, not locked.
class FolderListing
{
public:
    // False when no file of that path existed when its folder was read. True says nothing: ask the file system.
    bool MayExist(const QString& strPath);

private:
    QHash<QString, QSet<QString>> m_names; // lower-case names by folder
    int m_iAsked = 0;
};
