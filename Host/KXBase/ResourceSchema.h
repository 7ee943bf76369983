#pragma once

#include <QtCore/QString>

class QSqlDatabase;

// What the file of the resource database holds, version by version.
namespace ResourceSchema {

// Checks the open file and brings it to the newest version. Returns the reason why it cannot be used; it is then
// unchanged.
QString Prepare(const QSqlDatabase& database);

} // namespace ResourceSchema
