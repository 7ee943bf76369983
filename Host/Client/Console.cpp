#include "Host/Client/Console.h"

#include "Model/NameText.h"

#include <QtCore/QVector>

#include <cstdio>

namespace KXClient {

namespace {

void Write(std::FILE* pStream, const QString& strText)
{
    const QByteArray bytes = strText.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), pStream);
    std::fflush(pStream);
}

bool IsWide(uint uCode)
{
    static constexpr struct
    {
        uint uFirst;
        uint uLast;
    } ranges[] = {{0x1100, 0x115F}, {0x2E80, 0xA4CF}, {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},  {0xFE30, 0xFE6F},
                  {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1FAFF}, {0x20000, 0x3FFFD}};
    for (const auto& range : ranges) {
        if (uCode >= range.uFirst && uCode <= range.uLast)
            return true;
    }
    return false;
}

int WidthOf(uint uCode)
{
    const QChar::Category category = QChar::category(uCode);
    if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing || category == QChar::Other_Format)
        return 0;
    return IsWide(uCode) ? 2 : 1;
}

QString Spaces(int iCount)
{
    return QString(qMax(0, iCount), QLatin1Char(' '));
}

} // namespace

void PrintLine(const QString& strLine)
{
    Write(stdout, strLine + QLatin1Char('\n'));
}

void PrintError(const QString& strReason)
{
    Write(stderr, QLatin1String("kxclient: ") + Printable(strReason) + QLatin1Char('\n'));
}

void PrintRaw(const QString& strText)
{
    Write(stdout, strText);
}

QString Printable(const QString& strText)
{
    QString strShown = NameText::Shown(strText);
    for (QChar& character : strShown) {
        if (character.category() == QChar::Other_Control)
            character = QLatin1Char('?');
    }
    return strShown;
}

int DisplayWidth(const QString& strText)
{
    int iWidth = 0;
    for (uint uCode : strText.toUcs4())
        iWidth += WidthOf(uCode);
    return iWidth;
}

QString PadRight(const QString& strText, int iWidth)
{
    return strText + Spaces(iWidth - DisplayWidth(strText));
}

QString PadLeft(const QString& strText, int iWidth)
{
    return Spaces(iWidth - DisplayWidth(strText)) + strText;
}

QString Shortened(const QString& strText, int iWidth)
{
    if (DisplayWidth(strText) <= iWidth)
        return strText;
    QString strHead;
    int iUsed = 2;
    for (uint uCode : strText.toUcs4()) {
        iUsed += WidthOf(uCode);
        if (iUsed > iWidth)
            break;
        strHead += QString::fromUcs4(&uCode, 1);
    }
    return strHead + QLatin1String("..");
}

QString ByteText(qint64 lBytes)
{
    if (lBytes < 0)
        return QStringLiteral("?");
    static const char* const units[] = {"B", "KiB", "MiB", "GiB", "TiB"};
    int iUnit = 0;
    double dValue = static_cast<double>(lBytes);
    for (; dValue >= 1024 && iUnit < 4; ++iUnit)
        dValue /= 1024;
    return QString::number(dValue, 'f', iUnit == 0 ? 0 : 1) + QLatin1Char(' ') + QLatin1String(units[iUnit]);
}

} // namespace KXClient
