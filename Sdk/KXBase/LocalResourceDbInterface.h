#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/QString>

// One file in the client's resource database. Times are Unix seconds; a time that is not known is 4294967295.
struct LocalResourceInfo
{
    QString strFilePath;
    qint64 lRegisterTime = 0;
    qint64 lBeginTime = 0;
    qint64 lEndTime = 0;
    int iResourceKind = 0; // 1 picture, 2 recording
    QString strTitle;
    QString strThumbPath; // filled by other parts of the client
    int iFavourite = 0;   // filled by other parts of the client
};

// The client's database of local recordings and pictures.
//
// Thread: the GUI thread.
class LocalResourceDbInterface
{
public:
    // The one database of the process; null when it could not be opened.
    static KX_HOST_EXPORT LocalResourceDbInterface* GetInstance();

    // Adds one file; `pInfo` is read during the call and must not be null. False when it could not be stored.
    virtual bool Insert(const LocalResourceInfo* pInfo) = 0;

protected:
    ~LocalResourceDbInterface() = default;
};
