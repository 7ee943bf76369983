#pragma once

#include "Host/Http/HttpTypes.h"
#include "Host/KXBase/PictureSettings.h"

#include <QtCore/QFile>
#include <QtCore/QString>

#include <functional>

// One picture on its way from its URL to its file. A file that is not whole is removed.
//
// Thread: that of the HTTP client.
class PictureTransfer final : public KXHost::HttpReceiver
{
public:
    // `strReason` is empty for a picture that arrived whole.
    using Finished = std::function<void(const QString& strPath, const QString& strReason)>;

    // Tells the end once, unless the host ends first.
    PictureTransfer(const QString& strPath, const KXHost::PictureLimits& limits, Finished finished);

    bool OnHead(const KXHost::HttpHead& head) override;
    bool OnData(const char* pData, std::size_t uSize) override;
    void OnEnd(const KXHost::HttpEnd& end) override;

private:
    bool GiveUp(const QString& strReason);

    const KXHost::PictureLimits m_limits;
    const Finished m_finished;
    QFile m_file;
    QString m_strReason; // when it was given up here
};
