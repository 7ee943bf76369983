#pragma once

#include "Engine/EngineCases.h"
#include "Module/PictrueDecrypt.h"

#include <QtCore/QBuffer>
#include <QtGui/QImage>

// Cover pictures for the engine's tests.
namespace CoverPictures {

inline QByteArray Encoded(const QImage& image, const char* pszFormat)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, pszFormat);
    return bytes;
}

// Six by four pixels of one colour.
inline QByteArray Small(const char* pszFormat = "JPG")
{
    QImage image(6, 4, QImage::Format_RGB32);
    image.fill(QColor(200, 40, 90));
    return Encoded(image, pszFormat);
}

// Serves the URL once and waits until that many pictures were decrypted and the engine has acted on them. The signal is
// connected while the decrypter is held in the host: Qt reads a thread's connections unlocked when that emits.
inline void Serve(EngineRig& rig, const QByteArray& url, int iDecryptions)
{
    const int iBefore = rig.Calls().Count("DecryptPicture");
    rig.World().Cloud().CloseDecryptGate();
    rig.World().Pictures().AnswerWithFile(url.constData(), "encrypted");
    QTRY_COMPARE(rig.Calls().Count("DecryptPicture"), iBefore + 1);
    QObject here; // counts on this thread, after the engine
    int iDecrypted = 0;
    QObject::connect(rig.Engine().findChild<PictrueDecrypt*>(), &PictrueDecrypt::SignalDecrptPictrueFinished, &here,
                     [&iDecrypted] { ++iDecrypted; });
    rig.World().Cloud().OpenDecryptGate();
    QTRY_COMPARE(iDecrypted, iDecryptions);
}

inline KXDownLoadList::DownloadCloudRecordInfo RecordWithCover(const EngineRig& rig, const char* pszId)
{
    auto record = rig.Cloud(pszId);
    record.strCloudText1 = QStringLiteral("cover");
    record.strCloudText4 = QStringLiteral("canary-picture-key");
    record.strPicturePath = QStringLiteral("as-received");
    return record;
}

// One task whose password was fetched, so that it has its row and runs already; its picture is asked for.
inline void SendListed(EngineRig& rig)
{
    auto record = RecordWithCover(rig, "1");
    record.strText1 = QStringLiteral("account");
    record.strCloudText2 = QStringLiteral("canary-record-key");
    rig.SendOne(record);
    rig.World().Cloud().AnswerPassword(0, 1, "canary-fetched");
    rig.Settle();
    rig.World().Log().Clear();
}

inline void SendHeld(EngineRig& rig)
{
    rig.SendOne(RecordWithCover(rig, "1"));
}

// The host serves the picture and decrypts it with that result; the engine has acted on it when this returns.
inline void Settle(EngineRig& rig, int iResult, const QByteArray& clear = QByteArray())
{
    rig.World().Cloud().QueueDecryption(iResult, clear);
    rig.Calls().Clear();
    Serve(rig, "cover", 1);
}

} // namespace CoverPictures
