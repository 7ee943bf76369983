#pragma once

#include "KXLogic/KXDownloadRequests.h"

#include <QtCore/QString>
#include <QtCore/QUrl>

namespace KXHost {

// Fills the fields of a source's URL template from a request. An invalid URL with `strReason` set when the outcome is
// no http or https URL, or when it carries credentials: those belong to the request and never to a text that is shown.
QUrl ExpandUrl(const QString& strTemplate, const KXLogic::DownloadRequest& request, QString& strReason);

} // namespace KXHost
