#pragma once

// The meta type "DownloadRecordInfoPtr", by which queued connections carry records. Its functions lie in this library:
// the name is registered with the first panel and goes when the library is unloaded, unless the client had it first.
//
// Thread: the GUI thread.
namespace RecordMetaType {

void Register();

} // namespace RecordMetaType
