#include "Matrix/Cell.h"

namespace Matrix {

namespace {

constexpr RowIs None = RowIs::Absent;
constexpr RowIs Waits = RowIs::Waiting;
constexpr RowIs Paused = RowIs::Paused;
constexpr RowIs Failed = RowIs::Failed;
constexpr RowIs Pressed = RowIs::Unclear;
constexpr unsigned Plain = Outside::Plain;
constexpr unsigned Locked = Outside::Protected;
constexpr unsigned NewFolder = Outside::NewFolder;

constexpr const char* Start = "Start%NRecordDownload %I";
constexpr const char* Stop = "Stop%NRecordDownload %I";
constexpr const char* Event = "notify EventNotifyDownloadRecordStates";
constexpr const char* Count = "notify EventNotifyDownloadNumber";
constexpr const char* Click = "notify EventNotifyLogV2Report";

} // namespace

const std::vector<Way>& Ways()
{
    static const std::vector<Way> ways{
        {"start of a new one", "1234", Own::New, Plain, Start, Trigger::Request, 0, Engine::Has, Waits, Waits},
        {"start of the next", "1234", Own::Waiting, Plain, Start, Trigger::FinishOther, 0, Engine::Has, Waits, Waits},
        {"start of a resumed one", "1234", Own::Paused, Plain, Start, Trigger::Press, 0, Engine::Has, Waits, Waits},
        {"start of a retried one", "1234", Own::Failed, Plain, Start, Trigger::Press, 0, Engine::Has, Waits, Waits},
        {"start of one put back", "2", Own::PutBack, Locked, Start, Trigger::AnswerDevice, 0, Engine::Has, Waits,
         Waits},
        {"start that is refused", "1234", Own::New, Plain, Start, Trigger::RefusedRequest, 0, Engine::Has, Waits,
         Waits},

        {"stop of a paused one", "1234", Own::Running, Plain, Stop, Trigger::Press, 0, Engine::Lost, Pressed, Paused},
        {"stop of a deleted one", "1234", Own::Running, Plain, Stop, Trigger::Delete, 0, Engine::Lost, Waits, None},
        {"stop of a deleted waiting one", "1234", Own::Waiting, Plain, Stop, Trigger::Delete, 0, Engine::Lost, Waits,
         None},
        {"stop of a deleted paused one", "1234", Own::Paused, Plain, Stop, Trigger::Delete, 0, Engine::Lost, Paused,
         None},
        {"stop of a failed one", "1234", Own::Running, Plain, Stop, Trigger::Raise, 0, Engine::Has, Waits, Failed},
        {"stop of a refused one", "1234", Own::Running, Plain, Stop, Trigger::Raise, 3, Engine::Has, Waits, Failed},
        {"stop of one put back", "2", Own::Running, Locked, Stop, Trigger::Raise, 3, Engine::Has, Waits, Waits},
        {"stop of a finished one", "34", Own::Running, Plain, Stop, Trigger::Raise, 2, Engine::Ends, Waits, None},
        {"stop of a finished one", "2", Own::Running, Plain, Stop, Trigger::Raise, 2, Engine::Lost, Waits, None},
        {"stop on a full disk", "1234", Own::Running, Plain, Stop, Trigger::FillDisk, 0, Engine::Lost, Waits, Paused},
        {"stop of all", "1234", Own::Running, Plain, Stop, Trigger::PressAll, 0, Engine::Lost, Paused, Paused},

        {"password question", "1", Own::New, Locked, "GetCloudRecordPassword %I", Trigger::Request, 0, Engine::Holds,
         None, Waits},
        {"picture question", "1", Own::New, Plain, "get u-%I", Trigger::Request, 0, Engine::Holds, None, Waits},
        {"picture question with a row", "1", Own::Paused, Plain, "get u-%I", Trigger::Press, 0, Engine::Holds, Waits,
         Waits},
        {"picture question after the password", "1", Own::HeldLocked, Locked, "get u-%I", Trigger::AnswerCloud, 0,
         Engine::Has, Waits, Waits},
        {"device's password question", "2", Own::Running, Locked, "RequestDevicePassword", Trigger::Raise, 3,
         Engine::Has, Waits, Waits},
        {"opening of a device's password", "2", Own::PutBack, Locked, "AesDecryptDeviceUserInfo", Trigger::AnswerDevice,
         0, Engine::Has, Waits, Waits},

        {"database", "1234", Own::Running, Plain, "Insert", Trigger::Raise, 2, Engine::Ends, Waits, None},
        {"report", "1234", Own::Running, Plain, "ReportRecordDownloaded", Trigger::Raise, 2, Engine::Ends, Waits, None},

        {"event of a failure", "134", Own::Running, Plain, Event, Trigger::Raise, 0, Engine::Has, Waits, Failed},
        {"event of a failure", "2", Own::Running, Plain, Event, Trigger::Raise, 0, Engine::Lost, Waits, Failed},
        {"event of the end", "134", Own::Running, Plain, Event, Trigger::Raise, 2, Engine::Ends, Waits, None},
        {"event of the end", "2", Own::Running, Plain, Event, Trigger::Raise, 2, Engine::Lost, Waits, None},
        {"event of a refusal", "134", Own::Running, Plain, Event, Trigger::Raise, 3, Engine::Has, Waits, Failed},
        {"event of a refusal", "2", Own::Running, Plain, Event, Trigger::Raise, 3, Engine::Lost, Waits, Failed},
        {"event of one put back", "2", Own::Running, Locked, Event, Trigger::Raise, 3, Engine::Has, Waits, Waits},
        {"event of an abort", "1", Own::Running, Plain, Event, Trigger::Raise, 100, Engine::Has, Waits, Failed},
        {"event of another code", "1234", Own::Running, Plain, Event, Trigger::Raise, 7, Engine::Has, Waits, Waits},
        {"event of a wrong key", "1", Own::Held, Plain, Event, Trigger::AnswerWrongKey, 0, Engine::Holds, None, None},
        {"event of a wrong key with a row", "1", Own::HeldAgain, Plain, Event, Trigger::AnswerWrongKey, 0,
         Engine::Holds, Waits, Failed},
        {"answer to the client", "1234", Own::Running, Plain, "notify EventNotifyRecordDownloading", Trigger::Ask, 0,
         Engine::Has, Waits, Waits},

        {"count of a new row", "234", Own::New, Plain, Count, Trigger::Request, 0, Engine::Has, Waits, Waits},
        {"count of a new row, no place is free", "234", Own::NewFull, Plain, Count, Trigger::Request, 0, Engine::Has,
         Waits, Waits},
        {"count of a new row", "1", Own::Held, Plain, Count, Trigger::AnswerPicture, 0, Engine::Has, Waits, Waits},
        {"count of a new row after the password", "1", Own::HeldLocked, Locked, Count, Trigger::AnswerCloud, 0,
         Engine::Has, Waits, Waits},
        {"count after the end", "1234", Own::Running, Plain, Count, Trigger::Raise, 2, Engine::Lost, None, None},
        {"count after a deletion", "1234", Own::Running, Plain, Count, Trigger::Delete, 0, Engine::Lost, None, None},
        {"count after a waiting one's deletion", "1234", Own::Waiting, Plain, Count, Trigger::Delete, 0, Engine::Lost,
         None, None},

        {"report of a pause", "1234", Own::Running, Plain, Click, Trigger::Press, 0, Engine::Lost, Paused, Paused},
        {"report of a resume", "234", Own::Paused, Plain, Click, Trigger::Press, 0, Engine::Has, Waits, Waits},
        {"report of a resume", "1", Own::Paused, Plain, Click, Trigger::Press, 0, Engine::Holds, Waits, Waits},
        {"report of a retry", "1234", Own::Failed, Plain, Click, Trigger::Press, 0, Engine::Lost, Failed, Waits},

        {"removal of a failed file", "134", Own::Running, Plain, "2 RecordDownloadModule::RemoveFileJpg",
         Trigger::Raise, 0, Engine::Has, Waits, Failed},
        {"removal of a deleted file", "1234", Own::Running, Plain, "2 RecordDownloadModule::RemoveFileJpg",
         Trigger::Delete, 0, Engine::Lost, Waits, None},
        {"log of a new folder", "1234", Own::New, NewFolder, "2 RecordDownloadModule::EnsureDownloadPathExists",
         Trigger::Request, 0, Engine::Has, Waits, Waits},
        {"log of a full disk", "234", Own::New, Plain, "6 RecordDownloadModule::JudgeDiskIsFull",
         Trigger::RequestOnFullDisk, 0, Engine::Has, Waits, Waits},
        {"log of one put back", "2", Own::Running, Locked, "2 RecordDownloadModule::OnDownloadDeviceRecordState",
         Trigger::Raise, 3, Engine::Has, Waits, Waits},
        {"log of a state", "3", Own::Running, Plain, "2 RecordDownloadModule::OnDownloadIOTLanRecordState",
         Trigger::Raise, 0, Engine::Has, Waits, Failed},

        {"leaving module 5", "1234", Own::Running, Plain, "UnregisterCallbacks", Trigger::Stop, 0, Engine::Lost, Waits,
         Waits},
        {"leaving module 3", "1234", Own::Running, Plain, "UnregisterCloudPasswordCallback", Trigger::Stop, 0,
         Engine::Lost, Waits, Waits},
        {"leaving module 2", "2", Own::PutBack, Locked, "DetachObserver", Trigger::Stop, 0, Engine::Lost, Waits, Waits},
        {"leaving the pictures", "1", Own::Held, Plain, "Detach pictures", Trigger::Stop, 0, Engine::Lost, None, Waits},
    };
    return ways;
}

const std::vector<Act>& Acts()
{
    static const std::vector<Act> acts{
        {'1', "S"},   {'1', "D"},    {'1', "DS"},   {'1', "P"},   {'1', "PS"},  {'1', "PSD"}, {'1', "R"},
        {'1', "PR"},  {'1', "RP"},   {'1', "FS"},   {'1', "FR"},  {'1', "DTS"}, {'1', "PTR"}, {'1', "2T"},
        {'1', "0T"},  {'1', "D2TS"}, {'1', "P2TR"}, {'1', "SXS"}, {'1', "Q"},   {'2', "S"},   {'2', "D"},
        {'2', "PR"},  {'2', "FS"},   {'6', "S"},    {'6', "D"},   {'6', "PR"},  {'6', "2T"},  {'6', "3T"},
        {'6', "2TS"}, {'6', "2PTR"}, {'6', "1TdT"}, {'3', "S"},   {'3', "D"},   {'3', "R"},   {'3', "B"},
        {'4', "S"},   {'4', "R"},    {'5', "S"},    {'5', "KT"},  {'9', "S"},   {'9', "SPR"}, {'9', "SF"},
        {'9', "FS"},  {'o', "2T"},   {'o', "P"},    {'-', "F"},   {'-', "FT"},  {'-', "N"},   {'-', "A"},
        {'-', "AB"},  {'-', "C"},    {'-', "KT"},   {'-', "X"},   {'-', "FX"},
    };
    return acts;
}

} // namespace Matrix
