#include "Host/KXGui/SvgRecolour.h"

#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

namespace KXHost {

namespace {

const QLatin1String IdName("p-id");
const QLatin1String StyleName("style");

using Declarations = QMap<QString, QString>;

Declarations ParseStyle(const QString& strStyle)
{
    Declarations declarations;
    for (const QString& strOne : strStyle.split(QLatin1Char(';'))) {
        const int iColon = strOne.indexOf(QLatin1Char(':'));
        if (iColon > 0)
            declarations.insert(strOne.left(iColon).trimmed(), strOne.mid(iColon + 1).trimmed());
    }
    return declarations;
}

QString WriteStyle(const Declarations& declarations)
{
    QString strStyle;
    for (auto it = declarations.cbegin(); it != declarations.cend(); ++it)
        strStyle += it.key() + QLatin1Char(':') + it.value() + QLatin1Char(';');
    return strStyle;
}

// An attribute that a declaration replaces goes: renderers disagree on which of the two counts.
QXmlStreamAttributes Restyled(const QXmlStreamAttributes& attributes, const Declarations& styles)
{
    QXmlStreamAttributes result;
    Declarations own;
    for (const QXmlStreamAttribute& attribute : attributes) {
        const QString strName = attribute.qualifiedName().toString();
        if (strName == StyleName)
            own = ParseStyle(attribute.value().toString());
        else if (!styles.contains(strName))
            result.append(attribute);
    }
    for (auto it = styles.cbegin(); it != styles.cend(); ++it)
        own.insert(it.key(), it.value());
    result.append(StyleName, WriteStyle(own));
    return result;
}

void WriteElement(QXmlStreamWriter& writer, const QXmlStreamReader& reader, const SvgStyles& styles)
{
    const QXmlStreamAttributes attributes = reader.attributes();
    const auto it = styles.constFind(attributes.value(IdName).toString());
    writer.writeStartElement(reader.qualifiedName().toString());
    writer.writeAttributes(it == styles.constEnd() ? attributes : Restyled(attributes, it.value()));
}

} // namespace

bool ReadSvgTemplate(const QString& strTemplate, SvgStyles& styles)
{
    if (strTemplate.isEmpty())
        return true;
    QXmlStreamReader reader(strTemplate);
    SvgStyles found;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement || reader.name() != QLatin1String("p"))
            continue;
        const QString strId = reader.attributes().value(IdName).toString();
        if (!strId.isEmpty())
            found.insert(strId, ParseStyle(reader.attributes().value(StyleName).toString()));
    }
    if (reader.hasError())
        return false;
    styles = found;
    return true;
}

QByteArray RecolourSvg(const QByteArray& svg, const SvgStyles& styles)
{
    QXmlStreamReader reader(svg);
    reader.setNamespaceProcessing(false); // prefixes are copied as they stand
    QByteArray result;
    QXmlStreamWriter writer(&result);
    bool bRoot = true;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement) {
            if (bRoot && reader.name() != QLatin1String("svg"))
                return QByteArray();
            bRoot = false;
            WriteElement(writer, reader, styles);
        } else if (!reader.hasError()) {
            writer.writeCurrentToken(reader);
        }
    }
    return reader.hasError() ? QByteArray() : result;
}

} // namespace KXHost
