#include "Host/Site/SiteFaults.h"

#include "Host/Site/SiteSources.h"

#include <algorithm>

namespace {

using KXHost::FaultKind;

constexpr qint64 AnySize = qint64(1) << 40;

struct Description
{
    FaultKind kind;
    const char* pName;
    const char* pValue; // what its value means; null: it takes none
    qint64 lDefault;
    qint64 lLeast;
    qint64 lMost;
    const char* pEffect;
};

constexpr Description Descriptions[] = {
    {FaultKind::Cut, "cut", "PERCENT", 50, 0, 99, "closes the connection after that part of the recording"},
    {FaultKind::Short, "short", "PERCENT", 50, 0, 99, "announces and sends only that part of the recording"},
    {FaultKind::Slow, "slow", "BYTES_PER_SECOND", 65536, 1, AnySize, "sends no faster than that"},
    {FaultKind::Stall, "stall", "PERCENT", 50, 0, 99, "sends that part of the recording, then nothing more and no end"},
    {FaultKind::WrongLength, "wrong-length", "BYTES", 4096, -AnySize, AnySize,
     "announces so many bytes more (negative: less) than it sends"},
    {FaultKind::Never, "never", nullptr, 0, 0, 0, "takes the request and never answers"},
    {FaultKind::Refuse, "refuse", nullptr, 0, 0, 0, "answers 401 whatever the credentials"},
    {FaultKind::Forbidden, "forbidden", nullptr, 0, 0, 0, "answers 403"},
    {FaultKind::Missing, "missing", nullptr, 0, 0, 0, "answers 404"},
    {FaultKind::Busy, "busy", nullptr, 0, 0, 0, "answers 503"},
    {FaultKind::StaleNonce, "stale-nonce", "USES", 1, 1, AnySize, "calls a digest nonce stale after so many uses"},
    {FaultKind::CoverMissing, "cover-missing", nullptr, 0, 0, 0, "answers 404 for the cover"},
    {FaultKind::CoverGarbage, "cover-garbage", nullptr, 0, 0, 0, "sends a cover that is not encrypted data"},
    {FaultKind::CoverNoPicture, "cover-no-picture", nullptr, 0, 0, 0, "sends an encrypted text as the cover"},
    {FaultKind::CoverWrongKey, "cover-wrong-key", nullptr, 0, 0, 0, "sends the cover encrypted with another key"},
    {FaultKind::CoverNever, "cover-never", nullptr, 0, 0, 0, "takes the request for the cover and never answers"},
};

const Description* Described(const QString& strName)
{
    const auto it = std::find_if(std::begin(Descriptions), std::end(Descriptions), [&](const Description& description) {
        return strName == QLatin1String(description.pName);
    });
    return it == std::end(Descriptions) ? nullptr : it;
}

QString SourceKey(int iType)
{
    return QString::fromLatin1(KXHost::SourceOf(iType).pKey);
}

bool IsPlace(const QString& strPlace, const KXHost::SiteRecordings& recordings)
{
    const auto isSource = [&](const KXHost::SiteSource& source) { return strPlace == QLatin1String(source.pKey); };
    const auto isRecord = [&](const KXHost::SiteRecording& recording) { return strPlace == recording.strId; };
    return std::any_of(KXHost::SiteSources.begin(), KXHost::SiteSources.end(), isSource) ||
           std::any_of(recordings.begin(), recordings.end(), isRecord);
}

bool ParseValue(const QString& strValue, const Description& description, qint64& lValue)
{
    bool bNumber = false;
    lValue = strValue.toLongLong(&bNumber);
    const bool bInRange = lValue >= description.lLeast && lValue <= description.lMost;
    return description.pValue != nullptr && bNumber && bInRange &&
           (lValue != 0 || description.kind != FaultKind::WrongLength);
}

} // namespace

namespace KXHost {

bool SiteFaults::ParseOne(const QString& strFault, const SiteRecordings& recordings, Fault& fault, QString* pError)
{
    const QString strWhat = strFault.section(QLatin1Char('@'), 0, 0);
    const QString strName = strWhat.section(QLatin1Char('='), 0, 0);
    const Description* pDescription = Described(strName);
    if (pDescription == nullptr) {
        *pError = QStringLiteral("There is no fault \"%1\"").arg(strName);
        return false;
    }
    fault.kind = pDescription->kind;
    fault.lValue = pDescription->lDefault;
    const QString strValue = strWhat.section(QLatin1Char('='), 1);
    if (strWhat.contains(QLatin1Char('=')) && !ParseValue(strValue, *pDescription, fault.lValue)) {
        *pError = QStringLiteral("\"%1\" is no value for the fault \"%2\"").arg(strValue, strName);
        return false;
    }
    fault.strPlace = strFault.section(QLatin1Char('@'), 1);
    if (strFault.contains(QLatin1Char('@')) && !IsPlace(fault.strPlace, recordings)) {
        *pError = QStringLiteral("The fault \"%1\" is for \"%2\", no recording or source").arg(strName, fault.strPlace);
        return false;
    }
    return true;
}

bool SiteFaults::Parse(const QStringList& faults, const SiteRecordings& recordings, QString* pError)
{
    m_faults.clear();
    for (const QString& strFault : faults) {
        Fault fault;
        if (!ParseOne(strFault, recordings, fault, pError))
            return false;
        m_faults.push_back(fault);
    }
    return true;
}

std::optional<qint64> SiteFaults::Find(FaultKind kind, const SiteRecording& recording) const
{
    const auto hits = [&](const Fault& fault) {
        return fault.kind == kind && (fault.strPlace.isEmpty() || fault.strPlace == recording.strId ||
                                      fault.strPlace == SourceKey(recording.iType));
    };
    const auto it = std::find_if(m_faults.rbegin(), m_faults.rend(), hits);
    return it == m_faults.rend() ? std::nullopt : std::optional<qint64>(it->lValue);
}

QStringList SiteFaults::Help()
{
    QStringList lines;
    for (const Description& description : Descriptions) {
        QString strName = QLatin1String(description.pName);
        if (description.pValue != nullptr)
            strName += QStringLiteral("[=%1]").arg(QLatin1String(description.pValue));
        QString strLine = strName.leftJustified(26) + QLatin1String(description.pEffect);
        if (description.pValue != nullptr)
            strLine += QStringLiteral(" (default %1)").arg(description.lDefault);
        lines += strLine;
    }
    return lines;
}

} // namespace KXHost
