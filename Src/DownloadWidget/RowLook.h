#pragma once

#include <QtCore/QRectF>
#include <QtCore/QString>

#include <optional>

// What a row shows, as plain functions of what its record says: numbers, texts by key, colours by key.
namespace RowLook {

// Display states of a row; 4 is not used.
constexpr int Waiting = 0;
constexpr int Downloading = 1;
constexpr int Finished = 2;
constexpr int Failed = 3;
constexpr int Paused = 5;

// Keys of the button pictures.
constexpr int IconResume = 0; // btnStop.svg
constexpr int IconPause = 1;  // btnStart.svg
constexpr int IconDelete = 2;
constexpr int IconRetry = 3;

constexpr qreal TrackWidth = 300;
constexpr QRectF TrackRect(170, 38, TrackWidth, 6);

// What a row shows of a reported state code; nothing new for an unknown one. `bReget`: the task is tried again.
std::optional<int> StateOfCode(int iCode, bool bReget);
// Picture of the state button.
int StateIcon(int iState);
// Colour key of the state text; null when no text is drawn.
const char* StateColorKey(int iState);
// Source key of the state text; null where the text is a number or empty.
const char* StateTextKey(int iState);
// Share of the recording that has arrived, in whole percent; above 100 when more came than was announced.
int Percent(qint64 lReceived, qint64 lTotal);
// The same as it is shown: an overrun shows 99, because the end is not known then.
int ShownPercent(qint64 lReceived, qint64 lTotal);
// "42%"
QString PercentText(qint64 lReceived, qint64 lTotal);
// Width of the bar in pixels; nothing is filled unless the row is downloading.
qreal FillWidth(int iState, qint64 lReceived, qint64 lTotal);

} // namespace RowLook
