#pragma once

#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtGui/QImage>
#include <QtWidgets/QStyleOption>

class QPainter;
class QWidget;

namespace KXHost {

// A window's background and border as its style draws them, without drawing them line by line each time. Where a style
// sheet gives plain colours, one line between the corners is like the other: the style draws the top, the bottom and
// one line of what lies between, and these are kept until something changes that a style sheet may ask for. Whatever
// else a style sheet says is drawn by the style.
//
// Thread: the GUI thread.
class FramePicture
{
public:
    // Paints the whole widget, which is about to be painted by that painter.
    void Paint(QPainter& painter, const QWidget& widget);

private:
    // Pixels of one colour in a line.
    struct Run
    {
        int iFirst;
        int iCount;
        QRgb uColor;
    };

    // All that a style sheet may make a difference of.
    struct Key
    {
        QRect rect;
        int iRatio = 0; // device pixels in one of the widget's
        QStyle::State state;
        QStringList texts; // the widget's name and the style sheets that apply to it

        bool operator==(const Key& other) const;
    };

    static Key KeyOf(const QStyleOption& option, int iRatio, const QWidget& widget);
    void Make(const QStyleOption& option, const QWidget& widget);
    QImage PaintedBands(const QStyleOption& option, const QWidget& widget) const;
    void FindRuns(const QRgb* pLine, int iWidth);
    void Draw(QPainter& painter) const;

    Key m_key;
    QImage m_bands;      // the top, the bottom
    QVector<Run> m_runs; // of a line between them; empty: the style draws
};

} // namespace KXHost
