#pragma once

class DownloadItem;

// What assistive technology is told of the rows: nothing while none runs, and nothing of a row that is out of view and
// was not asked for. So a long list stays cheap.
//
// Thread: the GUI thread.
namespace RowNews {

// The row is in its view now.
void Added(DownloadItem& row);
// It is about to leave it.
void Goes(DownloadItem& row);
void StateChanged(DownloadItem& row);
// More has arrived. Told when the shown percentage is another.
void Progressed(DownloadItem& row);
// The list has the focus, and this is its row.
void Focused(DownloadItem& row);

} // namespace RowNews
