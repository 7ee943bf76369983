#pragma once

#include "Host/Client/Report.h"

#include <QtCore/QVector>

namespace KXClient {

// Whether each finished recording was entered in the resource database and reported as downloaded, in what was added
// since this object was made.
class RegistrationCheck
{
public:
    RegistrationCheck();

    // Gives a whole recording that misses either a problem that says so.
    void Apply(QVector<Outcome>& outcomes) const;

private:
    int m_iResources; // that were there before
    int m_iReports;
};

} // namespace KXClient
