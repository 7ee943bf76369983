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

std::optional<RowState> StateOfCode(int iCode, bool bReget)
{
    switch (iCode) {
    case StateCode::Failed:
    case StateCode::CloudAbort:
    case OtherFailure:
        return RowState::Failed;
    case StateCode::Running:
        return RowState::Downloading;
    case StateCode::Finished:
        return RowState::Finished;
    case StateCode::Refused:
        return bReget ? RowState::Waiting : RowState::Failed;
    default:
        return std::nullopt;
    }
}

int StateIcon(RowState state)
{
    switch (state) {
    case RowState::Failed:
        return IconRetry;
    case RowState::Paused:
        return IconResume;
    default:
        return IconPause;
    }
}

const char* StateColorKey(RowState state)
{
    switch (state) {
    case RowState::Waiting:
    case RowState::Paused:
        return "pc005";
    case RowState::Downloading:
        return "pc001";
    case RowState::Failed:
        return "pc020";
    default:
        return nullptr;
    }
}

const char* StateTextKey(RowState state)
{
    switch (state) {
    case RowState::Waiting:
        return QT_TRANSLATE_NOOP("DownloadItem", "mobile_common_download_manager_wait_download");
    case RowState::Failed:
        return QT_TRANSLATE_NOOP("DownloadItem", "mobile_common_download_manager_download_failure");
    case RowState::Paused:
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

qreal FillWidth(RowState state, qint64 lReceived, qint64 lTotal)
{
    if (state != RowState::Downloading)
        return 0;
    return static_cast<int>(qMin(Ratio(lReceived, lTotal), 1.0) * TrackWidth);
}

} // namespace RowLook
