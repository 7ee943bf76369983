#pragma once

#include "KXLogic/KXLogicModules.h"

#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <map>
#include <vector>

// The user of the download module in the tests: registers all eight callbacks and keeps what they said, as
// "source id state"; the sources are numbered by record type. Callbacks run on threads of the host, and what they keep
// is in containers that are not shared: ThreadSanitizer does not know Qt's reference counts.
class TransferListener
{
public:
    explicit TransferListener(KXLogic::IDownloadLogic& logic);
    ~TransferListener(); // unregisters

    QStringList States() const;
    bool HasState(const QString& strState) const { return States().contains(strState); }
    qint64 Received(const QString& strSourceAndId) const; // sum of the data callbacks
    int DataCalls() const;

    // Called inside every state callback, before the state is kept.
    std::function<void(const QString& strState)> m_onState;
    // Called inside every data callback.
    std::function<void(const QString& strSourceAndId)> m_onData;

private:
    template <int iSource, typename Id>
    static int OnState(Id id, int iCode, void* pUser);
    template <int iSource, typename Id>
    static int OnData(Id id, int iLength, void* pUser);

    KXLogic::IDownloadLogic& m_logic;
    mutable QMutex m_mutex; // guards what follows
    std::vector<QString> m_states;
    std::map<QString, qint64> m_received;
    int m_iDataCalls = 0;
};
