#pragma once

#include "FakeHost/CallList.h"
#include "KXBase/PictureDownloader.h"

#include <memory>

class QObject;

// PictureDownloader that answers only when the test says so: late, twice or never are a matter of how often it says it.
//
// Lines: "Attach pictures", "Detach pictures", "get url".
class KX_HOST_EXPORT FakePictures final : public PictureDownloader
{
public:
    FakePictures(CallList& calls, QString strFolder);
    ~FakePictures();

    void Attach(IPictureDownloaderListener* pListener) override;
    void Detach(IPictureDownloaderListener* pListener) override;
    void get(const QString& strUrl) override;

    // From now on every get is answered by itself, as failed, with the next turn of the event loop.
    void FailAll(bool bFails = true) { m_bFailAll = bFails; }
    // Tells the listener on the thread that attached it: at once when that is the current one, otherwise queued.
    void Answer(const char* pszUrl, int iResult, const QString& strLocalPath);
    void AnswerFailed(const char* pszUrl) { Answer(pszUrl, 1, QString()); }
    // Success: `content` is put into a new file of the world's folder, whose path is returned.
    QString AnswerWithFile(const char* pszUrl, const QByteArray& content);
    // Detach is recorded, and the listener still told: what the contract excludes.
    void KeepTellingAfterDetach() { m_bForgets = false; }

private:
    CallList& m_calls;
    const QString m_strFolder;
    std::unique_ptr<QObject> m_pAttachThread; // lives on the thread that attached
    IPictureDownloaderListener* m_pListener = nullptr;
    bool m_bFailAll = false;
    bool m_bForgets = true;
    int m_iFiles = 0;
};
