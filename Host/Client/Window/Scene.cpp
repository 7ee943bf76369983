#include "Host/Client/Window/Scene.h"

#include "Host/Client/Window/MainWindow.h"
#include "Host/Client/Window/RecordingPane.h"
#include "Host/KXLogic/RunningTransfers.h"
#include "KXBase/GKXObserver.h"
#include "Model/HostEvents.h"

#include <QtCore/QTimer>
#include <QtWidgets/QPushButton>

#include <algorithm>
#include <iterator>

namespace KXClient {

namespace {

enum class Role { Downloading, Paused, Failed, Waiting, Extra, OnlyChecked };

// A recording and what it shows in the picture.
struct Actor
{
    const char* pszRecordId;
    Role role;
    int iGroup;           // groups are asked for one after the other, which gives the rows their order
    const char* pszFault; // of the site, null: none; what downloads stalls there for the picture
    int iPercent;         // at least, when it downloads
    bool bPicture;        // its row has a thumbnail
};

// clang-format off
constexpr Actor Actors[] = {
    {"KXN8R5120907_3_20240316T220000",   Role::Downloading, 0, "stall=63",      62, true},
    {"4611686018427400104",              Role::Paused,      1, "slow=20000000",  0, true},
    {"KXB1L6600342_1_20240401T180203",   Role::Failed,      2, "cut=30",         0, false},
    {"KXN8R5120907_12_20240317T190000",  Role::Downloading, 3, "stall=25",      24, true},
    {"KXD2S0048816_1_20240318T071111",   Role::Waiting,     3, nullptr,          0, true},
    {"KXN8R5120907_4_20240317T061230",   Role::Extra,       4, nullptr,          0, true},
    {"KXB1L6600342_1_20240401T074500",   Role::Extra,       4, nullptr,          0, false},
    {"KXM3G0007719_2_20240402T090000",   Role::Extra,       4, "slow=200000",    0, false},
    {"KXM3G0007719_4_20240403T000001",   Role::Extra,       4, nullptr,          0, false},
    {"4611686018427400101",              Role::OnlyChecked, 5, nullptr,          0, false},
    {"4611686018427400103",              Role::OnlyChecked, 5, nullptr,          0, false},
};
// clang-format on

constexpr int LastGroup = 5;
constexpr int LookEveryMs = 50;
// Of a row, in its own coordinates.
constexpr QPoint StateButton(515, 41);
constexpr QRect Thumbnail(30, 10, 120, 68);

struct RoleName
{
    Role role;
    const char* pszName;
};
constexpr RoleName RoleNames[] = {
    {Role::Downloading, "downloading"}, {Role::Waiting, "waiting"}, {Role::Paused, "paused"}, {Role::Failed, "failed"}};

QString IdOf(const Actor& actor)
{
    return QLatin1String(actor.pszRecordId);
}

bool IsInPicture(const Actor& actor)
{
    return actor.role != Role::Extra && actor.role != Role::OnlyChecked;
}

int CountOf(Role role)
{
    return static_cast<int>(
        std::count_if(std::begin(Actors), std::end(Actors), [role](const Actor& actor) { return actor.role == role; }));
}

} // namespace

QStringList Scene::Faults()
{
    QStringList faults;
    for (const Actor& actor : Actors) {
        if (actor.pszFault)
            faults.append(QLatin1String(actor.pszFault) + QLatin1Char('@') + IdOf(actor));
    }
    return faults;
}

Scene::Scene(MainWindow& window, QWidget& panel)
    : m_window(window)
    , m_panel(panel)
{
    GKXObserver::attach(HostEvents::LogV2Report, this, SLOT(OnClickReport(QVariantList)));
}

std::optional<QImage> Scene::Play(int iTimeoutSeconds)
{
    QTimer look;
    connect(&look, &QTimer::timeout, this, &Scene::Look);
    look.start(LookEveryMs);
    QTimer::singleShot(iTimeoutSeconds * 1000, &m_loop, &QEventLoop::quit);
    m_loop.exec();
    return m_bDone ? std::optional<QImage>(m_picture) : std::nullopt;
}

void Scene::Look()
{
    FollowTransfers();
    AskNext();
    PressPause();
    m_picture = m_window.grab().toImage();
    m_bDone = m_iAsked > LastGroup && Missing().isEmpty();
    if (m_bDone)
        m_loop.quit();
}

void Scene::FollowTransfers()
{
    m_received.clear();
    for (const KXHost::RunningTransfer& transfer : KXHost::RunningTransfers())
        m_received.insert(transfer.strRecordId, transfer.lReceived);
}

int Scene::IndexOf(const QString& strRecordId) const
{
    const QVector<Task>& tasks = m_window.Downloads().Tasks();
    const auto it = std::find_if(tasks.begin(), tasks.end(), [&strRecordId](const Task& task) {
        return task.request.pRecord->strRecordId == strRecordId;
    });
    return static_cast<int>(it - tasks.begin());
}

// A group is asked for when the one before has its rows, or has settled already. A recording of the cloud gets its row
// with its cover.
void Scene::AskNext()
{
    const WindowDownloads& downloads = m_window.Downloads();
    const auto hasItsRow = [&](const Actor& actor) {
        return actor.iGroup != m_iAsked - 1 || downloads.Rows().Has(IdOf(actor)) ||
               downloads.StateOf(IndexOf(IdOf(actor))) != WindowDownloads::State::InList;
    };
    if (m_iAsked > LastGroup || !std::all_of(std::begin(Actors), std::end(Actors), hasItsRow))
        return;
    for (const Actor& actor : Actors) {
        if (actor.iGroup == m_iAsked)
            m_window.Pane().Tree().Check(IndexOf(IdOf(actor)), true);
    }
    if (m_iAsked < LastGroup)
        m_window.findChild<QPushButton*>(QStringLiteral("download"))->click();
    ++m_iAsked;
}

void Scene::PressPause()
{
    for (const Actor& actor : Actors) {
        if (actor.role == Role::Paused && !m_bPausePressed && m_received.value(IdOf(actor)) > 0)
            m_bPausePressed = m_window.Downloads().Rows().Click(IdOf(actor), StateButton);
    }
}

void Scene::OnClickReport(QVariantList list)
{
    m_bPauseHeard = m_bPauseHeard || list.value(0).toString().contains(QLatin1String("\"btnPause"));
}

bool Scene::IsInPlace(int iActor) const
{
    const Actor& actor = Actors[iActor];
    const QString strId = IdOf(actor);
    const int iIndex = IndexOf(strId);
    const auto& record = *m_window.Downloads().Tasks().at(iIndex).request.pRecord;
    const bool bRuns = m_received.contains(strId);
    switch (actor.role) {
    case Role::Downloading:
        return bRuns && m_received.value(strId) * 100 >= record.lFileSize * actor.iPercent;
    case Role::Paused:
        return m_bPauseHeard && !bRuns;
    case Role::Failed:
        return m_window.Downloads().StateOf(iIndex) == WindowDownloads::State::Failed;
    case Role::Waiting:
        return !bRuns && !KXHost::WasTransferBegun(record.iRecordType, strId);
    case Role::Extra:
    case Role::OnlyChecked:
        return true;
    }
    return false;
}

// The failed row has none: another row that looks the same there has none either.
bool Scene::ShowsPicture(const QString& strRecordId, const QImage& picture) const
{
    const auto lookOf = [&](const QString& strId) {
        const QRect place = m_window.Downloads().Rows().PlaceOf(strId, Thumbnail);
        return picture.copy(QRect(m_panel.mapTo(&m_window, place.topLeft()), place.size()));
    };
    const auto* pFailed = std::find_if(std::begin(Actors), std::end(Actors),
                                       [](const Actor& actor) { return actor.role == Role::Failed; });
    return lookOf(strRecordId) != lookOf(IdOf(*pFailed));
}

QStringList Scene::Missing() const
{
    QStringList missing;
    const QStringList inView = m_window.Downloads().Rows().InView();
    for (int iActor = 0; iActor < static_cast<int>(std::size(Actors)); ++iActor) {
        const Actor& actor = Actors[iActor];
        const QString strId = IdOf(actor);
        if (!IsInPicture(actor))
            continue;
        const auto* pName = std::find_if(std::begin(RoleNames), std::end(RoleNames),
                                         [&actor](const RoleName& name) { return name.role == actor.role; });
        if (!inView.contains(strId))
            missing.append(strId + QLatin1String(" is not in view"));
        else if (!IsInPlace(iActor))
            missing.append(strId + QLatin1String(" is not ") + QLatin1String(pName->pszName));
        else if (actor.bPicture != ShowsPicture(strId, m_picture))
            missing.append(strId + QLatin1String(actor.bPicture ? " has no thumbnail" : " has a thumbnail"));
    }
    return missing;
}

QString Scene::Seen() const
{
    QStringList counts;
    for (const RoleName& name : RoleNames)
        counts.append(QStringLiteral("%1 %2").arg(CountOf(name.role)).arg(QLatin1String(name.pszName)));
    const auto iPictures = std::count_if(std::begin(Actors), std::end(Actors),
                                         [](const Actor& actor) { return IsInPicture(actor) && actor.bPicture; });
    return QStringLiteral("%1; %2 thumbnails").arg(counts.join(QStringLiteral(", "))).arg(iPictures);
}

} // namespace KXClient
