#include "Matrix/Walk.h"

#include "Matrix/AtRest.h"

#include <array>
#include <cstdio>

namespace {

constexpr int MostDepth = 3;
constexpr int IdsOfASource = 5;

QStringList AllIds()
{
    QStringList ids;
    for (int iSource = 1; iSource <= 4; ++iSource) {
        for (int i = 1; i <= IdsOfASource; ++i)
            ids.append(QString::number(iSource * 10 + i));
    }
    return ids;
}

} // namespace

Walk::Walk(quint32 uSeed, bool bAloud)
    : m_random(uSeed)
    , m_bAloud(bAloud)
    , m_bStops(uSeed % 8 == 0)
{
    for (const QString& strId : AllIds()) {
        if (OneOf(3))
            m_outside.SetKind(strId, Outside::Protected);
        if (SourceOf(strId) == Source::Cloud)
            m_outside.Host().AllowTwin(strId);
    }
    m_outside.OnWayOut([this](const QString& strLine) { ComeBack(strLine); });
}

QStringList Walk::Run(int iSteps)
{
    for (int i = 0; i < iSteps && m_outside.Host().AllWrong().isEmpty(); ++i)
        Step();
    m_iUntilSurprise = -1;
    CheckEnd();
    return m_outside.Host().AllWrong();
}

void Walk::Step()
{
    if (OneOf(3))
        m_iUntilSurprise = Below(6);
    if (!OneOf(4))
        return Act();
    Note(QStringLiteral("rest"));
    m_outside.Rest();
    m_iUntilSurprise = -1; // the questions of the check shall be answered in peace
    if (m_bRoom)
        AtRest::Check(m_outside);
}

// Panel lines of the log are no way out: the panel writes them before it acts.
void Walk::ComeBack(const QString& strLine)
{
    if (m_iUntilSurprise < 0 || m_iDepth >= MostDepth || strLine.contains(QLatin1String("DownloadWidget::")))
        return;
    if (m_iUntilSurprise-- > 0)
        return;
    ++m_iDepth;
    Note(QStringLiteral("inside ") + strLine.section(QLatin1Char(' '), 0, 1));
    for (int i = Below(3); i >= 0; --i) {
        if (OneOf(4))
            m_iUntilSurprise = Below(3);
        Act();
    }
    --m_iDepth;
}

void Walk::Act()
{
    switch (Below(3)) {
    case 0:
        return ActOfClient();
    case 1:
        return ActOfUser();
    default:
        return ActOfHost();
    }
}

void Walk::ActOfClient()
{
    const int iAct = Below(20);
    if (iAct == 0) {
        m_bRoom = OneOf(2);
        Note(m_bRoom ? QStringLiteral("the disk is full, and has room again") : QStringLiteral("the disk is full"));
        m_outside.FillDisk(m_bRoom);
    } else if (iAct == 1) {
        Note(QStringLiteral("another folder"));
        m_outside.ChangeFolder();
    } else if (iAct == 2) {
        const QString strId = SomeId();
        Note(QStringLiteral("question for ") + strId);
        m_outside.Ask(strId);
    } else {
        const QString strId = SomeId();
        Note(QStringLiteral("request ") + strId);
        m_outside.Request(strId);
    }
}

void Walk::ActOfUser()
{
    const int iAct = Below(8);
    const QString strId = SomeOf(m_outside.Rows(), Below(100));
    if (strId.isEmpty())
        return ActOfClient();
    if (iAct == 0) {
        Note(QStringLiteral("press all"));
        m_outside.PressAll();
    } else if (iAct < 3) {
        Note(QStringLiteral("delete ") + strId);
        m_outside.Delete(strId);
    } else {
        Note(QStringLiteral("press ") + strId);
        m_outside.PressState(strId);
    }
}

void Walk::ActOfHost()
{
    switch (Below(10)) {
    case 0:
        Note(QStringLiteral("deliver"));
        return QCoreApplication::processEvents();
    case 1:
        Note(QStringLiteral("pictures"));
        return m_outside.AnswerPictures();
    case 2:
        Note(QStringLiteral("cloud passwords"));
        return m_outside.AnswerCloudPasswords();
    case 3:
        Note(QStringLiteral("device passwords"));
        return m_outside.AnswerDevicePasswords(OneOf(4) ? 1 : 0);
    case 4:
        Note(QStringLiteral("the next start is refused"));
        return m_outside.Host().RefuseNextStart();
    case 5:
        Note(QStringLiteral("room on the disk"));
        return ScriptedDisk::SetFreeBytes(1024 * ScriptedDisk::MiB);
    default:
        return Report();
    }
}

void Walk::Report()
{
    const QString strId = SomeOf(m_outside.Host().Running(), Below(100));
    const int iCode = std::array<int, 8>{0, 1, 2, 2, 2, 3, 7, 100}[static_cast<std::size_t>(Below(8))];
    if (strId.isEmpty() || (iCode == 100 && SourceOf(strId) != Source::Cloud))
        return;
    Note(QStringLiteral("state %1 of %2").arg(QString::number(iCode), strId));
    m_outside.RaiseData(strId);
    m_outside.Raise(strId, iCode);
}

void Walk::CheckEnd()
{
    ScriptedDisk::SetFreeBytes(1024 * ScriptedDisk::MiB);
    if (m_bStops)
        m_outside.Stop();
    m_outside.Rest();
    if (m_bStops)
        return AtRest::CheckStopped(m_outside, AllIds());
    // Whatever was held back is asked again when any source may start.
    m_outside.Request(QStringLiteral("49"));
    m_outside.Rest();
    AtRest::Check(m_outside);
    AtRest::RunToEnd(m_outside);
    AtRest::CheckNothingIsLeft(m_outside, AllIds());
}

void Walk::Note(const QString& strWhat)
{
    m_trace.append(QString(m_iDepth * 4, QLatin1Char(' ')) + strWhat);
    if (m_bAloud)
        std::fprintf(stderr, "%s\n", qPrintable(m_trace.last()));
}

QString Walk::SomeId()
{
    return SomeOf(AllIds(), Below(100));
}

QString Walk::SomeOf(const QStringList& ids, int iNumber)
{
    return ids.isEmpty() ? QString() : ids[iNumber % ids.size()];
}
