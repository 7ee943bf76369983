#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/QString>

namespace KXPublic {

// Rewrites the host's own keys in a style sheet in place: each KX_COLOR(value) becomes its value. Thread: the GUI
// thread.
KX_HOST_EXPORT void translateQssKey(QString& strStyleSheet);

} // namespace KXPublic
