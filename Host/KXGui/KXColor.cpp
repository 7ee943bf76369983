#include "KXGui/KXColor.h"

#include "Host/KXGui/Theme.h"

#include <algorithm>
#include <iterator>

namespace {

struct ColorRow
{
    const char* pszKey;
    QRgb uLight;
    QRgb uDark;
};

constexpr ColorRow Colors[] = {
    {"pc001", 0xFF1F6FEB, 0xFF5B9BFF}, // accent
    {"pc002", 0xFF1A5FCC, 0xFF82B4FF}, // accent, pressed
    {"pc003", 0xFFFFFFFF, 0xFF0F1216}, // text on the accent
    {"pc004", 0xFF1D2430, 0xFFE8ECF2}, // main text
    {"pc005", 0xFF66707F, 0xFF9AA5B4}, // secondary text
    {"pc006", 0xFFA3ACB8, 0xFF667080}, // text of what is disabled
    {"pc007", 0xFFE3E7ED, 0xFF343B46}, // dividing line
    {"pc008", 0xFFC9D0DA, 0xFF0A0D11}, // border and shadow
    {"pc009", 0xFFEDF1F6, 0xFF333B47}, // background of icons
    {"pc010", 0xFFE1E6ED, 0xFF3A424E}, // progress track
    {"pc011", 0xFFFFFFFF, 0xFF20252C}, // background of panels
    {"pc012", 0xFFF4F6F9, 0xFF171B20}, // background of windows
    {"pc013", 0xFFF0F5FD, 0xFF2A323D}, // row under the pointer
    {"pc018", 0xFF18864B, 0xFF4CC38A}, // success
    {"pc019", 0xFFB26A00, 0xFFF0B429}, // warning
    {"pc020", 0xFFD93036, 0xFFFF6B6B}, // error
};

bool s_bDark = false;

QColor ColorOf(const ColorRow& row)
{
    return QColor::fromRgb(s_bDark ? row.uDark : row.uLight);
}

} // namespace

QColor KXColor::color(const QString& strKey, double dAlpha)
{
    const auto* const pEnd = std::end(Colors);
    const auto* pRow = std::find_if(std::begin(Colors), pEnd,
                                    [&strKey](const ColorRow& row) { return strKey == QLatin1String(row.pszKey); });
    if (pRow == pEnd)
        return QColor();
    QColor color = ColorOf(*pRow);
    color.setAlphaF(qBound(0.0, dAlpha, 1.0));
    return color;
}

QMap<QString, QString> KXColor::colorMap()
{
    QMap<QString, QString> map;
    for (const ColorRow& row : Colors)
        map.insert(QLatin1String(row.pszKey), ColorOf(row).name());
    return map;
}

void KXHost::SetDarkTheme(bool bDark)
{
    s_bDark = bDark;
}

bool KXHost::IsDarkTheme()
{
    return s_bDark;
}
