#include "Host/Client/Window/WindowDownloads.h"

#include "Host/Client/DownloadInput.h"
#include "KXBase/GKXObserver.h"
#include "Model/HostEvents.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <utility>

namespace KXClient {

WindowDownloads::WindowDownloads(DownloadInput& input, QWidget* pPanel, QObject* pParent)
    : QObject(pParent)
    , m_input(input)
    , m_session(input.Records())
    , m_rows(pPanel)
{
    connect(&m_session, &DownloadSession::SignalSettled, this, &WindowDownloads::SignalChanged);
    GKXObserver::attach(HostEvents::DownloadNumber, this, SLOT(OnDownloadNumber(QVariantList)));
}

WindowDownloads::State WindowDownloads::StateOf(int iIndex) const
{
    switch (Tasks().at(iIndex).state) {
    case TaskState::NotAsked:
        return State::None;
    case TaskState::Outstanding:
        return State::InList;
    case TaskState::Finished:
        return State::Whole;
    case TaskState::Failed:
        return State::Failed;
    case TaskState::Refused:
        return State::Refused;
    case TaskState::Dropped:
        return State::Dropped;
    }
    return State::None;
}

QString WindowDownloads::DetailOf(int iIndex) const
{
    const State state = StateOf(iIndex);
    if (state == State::Whole)
        return QDir::toNativeSeparators(Tasks().at(iIndex).strPath);
    return Tasks().at(iIndex).strReason;
}

// A task that was asked for and has no row yet waits for its cover.
bool WindowDownloads::MayAsk(int iIndex) const
{
    const Task& task = Tasks().at(iIndex);
    return task.state != TaskState::Outstanding && !m_rows.Has(task.request.pRecord->strRecordId);
}

bool WindowDownloads::Ask(const QVector<int>& indexes, const QString& strFolder)
{
    if (!QDir().mkpath(strFolder) || !QFileInfo(strFolder).isWritable())
        return false;
    m_input.MoveTargets(strFolder);
    QVector<int> asked;
    for (int iIndex : indexes) {
        if (MayAsk(iIndex))
            asked.append(iIndex);
    }
    m_session.Send(strFolder, asked);
    for (int iIndex : asked) {
        const RequestedRecord& request = Tasks().at(iIndex).request;
        if (m_rows.Has(request.pRecord->strRecordId)) // those of the cloud get theirs later
            m_listed.insert(iIndex);
        m_thumbnails.Fetch(request.pRecord->strRecordId, request.strThumbnailUrl);
        emit SignalChanged(iIndex);
    }
    return true;
}

int WindowDownloads::CountOf(State state) const
{
    int iCount = 0;
    for (int iIndex = 0; iIndex < Tasks().size(); ++iIndex)
        iCount += StateOf(iIndex) == state ? 1 : 0;
    return iCount;
}

// The event comes while the panel is at work on the row; the rows are looked at when that is done, and once for many.
void WindowDownloads::OnDownloadNumber(QVariantList list)
{
    m_iRowCount = list.value(0).toInt();
    if (!std::exchange(m_bLookPending, true))
        QMetaObject::invokeMethod(this, &WindowDownloads::LookAtRows, Qt::QueuedConnection);
}

// A row that went without an end of its task was taken out by the user.
void WindowDownloads::LookAtRows()
{
    m_bLookPending = false;
    for (int iIndex = 0; iIndex < Tasks().size(); ++iIndex) {
        const bool bListed = m_rows.Has(Tasks().at(iIndex).request.pRecord->strRecordId);
        if (bListed == m_listed.contains(iIndex))
            continue;
        if (bListed) {
            m_listed.insert(iIndex);
        } else {
            m_listed.remove(iIndex);
            if (Tasks().at(iIndex).state == TaskState::Outstanding)
                m_session.Forget(iIndex);
        }
        emit SignalChanged(iIndex);
    }
    emit SignalCounted();
}

} // namespace KXClient
