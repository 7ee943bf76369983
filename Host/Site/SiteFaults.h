#pragma once

#include "Host/Site/SiteRecording.h"

#include <QtCore/QStringList>

#include <optional>
#include <vector>

namespace KXHost {

enum class FaultKind {
    Cut,
    Short,
    Slow,
    Stall,
    WrongLength,
    Never,
    Refuse,
    Forbidden,
    Missing,
    Busy,
    StaleNonce,
    CoverMissing,
    CoverGarbage,
    CoverNoPicture,
    CoverWrongKey,
    CoverNever,
};

// The misbehaviour that a site was told. Thread: any, once it is parsed.
class SiteFaults
{
public:
    // Each text is NAME[=VALUE][@RECORD or @SOURCE]; without a place the fault is everywhere.
    bool Parse(const QStringList& faults, const SiteRecordings& recordings, QString* pError);

    // The value of a fault that this recording meets; the last one told wins.
    std::optional<qint64> Find(FaultKind kind, const SiteRecording& recording) const;
    bool Has(FaultKind kind, const SiteRecording& recording) const { return Find(kind, recording).has_value(); }

    static QStringList Help();

private:
    struct Fault
    {
        FaultKind kind = FaultKind::Cut;
        qint64 lValue = 0;
        QString strPlace; // record id or key of a source; empty: everywhere
    };

    static bool ParseOne(const QString& strFault, const SiteRecordings& recordings, Fault& fault, QString* pError);

    std::vector<Fault> m_faults;
};

} // namespace KXHost
