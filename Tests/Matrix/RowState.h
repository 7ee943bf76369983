#pragma once

class DownloadItem;

// What a row of the panel says of its download.
enum class RowIs { Absent, Waiting, Downloading, Failed, Paused, Unclear };

// Read from the text that the row paints; Absent for null.
RowIs StateOfRow(DownloadItem* pRow);
const char* NameOf(RowIs state);
inline bool IsActive(RowIs state)
{
    return state == RowIs::Waiting || state == RowIs::Downloading;
}
