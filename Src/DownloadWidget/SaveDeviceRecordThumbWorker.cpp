#include "DownloadWidget/SaveDeviceRecordThumbWorker.h"

#include "DownloadWidget/PanelLog.h"
#include "Module/SafePicture.h"

#include <QtCore/QDebug>
#include <QtCore/QThread>

void SaveDeviceRecordThumbWorker::OnStartTask(const QString srcPath, const QString dstPath, const QString strRecordID)
{
    QMessageLogger("Src/DownloadWidget/DownloadWidget", 34,
                   "void __cdecl SaveDeviceRecordThumbWorker::OnStartTask(const class QString,const class QString,"
                   "const class QString)")
            .debug()
        << "SaveDeviceRecordThumbWorker::OnStartTask"
        << " Thread ID: " << QThread::currentThreadId() << "\n";
    QString strPath = dstPath;
    QByteArray bytes;
    if (!SafePicture::ReadFile(srcPath, bytes))
        strPath.clear();
    // A failure shows as a missing picture, and the row falls back to its default.
    else if (!SafePicture::Save(bytes, dstPath) && !QThread::currentThread()->isInterruptionRequested())
        KX_PANEL_LOG(51, PanelLogFailure, "SaveDeviceRecordThumbWorker::OnStartTask", "no picture[%s]",
                     srcPath.toUtf8().constData());
    emit SignalFinished(strRecordID, strPath);
}
