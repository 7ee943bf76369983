#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

// Turns the thumbnail that a device download left on disk into a picture file beside the recording.
//
// Thread: the panel's thumbnail thread; reached by queued signals only, requests are served in order of arrival.
// A picture under way is given up when that thread's interruption is requested.
class SaveDeviceRecordThumbWorker : public QObject
{
    Q_OBJECT

public slots:
    void OnStartTask(const QString srcPath, const QString dstPath, const QString strRecordID);

signals:
    // `strPath` is the request's target, also when the source is no picture; empty when the source cannot be opened.
    void SignalFinished(QString strRecordID, QString strPath);
};
