#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>

namespace KXHost {

// The style declarations ("fill" to "#RRGGBB") of each p-id.
using SvgStyles = QMap<QString, QMap<QString, QString>>;

// Reads a colour template. False when it is no XML; an empty text is a template without styles.
bool ReadSvgTemplate(const QString& strTemplate, SvgStyles& styles);

// The document with those styles in place of the elements' own; empty when it is no XML or its root is no <svg>.
QByteArray RecolourSvg(const QByteArray& svg, const SvgStyles& styles);

} // namespace KXHost
