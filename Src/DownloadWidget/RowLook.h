#pragma once

#include <QtCore/QRectF>
#include <QtCore/QString>

#include <optional>

// Display states of a row, by the client's numbers; there is no 4.
enum class RowState : int { Waiting = 0, Downloading = 1, Finished = 2, Failed = 3, Paused = 5 };

// What a row shows, as plain functions of what its record says: numbers, texts by key, colours by key.
namespace RowLook {

// Keys of the button pictures.
constexpr int IconResume = 0; // btnStop.svg
constexpr int IconPause = 1;  // btnStart.svg
constexpr int IconDelete = 2;
constexpr int IconRetry = 3;

constexpr qreal TrackWidth = 300;
constexpr QRectF TrackRect(170, 38, TrackWidth, 6);

// What a row shows of a reported state code; nothing new for an unknown one. `bReget`: the task is tried again.
std::optional<RowState> StateOfCode(int iCode, bool bReget);
// Picture of the state button.
int StateIcon(RowState state);
// Colour key of the state text; null when no text is drawn.
const char* StateColorKey(RowState state);
// Source key of the state text; null where the text is a number or empty.
const char* StateTextKey(RowState state);
// Share of the recording that has arrived, in whole percent; above 100 when more came than was announced.
int Percent(qint64 lReceived, qint64 lTotal);
// The same as it is shown: an overrun shows 99, because the end is not known then.
int ShownPercent(qint64 lReceived, qint64 lTotal);
// "42%"
QString PercentText(qint64 lReceived, qint64 lTotal);
// Width of the bar in pixels; nothing is filled unless the row is downloading.
qreal FillWidth(RowState state, qint64 lReceived, qint64 lTotal);

} // namespace RowLook
