#include "TransferStage.h"

#include "Host/KXLogic/RunningTransfers.h"
#include "KXLogic/KXLogic.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

namespace {

constexpr int WaitMs = 20000;

} // namespace

TransferStage::TransferStage()
    : m_logic(*static_cast<KXLogic::IDownloadLogic*>(KXLogic::Instance()->GetLogicMdl(5)))
    , m_listener(m_logic)
{
    for (KXHost::SourceSettings& source : m_settings.sources) {
        source.strUrl = m_server.Url(QStringLiteral("/{recordId}"));
        source.strUser = QStringLiteral("viewer");
    }
    Configure();
}

QByteArray TransferStage::Content(const QString& strFile) const
{
    QFile file(Path(strFile));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

int TransferStage::Start(const QString& strId, const QString& strPassword)
{
    KXLogic::DeviceDownloadRequest request;
    request.strRecordId = strId.toStdString();
    request.strDeviceId = "D1";
    request.strPassword = strPassword.toStdString();
    request.strFilePath = Path(strId + QStringLiteral(".mp4")).toStdString();
    return m_logic.StartDeviceRecordDownload(request);
}

int TransferStage::Run(const QString& strId, const QString& strPassword)
{
    const QRegularExpression last(QStringLiteral("^1 %1 [023]$").arg(strId));
    const int iBefore = m_listener.States().filter(last).size();
    if (Start(strId, strPassword) != 0)
        return -1;
    const bool bEnded = QTest::qWaitFor([&] { return m_listener.States().filter(last).size() > iBefore; }, WaitMs);
    return bEnded ? m_listener.States().filter(last).constLast().right(1).toInt() : -1;
}

QString TransferStage::ReasonOf(const QString& strId) const
{
    return KXHost::TransferReason(1, strId);
}
