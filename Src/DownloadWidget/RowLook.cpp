#include "DownloadWidget/RowLook.h"

#include "KXLogic/KXLogicCallbacks.h"

#include <QtCore/QtGlobal>

namespace StateCode = KXLogic::StateCode;

namespace RowLook {

namespace {

constexpr int OtherFailure = 4; // the engine does not act on it

double Ratio(qint64 lReceived, qint64 lTotal)
{
    // A record that has not received anything yet holds -1.
    return lTotal > 0 ? static_cast<double>(qMax<qint64>(lReceived, 0)) / static_cast<double>(lTotal) : 0.0;
}

} // namespace

std::optional<int> StateOfCode(int iCode, bool bReget)
{
    switch (iCode) {
    case StateCode::Failed:
    case StateCode::CloudAbort:
    case OtherFailure:
        return Failed;
    case StateCode::Running:
        return Downloading;
    case StateCode::Finished:
        return Finished;
    case StateCode::Refused:
        return bReget ? Waiting : Failed;
    default:
        return std::nullopt;
    }
}

int StateIcon(int iState)
{
    switch (iState) {
    case Failed:
        return IconRetry;
    case Paused:
        return IconResume;
    default:
        return IconPause;
    }
}

const char* StateColorKey(int iState)
{
    switch (iState) {
    case Waiting:
    case Paused:
        return "pc005";
    case Downloading:
        return "pc001";
    case Failed:
        return "pc020";
    default:
        return nullptr;
    }
}

const char* StateTextKey(int iState)
{
    switch (iState) {
    case Waiting:
        return QT_TRANSLATE_NOOP("DownloadItem", "mobile_common_download_manager_wait_download");
    case Failed:
        return QT_TRANSLATE_NOOP("DownloadItem", "mobile_common_download_manager_download_failure");
    case Paused:
        return QT_TRANSLATE_NOOP("DownloadItem", "panel_pause");
    default:
        return nullptr;
    }
}

int Percent(qint64 lReceived, qint64 lTotal)
{
    return static_cast<int>(qMin(Ratio(lReceived, lTotal) * 100, 1e9));
}

int ShownPercent(qint64 lReceived, qint64 lTotal)
{
    const int iPercent = Percent(lReceived, lTotal);
    return iPercent > 100 ? 99 : iPercent;
}

QString PercentText(qint64 lReceived, qint64 lTotal)
{
    return QStringLiteral("%1%2").arg(ShownPercent(lReceived, lTotal)).arg(QLatin1Char('%'));
}

qreal FillWidth(int iState, qint64 lReceived, qint64 lTotal)
{
    if (iState != Downloading)
        return 0;
    return static_cast<int>(qMin(Ratio(lReceived, lTotal), 1.0) * TrackWidth);
}

} // namespace RowLook
