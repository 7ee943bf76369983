#pragma once

#include "Model/DownloadRecordInfo.h"

#include <QtCore/QJsonObject>

// The event that tells the client a task's state; the payload's keys are in Model/HostEvents.h.
QJsonObject StateEventOf(const KXDownLoadList::DownloadRecordInfo& record, int iCode);
void NotifyState(const QJsonObject& event);
