#include "Module/StateEvent.h"

#include "KXBase/GKXObserver.h"
#include "Model/HostEvents.h"

#include <QtCore/QJsonDocument>

QJsonObject StateEventOf(const KXDownLoadList::DownloadRecordInfo& record, int iCode)
{
    return {{HostEvents::KeyRecordType, record.iRecordType},
            {HostEvents::KeyRecordId, record.strRecordId},
            {HostEvents::KeyDownloadPath, record.strDownloadPath},
            {HostEvents::KeyCode, iCode}};
}

void NotifyState(const QJsonObject& event)
{
    GKXObserver::notify(HostEvents::DownloadRecordStates, QVariant(QString::fromUtf8(QJsonDocument(event).toJson())));
}
