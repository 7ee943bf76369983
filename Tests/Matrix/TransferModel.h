#pragma once

#include "FakeHost/FakeWorld.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

#include <functional>
#include <vector>

// The first digit of a record id names its source: "11" cloud, "21" device, "31" IOT LAN, "41" LAN module.
inline Source SourceOf(const QString& strId)
{
    return static_cast<Source>(strId[0].unicode() - u'1');
}

// Transfers at a time.
inline int LimitOf(Source source)
{
    constexpr int Limits[] = {3, 2, 1, 1};
    return Limits[static_cast<int>(source)];
}

// The transfers as the host has them. It is told of every start and stop and of every state that the host reports,
// keeps the files, and notes what must never happen at any moment. Transfers are addressed by id: a stop ends all of
// that id, and a stop of an unknown id is harmless. A transfer runs from the return of its start until the return of
// its stop, or until it ended by itself.
class TransferModel
{
public:
    using Inside = std::function<void()>;

    explicit TransferModel(FakeWorld& world);

    // A line of the world's call list; `inside` is what happens while that call is on the stack.
    void Take(const QString& strLine, const Inside& inside);
    // The next start is refused.
    void RefuseNextStart() { m_bRefuses = true; }
    // The record was requested while it was held: both requests may be transferred.
    void AllowTwin(const QString& strId) { m_twins.insert(strId); }
    // The engine stops what it deletes without looking whether it runs.
    void ExpectStop(const QString& strId) { ++m_allowedStops[strId]; }
    // The host reports a state. A last one ends the oldest transfer of that id. Posted, not delivered.
    void Raise(const QString& strId, int iCode);
    // From now on nothing may start and nobody is asked for anything.
    void EngineStopped() { m_bStopped = true; }

    // Ids of the transfers that run, oldest first.
    QStringList Running() const;
    int CountOf(Source source) const;
    int CountOf(const QString& strId) const;
    bool IsStarting(const QString& strId) const;
    // The last start of that id was refused: its row waits, and nobody knows of it.
    bool WasRefused(const QString& strId) const { return m_refused.contains(strId); }
    void Forget(const QString& strId) { m_refused.remove(strId); } // it is asked for anew
    int StartsOf(const QString& strId) const { return m_transfersOf.value(strId); }
    // Files of transfers of that id that were not registered as finished, and of those that were.
    QStringList PartialFiles(const QString& strId) const;
    QStringList CompleteFiles(const QString& strId) const;

    void Wrong(const QString& strWhat) { m_wrong.append(strWhat); }
    // What was wrong until now, each with its time in the call list; and what can be told at the end only.
    QStringList AllWrong() const;

private:
    enum class Phase { Starting, Running, Ended };
    struct Transfer
    {
        int iNumber;
        QString strId;
        QString strPath;
        Phase phase;
    };

    void TakeStart(const QString& strId, const QString& strPath, const Inside& inside);
    void TakeStop(const QString& strId, const Inside& inside);
    void CheckStart(const QString& strId, const QString& strPath);
    void CheckStopped(const QString& strLine);
    std::vector<Transfer>::iterator Find(int iNumber);

    FakeWorld& m_world;
    std::vector<Transfer> m_transfers; // on the way or running
    QStringList m_stopping;            // ids whose stop is on the stack
    QSet<QString> m_twins;
    QSet<QString> m_refused;
    QHash<QString, QStringList> m_pathsOf;
    QSet<QString> m_complete; // paths in the database
    QHash<QString, int> m_transfersOf;
    QHash<QString, int> m_stopsOf;
    QHash<QString, int> m_allowedStops; // besides one for each transfer
    int m_iStarts = 0;
    bool m_bRefuses = false;
    bool m_bStopped = false;
    QStringList m_wrong;
};
