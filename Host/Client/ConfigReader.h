#pragma once

#include "Host/KXLogic/HostSettings.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace KXClient {

// Key of each source in the configuration and in reports; index: record type.
constexpr const char* SourceKeys[] = {"cloud", "device", "iotLan", "lanModule"};

// Puts what the JSON object `text` names into `settings`; the rest stays. False, and the reason with the path of the
// key, when a key is unknown or a value is no good; `settings` is then not to be used.
bool ReadConfig(const QByteArray& text, KXHost::Settings& settings, QString& strError);

} // namespace KXClient
