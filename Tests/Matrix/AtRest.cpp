#include "Matrix/AtRest.h"

#include <QtCore/QSet>

namespace {

void Wrong(Outside& outside, const QString& strWhat)
{
    outside.Host().Wrong(strWhat);
}

QString Described(Outside& outside)
{
    QStringList rows;
    for (const QString& strId : outside.Rows())
        rows.append(strId + QLatin1Char(' ') + QLatin1String(NameOf(outside.RowOf(strId))));
    return QStringLiteral("rows: %1; transfers: %2")
        .arg(rows.join(QStringLiteral(", ")), outside.Host().Running().join(QStringLiteral(", ")));
}

void CheckTransfers(Outside& outside)
{
    for (const QString& strId : outside.Host().Running()) {
        const RowIs row = outside.RowOf(strId);
        if (!IsActive(row))
            Wrong(outside, QStringLiteral("%1 is transferred, its row is %2").arg(strId, QLatin1String(NameOf(row))));
    }
}

void CheckRows(Outside& outside)
{
    const QStringList ids = outside.Rows();
    for (const QString& strId : ids) {
        if (ids.count(strId) > 1)
            Wrong(outside, QStringLiteral("%1 has two rows").arg(strId));
        const bool bActive = IsActive(outside.RowOf(strId));
        const Source source = SourceOf(strId);
        const bool bRefused = outside.Host().WasRefused(strId);
        if (bActive && !bRefused && outside.Host().CountOf(strId) == 0 &&
            outside.Host().CountOf(source) < LimitOf(source))
            Wrong(outside, QStringLiteral("%1 waits while a place is free").arg(strId));
        const bool bAsked = source == Source::IOTLan || source == Source::LanModule;
        if (bAsked && outside.Ask(strId) != (bActive && !bRefused))
            Wrong(outside, QStringLiteral("the question for %1 is answered wrongly").arg(strId));
    }
    if (outside.ToldCount() != ids.size())
        Wrong(outside, QStringLiteral("%1 rows were told, there are %2")
                           .arg(QString::number(outside.ToldCount()), QString::number(ids.size())));
}

// One press, or one finished transfer. False when there is nothing to do.
bool GoOn(Outside& outside)
{
    const QStringList running = outside.Host().Running();
    if (!running.isEmpty()) {
        outside.Raise(running.first(), 2);
        outside.Rest();
        return true;
    }
    for (const QString& strId : outside.Rows()) {
        if (outside.Host().WasRefused(strId) && outside.RowOf(strId) == RowIs::Waiting)
            outside.Delete(strId);
        else if (!IsActive(outside.RowOf(strId)))
            outside.PressState(strId);
        else
            continue;
        outside.Rest();
        return true;
    }
    return false;
}

} // namespace

void AtRest::Check(Outside& outside)
{
    const int iWrong = outside.Host().AllWrong().size();
    CheckTransfers(outside);
    CheckRows(outside);
    if (outside.Host().AllWrong().size() > iWrong)
        Wrong(outside, Described(outside));
}

void AtRest::RunToEnd(Outside& outside)
{
    for (int i = 0; i < 60 && GoOn(outside) && outside.Host().AllWrong().isEmpty(); ++i)
        Check(outside);
    if (!outside.Rows().isEmpty() || !outside.Host().Running().isEmpty())
        Wrong(outside, QStringLiteral("not all came to an end; ") + Described(outside));
}

void AtRest::CheckNothingIsLeft(Outside& outside, const QStringList& ids)
{
    if (!outside.Host().AllWrong().isEmpty())
        return; // a consequence would only hide it
    for (const QString& strId : ids)
        outside.Request(strId);
    outside.Rest();
    for (const QString& strId : ids) {
        if (outside.RowOf(strId) != RowIs::Waiting)
            Wrong(outside, QStringLiteral("in the end %1 is not taken again").arg(strId));
    }
    Check(outside);
    RunToEnd(outside);
}

void AtRest::CheckStopped(Outside& outside, const QStringList& ids)
{
    for (const QString& strId : ids)
        outside.Request(strId);
    outside.Rest();
    if (!outside.Host().Running().isEmpty())
        Wrong(outside, QStringLiteral("after the stop of the plug-in; ") + Described(outside));
}
