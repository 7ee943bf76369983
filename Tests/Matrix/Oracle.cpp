#include "Matrix/Cell.h"

#include <cstring>

namespace Matrix {

namespace {

bool IsStopOfAll(Trigger trigger)
{
    return trigger == Trigger::FillDisk || trigger == Trigger::PressAll;
}

Fate FateOf(RowIs row)
{
    switch (row) {
    case RowIs::Absent:
        return Fate::Gone;
    case RowIs::Paused:
        return Fate::Paused;
    case RowIs::Failed:
        return Fate::Failed;
    default:
        return Fate::Active;
    }
}

} // namespace

Oracle::Oracle(const Way& way, const Act& act, int iSource)
    : m_way(way)
    , m_act(act)
    , m_iSource(iSource)
    , m_bApplies(HasTarget())
{
    m_records['1'] = {FateOf(way.after), way.row, way.engine};
    AddOthers();
    if (way.trigger == Trigger::Stop) {
        for (Record& record : m_records)
            record.bFixed = true;
    }
    if (IsBeforePress()) {
        m_records['1'].bFixed = true;
        if (iSource == 1) // what is requested inside is held when the press goes on
            m_twins.insert(IdOf('1'));
    }
    for (const char* pStep = act.pszSteps; *pStep && m_bApplies; ++pStep)
        m_bApplies = Take(*pStep);
}

// The other records are as the set-up makes them, or as the trigger has left them.
void Oracle::AddOthers()
{
    const bool bAll = IsStopOfAll(m_way.trigger);
    const RowIs row = m_way.trigger == Trigger::PressAll ? RowIs::Paused : RowIs::Waiting;
    const Record runs{bAll ? Fate::Paused : Fate::Active, row, bAll ? Engine::Lost : Engine::Has, 0, false};
    for (const char target : {'2', '6', 'o'})
        m_records[target] = runs;
    if (bAll) // whether one of them is stopped already is a matter of order
        m_records['6'].bFixed = m_records['o'].bFixed = true;
    m_records['3'] = {m_way.trigger == Trigger::Stop ? Fate::Any : Fate::Paused, RowIs::Paused};
    m_records['4'] = {m_way.trigger == Trigger::FillDisk ? Fate::Paused : Fate::Failed, RowIs::Failed};
    m_records['5'] = {Fate::Active, RowIs::Absent, Engine::Holds};
    m_records['9'] = {Fate::Gone, RowIs::Absent};
}

// The press of the own row goes on when the way out returns, and has the last word.
bool Oracle::IsBeforePress() const
{
    return m_way.trigger == Trigger::Press && m_way.row == RowIs::Failed;
}

QString Oracle::IdOf(char target) const
{
    if (target == 'o')
        return QString::number(m_iSource % 4 + 1) + QLatin1Char('6');
    return QString::number(m_iSource) + QLatin1Char(target);
}

bool Oracle::HasTarget() const
{
    const bool bFullDisk = m_way.trigger == Trigger::RequestOnFullDisk;
    const bool bPausesAll = std::strchr(m_act.pszSteps, 'A');
    if (bPausesAll && (m_way.trigger == Trigger::PressAll || m_way.row == RowIs::Paused))
        return false; // the button would resume all
    if (m_way.trigger == Trigger::Stop && std::strlen(m_act.pszSteps) > 2)
        return false; // nothing is left to be told apart
    switch (m_act.target) {
    case '2':
        return m_way.own == Own::Waiting || m_way.own == Own::NewFull || m_way.own == Own::Running;
    case '3':
        return m_way.trigger != Trigger::PressAll && !bFullDisk;
    case '6':
        return m_iSource <= 2 && !bFullDisk;
    case '5':
        return m_iSource == 1;
    case '4':
    case 'o':
        return !bFullDisk;
    default:
        return true;
    }
}

bool Oracle::Take(char step)
{
    Record& record = m_records[m_act.target == '-' ? '1' : m_act.target];
    switch (step) {
    case 'S':
        return Request(record);
    case 'D':
        if (record.row == RowIs::Absent)
            return false;
        record = {Fate::Gone, RowIs::Absent, Engine::Lost, record.posted, record.bFixed};
        return true;
    case 'P':
        return Press(record, true);
    case 'R':
        return Press(record, false);
    case 'F':
    case 'N':
    case 'A':
        for (Record& each : m_records)
            PauseAll(each, step == 'A');
        return true;
    case 'B':
        for (Record& each : m_records) {
            if (each.row == RowIs::Paused)
                Press(each, false);
        }
        return true;
    case 'X':
        for (Record& each : m_records)
            each.bFixed = true;
        return true;
    case 'T':
        Deliver(record);
        return true;
    case '0':
    case '2':
    case '3':
        record.posted = step;
        if (m_act.target != '1')
            return true;
        // A transfer of its own that has not ended yet.
        return std::strncmp(m_way.pszName, "start of", 8) == 0 || m_way.trigger == Trigger::Ask || m_way.iCode == 7 ||
               m_way.iCode == 1 ||
               (std::strncmp(m_way.pszCall, "Stop", 4) == 0 && m_way.own == Own::Running &&
                m_way.trigger != Trigger::Raise);
    default:
        return true;
    }
}

bool Oracle::Request(Record& record)
{
    const bool bCloud = m_iSource == 1;
    if (m_way.trigger == Trigger::FillDisk || record.engine == Engine::Ends)
        record.bFixed = true;
    if (record.engine == Engine::Has || record.engine == Engine::Ends)
        return true;
    if (record.engine == Engine::Holds)
        m_twins.insert(IdOf(m_act.target));
    record.fate = Fate::Active;
    record.engine = bCloud ? Engine::Holds : Engine::Has;
    if (!bCloud)
        record.row = RowIs::Waiting;
    return true;
}

bool Oracle::Press(Record& record, bool bPauses)
{
    const bool bCanResume = record.row == RowIs::Paused || record.row == RowIs::Failed || record.row == RowIs::Unclear;
    if (bPauses ? !IsActive(record.row) : !bCanResume)
        return false;
    const bool bOwn = &record == &m_records['1'];
    if (bOwn &&
        (m_way.trigger == Trigger::Delete || m_way.trigger == Trigger::FillDisk || record.engine == Engine::Ends))
        record.bFixed = true; // what goes on outside has the last word
    if (bPauses && record.engine == Engine::Lost)
        record.bFixed = bOwn; // it may as well show its end
    record.fate = bPauses ? Fate::Paused : Fate::Active;
    record.row = bPauses ? RowIs::Paused : RowIs::Waiting;
    record.engine = bPauses ? Engine::Lost : m_iSource == 1 ? Engine::Holds : Engine::Has;
    return true;
}

void Oracle::PauseAll(Record& record, bool bByUser)
{
    if (record.row == RowIs::Absent)
        return;
    const bool bOwn = &record == &m_records['1'];
    if (bOwn && m_way.trigger == Trigger::Delete) { // it goes in any case
        record.row = RowIs::Paused;
        record.engine = Engine::Lost;
        return;
    }
    if (record.engine == Engine::Holds && !bByUser)
        return; // it stays held
    if (bOwn && (record.engine == Engine::Ends || (record.engine == Engine::Lost && record.row != RowIs::Paused)))
        record.bFixed = m_way.row != RowIs::Unclear;
    record.fate = Fate::Paused;
    record.row = RowIs::Paused;
    record.engine = Engine::Lost;
}

// A last state of a task that was dropped meanwhile means nothing.
void Oracle::Deliver(Record& record)
{
    if (record.posted && record.engine == Engine::Has) {
        record.row = record.posted == '2' ? RowIs::Absent : RowIs::Failed;
        record.fate = FateOf(record.row);
        record.engine = Engine::Lost;
    }
    record.posted = 0;
}

QMap<QString, Fate> Oracle::Fates() const
{
    QMap<QString, Fate> fates;
    for (auto record = m_records.begin(); record != m_records.end(); ++record) {
        if (!record->bFixed && record->fate != Fate::Any)
            fates[IdOf(record.key())] = record->fate;
    }
    return fates;
}

} // namespace Matrix
