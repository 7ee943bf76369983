#include "Matrix/Cell.h"

#include "Matrix/AtRest.h"

#include <cstring>

namespace Matrix {

namespace {

QString Filled(const char* pszCall, int iSource)
{
    constexpr const char* Names[] = {"Cloud", "Device", "IOTLan", "LanModule"};
    QString strCall = QString::fromLatin1(pszCall);
    strCall.replace(QLatin1String("%N"), QLatin1String(Names[iSource - 1]));
    return strCall.replace(QLatin1String("%I"), QString::number(iSource) + QLatin1Char('1'));
}

class Runner
{
public:
    Runner(const Way& way, const Act& act, int iSource)
        : m_way(way)
        , m_act(act)
        , m_iSource(iSource)
        , m_oracle(way, act, iSource)
        , m_strOwn(m_oracle.IdOf('1'))
    {}
    QStringList Run();

private:
    void SetUp();
    void SetUpOwn();
    void RequestAll(const char* pszTargets);
    void Pull();
    void PullRaise();
    void Step(char step);
    void CheckFates();
    bool Has(char step) const { return std::strchr(m_act.pszSteps, step); }

    const Way& m_way;
    const Act& m_act;
    const int m_iSource;
    const Oracle m_oracle;
    const QString m_strOwn;
    Outside m_outside;
    bool m_bReached = false;
};

QStringList Runner::Run()
{
    SetUp();
    if (!m_outside.Host().AllWrong().isEmpty())
        return QStringList{QStringLiteral("the set-up")} + m_outside.Host().AllWrong();
    const QString strCall = Filled(m_way.pszCall, m_iSource);
    m_outside.World().Calls().Clear();
    m_outside.OnWayOut([this, strCall](const QString& strLine) {
        if (m_bReached || !strLine.startsWith(strCall))
            return;
        m_bReached = true;
        for (const char* pStep = m_act.pszSteps; *pStep; ++pStep)
            Step(*pStep);
    });
    Pull();
    m_outside.Rest();
    if (!m_bReached)
        return {QStringLiteral("the way out was not reached")};
    if (m_outside.IsStopped()) {
        AtRest::CheckStopped(m_outside, {m_strOwn, m_oracle.IdOf('9'), m_oracle.IdOf('o')});
        return m_outside.Host().AllWrong();
    }
    if (Has('N') || m_way.trigger == Trigger::RequestOnFullDisk) {
        ScriptedDisk::SetFreeBytes(1024 * ScriptedDisk::MiB);
        m_outside.Request(QString::number(m_iSource % 4 + 1) + QLatin1Char('9'));
        m_outside.Rest();
    }
    AtRest::Check(m_outside);
    CheckFates();
    AtRest::RunToEnd(m_outside);
    AtRest::CheckNothingIsLeft(m_outside, {m_strOwn, m_oracle.IdOf('2'), m_oracle.IdOf('6'), m_oracle.IdOf('9')});
    return m_outside.Host().AllWrong();
}

void Runner::RequestAll(const char* pszTargets)
{
    for (const char* pTarget = pszTargets; *pTarget; ++pTarget) {
        m_outside.Request(m_oracle.IdOf(*pTarget));
        m_outside.Rest();
    }
}

void Runner::SetUp()
{
    m_outside.SetKind(m_strOwn, m_way.uKind);
    if (m_way.trigger == Trigger::RequestOnFullDisk)
        return;
    RequestAll("o");
    if (m_act.target == '3' || m_act.target == '4') {
        const char target[] = {m_act.target, 0};
        RequestAll(target);
        if (m_act.target == '3')
            m_outside.PressState(m_oracle.IdOf('3'));
        else
            m_outside.Raise(m_oracle.IdOf('4'), 0);
        m_outside.Rest();
    }
    SetUpOwn();
    if (m_way.own != Own::PutBack && m_way.own != Own::HeldAgain) // a question is open then
        AtRest::Check(m_outside);
    if (m_act.target == '5')
        m_outside.Request(m_oracle.IdOf('5'));
}

void Runner::SetUpOwn()
{
    constexpr const char* Beside[] = {"67", "6", "", ""};
    constexpr const char* Full[] = {"678", "68", "8", "8"};
    const bool bRoomForOneMore = m_act.target == '5'; // which comes first when it is released
    const char* pszBeside = bRoomForOneMore ? "6" : Beside[m_iSource - 1];
    const char* pszFull = Full[m_iSource - 1];
    switch (m_way.own) {
    case Own::Waiting:
        RequestAll(pszFull);
        return RequestAll("12");
    case Own::NewFull:
        RequestAll(pszFull);
        return RequestAll("2");
    case Own::Running:
    case Own::PutBack:
        RequestAll("1");
        RequestAll(pszBeside);
        if (m_way.own == Own::Running)
            return RequestAll("2");
        m_outside.Raise(m_strOwn, 3);
        return m_outside.Turn();
    default:
        break;
    }
    if (m_way.own == Own::Paused || m_way.own == Own::Failed || m_way.own == Own::HeldAgain) {
        RequestAll("1");
        if (m_way.own == Own::Failed)
            m_outside.Raise(m_strOwn, 0);
        else
            m_outside.PressState(m_strOwn);
        m_outside.Rest();
    }
    RequestAll(pszBeside);
    if (m_way.own == Own::HeldAgain)
        m_outside.PressState(m_strOwn);
    else if (m_way.own == Own::Held || m_way.own == Own::HeldLocked)
        m_outside.Request(m_strOwn);
}

void Runner::Pull()
{
    switch (m_way.trigger) {
    case Trigger::RefusedRequest:
        m_outside.Host().RefuseNextStart();
        return m_outside.Request(m_strOwn);
    case Trigger::RequestOnFullDisk:
        m_outside.FillDisk(false);
        return m_outside.Request(m_strOwn);
    case Trigger::Request:
        return m_outside.Request(m_strOwn);
    case Trigger::FinishOther:
        return m_outside.Raise(m_oracle.IdOf('8'), 2);
    case Trigger::Press:
        return m_outside.PressState(m_strOwn);
    case Trigger::Delete:
        return m_outside.Delete(m_strOwn);
    case Trigger::Raise:
        return m_outside.Raise(m_strOwn, m_way.iCode);
    case Trigger::FillDisk:
        return m_outside.FillDisk(true);
    case Trigger::PressAll:
        return m_outside.PressAll();
    case Trigger::Ask:
        m_outside.Ask(m_strOwn);
        return;
    case Trigger::AnswerWrongKey:
        return m_outside.AnswerWithWrongKey(m_strOwn);
    case Trigger::Stop:
        return m_outside.Stop();
    case Trigger::AnswerPicture:
    case Trigger::AnswerCloud:
    case Trigger::AnswerDevice:
        return; // rest answers
    }
}

void Runner::Step(char step)
{
    const QString strTarget = m_oracle.IdOf(m_act.target == '-' ? '1' : m_act.target);
    switch (step) {
    case 'S':
        if (m_oracle.Twins().contains(strTarget))
            m_outside.Host().AllowTwin(strTarget);
        return m_outside.Request(strTarget);
    case 'D':
        return m_outside.Delete(strTarget);
    case 'P':
    case 'R':
        return m_outside.PressState(strTarget);
    case 'F':
    case 'N':
        return m_outside.FillDisk(step == 'F');
    case 'A':
    case 'B':
        return m_outside.PressAll();
    case 'C':
        return m_outside.ChangeFolder();
    case 'Q':
        m_outside.Ask(strTarget);
        return;
    case 'X':
        return m_outside.Stop();
    case 'T':
        return QCoreApplication::processEvents();
    case 'K':
        m_outside.AnswerPictures();
        m_outside.AnswerCloudPasswords();
        return m_outside.AnswerDevicePasswords();
    case 'd':
        return m_outside.RaiseData(strTarget);
    default:
        return m_outside.Raise(strTarget, step - '0');
    }
}

bool Fits(Fate fate, RowIs row)
{
    switch (fate) {
    case Fate::Active:
        return IsActive(row);
    case Fate::Gone:
        return row == RowIs::Absent;
    case Fate::Paused:
        return row == RowIs::Paused;
    case Fate::Failed:
        return row == RowIs::Failed;
    default:
        return true;
    }
}

void Runner::CheckFates()
{
    constexpr const char* Names[] = {"anything", "active", "absent", "paused", "failed"};
    const QMap<QString, Fate> fates = m_oracle.Fates();
    for (auto fate = fates.begin(); fate != fates.end(); ++fate) {
        const char target = fate.key() == m_oracle.IdOf('o') ? 'o' : fate.key()[1].toLatin1();
        const bool bInCell = target == '1' || target == m_act.target || m_outside.Rows().contains(fate.key());
        const RowIs row = m_outside.RowOf(fate.key());
        if (bInCell && !Fits(*fate, row))
            m_outside.Host().Wrong(
                QStringLiteral("the row of %1 is %2, not %3")
                    .arg(fate.key(), QLatin1String(NameOf(row)), QLatin1String(Names[static_cast<int>(*fate)])));
    }
}

} // namespace

QStringList RunCell(const Way& way, const Act& act, int iSource)
{
    return Runner(way, act, iSource).Run();
}

} // namespace Matrix
