#pragma once

#include <QtCore/QLatin1String>

#include <cstddef>

// The plug-in's events on the host's bus and the keys of their JSON payloads: the one list that the plug-in and a host
// share. Payloads are described in Docs/Events.md. A JSON payload travels as a QString.
namespace HostEvents {

// Received by the plug-in.
constexpr char ConfigPluginUpdateLanguage[] = "EventNotifyConfigPluginUpdateLanguage"; // [QString language code]
constexpr char DownloadRecordList[] = "EventNotifyDownloadRecordList";         // [QByteArray records, int record type]
constexpr char DeleteDownloadRecord[] = "EventNotifyDeleteDownloadRecord";     // [QString download folder]
constexpr char GetRecordDownloading[] = "EventNotifyGetRecordDownloading";     // [QString JSON strRecordId, iType]
constexpr char DownloadRecordPath[] = "EventNotifyDownloadRecordPath";         // [QString download folder]
constexpr char DeviceRecordThumbsPath[] = "EventNotifyDeviceRecordThumbsPath"; // [QString record id, QString picture]

// Sent by the plug-in.
constexpr char DownloadRecordStates[] = "EventNotifyDownloadRecordStates"; // QString JSON, see Docs/Events.md
constexpr char RecordDownloading[] = "EventNotifyRecordDownloading";       // QString JSON strRecordId, bDownloadList
constexpr char DownloadNumber[] = "EventNotifyDownloadNumber";             // int
constexpr char EnterDownloadSetting[] = "EventNotifyEnterDownloadSetting"; // empty list
constexpr char LogV2Report[] = "EventNotifyLogV2Report";                   // QString JSON, one line

// Keys of the JSON payloads.
template <std::size_t Size>
constexpr QLatin1String Key(const char (&szKey)[Size])
{
    return QLatin1String(szKey, static_cast<int>(Size) - 1);
}
constexpr QLatin1String KeyRecordType = Key("iRecordType");
constexpr QLatin1String KeyRecordId = Key("strRecordId");
constexpr QLatin1String KeyDownloadPath = Key("strDownloadPath");
constexpr QLatin1String KeyCode = Key("iCode");
constexpr QLatin1String KeyReget = Key("bReget");
constexpr QLatin1String KeyType = Key("iType");
constexpr QLatin1String KeyDownloadList = Key("bDownloadList");

} // namespace HostEvents
