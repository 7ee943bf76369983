#include "Host/KXLogic/RecordNotes.h"

#include <map>
#include <mutex>
#include <utility>

namespace KXHost {

namespace {

struct Note
{
    ExpectedRecording expected;
    QString strReason;
    bool bBegun = false;
};

using Key = std::pair<int, std::string>;

struct Notes
{
    std::mutex mutex; // guards the map
    std::map<Key, Note> map;
};

Notes& TheNotes()
{
    static Notes notes;
    return notes;
}

template <typename Change>
void Alter(int iRecordType, const std::string& strRecordId, Change change)
{
    Notes& notes = TheNotes();
    const std::lock_guard<std::mutex> lock(notes.mutex);
    change(notes.map[Key(iRecordType, strRecordId)]);
}

Note Find(int iRecordType, const std::string& strRecordId)
{
    Notes& notes = TheNotes();
    const std::lock_guard<std::mutex> lock(notes.mutex);
    const auto found = notes.map.find(Key(iRecordType, strRecordId));
    return found == notes.map.end() ? Note() : found->second;
}

} // namespace

void ExpectRecording(int iRecordType, const QString& strRecordId, const ExpectedRecording& expected)
{
    Alter(iRecordType, strRecordId.toStdString(), [&](Note& note) { note.expected = expected; });
}

bool WasTransferBegun(int iRecordType, const QString& strRecordId)
{
    return Find(iRecordType, strRecordId.toStdString()).bBegun;
}

QString TransferReason(int iRecordType, const QString& strRecordId)
{
    return Find(iRecordType, strRecordId.toStdString()).strReason;
}

ExpectedRecording ExpectedOf(int iRecordType, const std::string& strRecordId)
{
    return Find(iRecordType, strRecordId).expected;
}

void NoteBegun(int iRecordType, const std::string& strRecordId)
{
    Alter(iRecordType, strRecordId, [](Note& note) { note.bBegun = true; });
}

void NoteReason(int iRecordType, const std::string& strRecordId, const QString& strReason)
{
    Alter(iRecordType, strRecordId, [&](Note& note) { note.strReason = strReason; });
}

} // namespace KXHost
