#include "Host/Client/Window/Languages.h"

#include <algorithm>
#include <iterator>

namespace KXClient {

bool IsLanguage(const QString& strCode)
{
    return std::any_of(std::begin(Languages), std::end(Languages),
                       [&](const Language& language) { return strCode == QLatin1String(language.pszCode); });
}

} // namespace KXClient
