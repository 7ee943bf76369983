#pragma once

#include "Host/Site/SiteRecording.h"

#include "Model/DownloadRecordInfo.h"

// The built-in recordings and their devices.
namespace KXHost::BuiltIn {

using KXDownLoadList::CloudRecord;
using KXDownLoadList::DeviceRecord;
using KXDownLoadList::IOTLanRecord;
using KXDownLoadList::LanModuleRecord;

struct Device
{
    const char* pSerial;
    const char* pAccount;
    qint64 lChannelBase; // channel id of channel 0
    qint64 lStorage;
    const char* pTrue;
    const char* pTold;
};

inline constexpr Device Devices[] = {
    {"KXC4M7730021", "gate.north", 730021000, 41, "Gate-North-21", "Gate-North-21"},
    {"KXC4M7730055", "warehouse", 730055000, 42, "Depot_55!", "Depot_55!"},
    {"KXN8R5120907", "recorder-8", 120907000, 81, "rec8 Pass", "rec8 Pass"},
    {"KXD2S0048816", "stairs", 48816000, 82, "St41rs", "St41rs"},
    {"KXB1L6600342", "bell", 600342000, 91, "d0or:bell", "d0or:bell"},
    {"KXM3G0007719", "module-3", 7719000, 95, "tok-7719-e4c2", "tok-7719-e4c2"},
    {"KXD2S0059903", "garage", 59903000, 83, "Garage new", "Garage new"},
    {"KXD2S0061174", "attic", 61174000, 84, "Attic true", "Attic told"},
    {"KXC4M7730068", "harbour", 730068000, 43, "Harb0ur", "Harb0ur"},
};

// What sets a recording apart.
enum Mark : unsigned {
    Plain = 0,
    Encrypted = 1,     // cloud: the recording itself too, not only its cover
    AltStart = 2,      // device: reached the other way
    StalePassword = 4, // device: the record carries an old password
    NoRecovery = 8,    // device: and nobody can get the new one
};

struct Row
{
    int iType;
    int iChannel;
    const char* pId;
    const char* pSerial;
    const char* pFileName;
    const char* pTitle;
    const char* pBegin;
    const char* pEnd;
    const char* pSample;
    qint64 lSize;
    const char* pExpect;
    unsigned uMarks;
    CoverState cover = CoverState::None;
    const char* pCoverOwner = nullptr;
};

inline constexpr char Finished[] = "finished";
inline constexpr char Refused[] = "refused";
inline constexpr char Dropped[] = "dropped";

// clang-format off
inline constexpr Row Basic[] = {
    {CloudRecord, 1, "4611686018427400101", "KXC4M7730021", u8"Front gate 2024-03-18.mp4", u8"Front gate, visitors",
     "20240318T081500", "20240318T082000", "bars", 3481617, Finished, Plain, CoverState::Sound},
    {CloudRecord, 2, "4611686018427400102", "KXC4M7730021", u8"Front gate 2024-03-18.mp4", u8"Front gate, lane 2",
     "20240318T081500", "20240318T082000", "clock", 2750003, Finished, Plain, CoverState::Sound},
    {CloudRecord, 1, "4611686018427400103", "KXC4M7730055", u8"Entrepôt – été.mp4", u8"Entrepôt, quai d’été",
     "20240714T134205", "20240714T135110", "zoom", 9120448, Finished, Plain, CoverState::Sound},
    {CloudRecord, 2, "4611686018427400104", "KXC4M7730055", u8"北门 大厅.mp4", u8"北门 大厅 全天",
     "20240715T000000", "20240715T235959", "clock", 224395264, Finished, Plain, CoverState::Sound},
    {CloudRecord, 1, "9223372036854775799", "KXC4M7730055", u8"Night watch.mp4", u8"Night watch (encrypted)",
     "20240716T010000", "20240716T011500", "zoom", 5242881, Finished, Encrypted, CoverState::Sound},

    {DeviceRecord, 3, "KXN8R5120907_3_20240316T220000", "KXN8R5120907", u8"Loading dock 3.mp4", u8"Loading dock 3",
     "20240316T220000", "20240316T223000", "bars", 20000000, Finished, Plain},
    {DeviceRecord, 4, "KXN8R5120907_4_20240317T061230", "KXN8R5120907", u8"Café Müller.mp4", u8"Café Müller, Eingang",
     "20240317T061230", "20240317T061545", "clock", 1310720, Finished, Plain},
    {DeviceRecord, 12, "KXN8R5120907_12_20240317T190000", "KXN8R5120907", u8"駐車場 2.mp4", u8"駐車場 2",
     "20240317T190000", "20240317T191000", "zoom", 7340033, Finished, Plain},
    {DeviceRecord, 1, "KXD2S0048816_1_20240318T071111", "KXD2S0048816", u8"Stairwell.mp4", u8"Stairwell, motion",
     "20240318T071111", "20240318T071141", "clock", 102400, Finished, AltStart},

    {IOTLanRecord, 1, "KXB1L6600342_1_20240401T074500", "KXB1L6600342", u8"Doorbell 07-45.mp4", u8"Doorbell, ring",
     "20240401T074500", "20240401T074530", "zoom", 655360, Finished, Plain},
    {IOTLanRecord, 1, "KXB1L6600342_1_20240401T180203", "KXB1L6600342", u8"Zvonek Žižkov.mp4", u8"Zvonek Žižkov, pohyb",
     "20240401T180203", "20240401T180603", "bars", 4000037, Finished, Plain},

    {LanModuleRecord, 1, "KXM3G0007719_1_20240402T090000", "KXM3G0007719", u8"Module camera 1.mp4", u8"Module camera 1",
     "20240402T090000", "20240402T090500", "clock", 2097153, Finished, Plain},
    {LanModuleRecord, 2, "KXM3G0007719_2_20240402T090000", "KXM3G0007719", u8"Module camera 2.mp4", u8"Module camera 2",
     "20240402T090000", "20240402T091000", "zoom", 6000000, Finished, Plain},
    {LanModuleRecord, 4, "KXM3G0007719_4_20240403T000001", "KXM3G0007719", u8"Склад 4.mp4", u8"Склад 4, ночь",
     "20240403T000001", "20240403T001001", "bars", 12582912, Finished, Plain},
};

inline constexpr Row Difficult[] = {
    {DeviceRecord, 1, "KXD2S0059903_1_20240505T101500", "KXD2S0059903", u8"Garage 1.mp4", u8"Garage 1, old password",
     "20240505T101500", "20240505T102000", "bars", 1500000, Finished, StalePassword},
    {DeviceRecord, 2, "KXD2S0059903_2_20240505T101500", "KXD2S0059903", u8"Garage 2.mp4", u8"Garage 2, old password",
     "20240505T101500", "20240505T102000", "zoom", 1700000, Finished, StalePassword},
    {DeviceRecord, 1, "KXD2S0061174_1_20240506T120000", "KXD2S0061174", u8"Attic.mp4", u8"Attic, wrong new password",
     "20240506T120000", "20240506T120500", "clock", 900000, Refused, StalePassword},
    {DeviceRecord, 2, "KXD2S0061174_2_20240505T110000", "KXD2S0061174", u8"Attic 2.mp4", u8"Attic 2, no recovery",
     "20240505T110000", "20240505T110500", "clock", 800000, Refused, StalePassword | NoRecovery},

    {CloudRecord, 1, "4611686018427400201", "KXC4M7730068", u8"Quay 1.mp4", u8"Quay 1, cover with a wrong key",
     "20240601T060000", "20240601T060500", "bars", 1100000, Dropped, Plain, CoverState::WrongKey},
    {CloudRecord, 2, "4611686018427400202", "KXC4M7730068", u8"Quay 2.mp4", u8"Quay 2, cover missing",
     "20240601T061000", "20240601T061500", "clock", 1200000, Finished, Plain, CoverState::Missing},
    {CloudRecord, 3, "4611686018427400203", "KXC4M7730068", u8"Quay 3.mp4", u8"Quay 3, cover is no picture",
     "20240601T062000", "20240601T062500", "zoom", 1300000, Finished, Plain, CoverState::NoPicture},
    {CloudRecord, 4, "4611686018427400204", "KXC4M7730068", u8"Quay 4.mp4", u8"Quay 4, shared cover",
     "20240601T063000", "20240601T063500", "bars", 1400000, Finished, Plain, CoverState::Sound, "4611686018427400204"},
    {CloudRecord, 4, "4611686018427400205", "KXC4M7730068", u8"Quay 4 later.mp4", u8"Quay 4, shared cover again",
     "20240601T063500", "20240601T064000", "zoom", 1600000, Finished, Plain, CoverState::Sound, "4611686018427400204"},
    {CloudRecord, 5, "4611686018427400206", "KXC4M7730068", u8"Quay 5.mp4", u8"Quay 5, encrypted, cover missing",
     "20240601T070000", "20240601T070500", "clock", 2000000, Finished, Encrypted, CoverState::Missing},
};
// clang-format on

} // namespace KXHost::BuiltIn
