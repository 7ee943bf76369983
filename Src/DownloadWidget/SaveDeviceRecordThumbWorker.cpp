#include "DownloadWidget/SaveDeviceRecordThumbWorker.h"

#include "Module/PictureReading.h"

#include <QtCore/QBuffer>
#include <QtCore/QDebug>
#include <QtCore/QFileInfo>
#include <QtCore/QThread>
#include <QtGui/QImageReader>
#include <QtGui/QImageWriter>

namespace {

// QImage::save empties an existing file before it finds that it cannot write such a picture. A recording that is not
// called ".mp4" is its own picture's target, and must stay; one that is called like a picture becomes it.
void Save(const QImage& image, const QString& strPath)
{
    const QByteArray format = QFileInfo(strPath).suffix().toLower().toLatin1();
    if (QImageWriter::supportedImageFormats().contains(format))
        image.save(strPath);
}

} // namespace

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
    if (ReadPictureFile(srcPath, bytes)) {
        QBuffer buffer(&bytes);
        QImageReader reader(&buffer);
        reader.setDecideFormatFromContent(true);
        // A failure shows as a missing picture, and the row falls back to its default.
        if (IsReasonablePicture(reader))
            Save(reader.read(), dstPath);
    } else {
        strPath.clear();
    }
    emit SignalFinished(strRecordID, strPath);
}
