#include "FakeHost/FakeDownloads.h"

// What module 5 records of its start and stop operations.

namespace {

QString Text(const std::string& strText)
{
    return QString::fromStdString(strText);
}

QString CommonFields(const KXLogic::DownloadRequest& request)
{
    return QStringLiteral("device=%1 account=%2 address=%3 password=%4 channel=%5 path=%6 begin=%7 end=%8")
        .arg(Text(request.strDeviceId), Text(request.strDeviceAccount), Text(request.strAddress),
             Text(request.strPassword), QString::number(request.iChannelNo), Text(request.strFilePath),
             QString::number(request.lBeginTime), QString::number(request.lEndTime));
}

QString CloudFields(const KXLogic::CloudDownloadRequest& request)
{
    return QStringLiteral(" record=%1 kind=%2 channelId=%3 storage=%4 cloudKind=%5 key=%6 cloudAddress=%7")
        .arg(QString::number(request.lRecordId), QString::number(request.iRequestKind),
             QString::number(request.lChannelId), QString::number(request.iStorageId),
             QString::number(request.iCloudKind), Text(request.strKeyText), Text(request.strCloudAddress));
}

QString DeviceFields(const KXLogic::DeviceDownloadRequest& request)
{
    return QStringLiteral(" stream=%1").arg(request.iStream);
}

QString LanFields(const KXLogic::LanModuleDownloadRequest& request)
{
    return QStringLiteral(" serial=%1 moduleAddress=%2 token=%3 port=%4 sub=%5 stream=%6 kind=%7 encrypted=%8")
        .arg(Text(request.strModuleSerial), Text(request.strModuleAddress), Text(request.strModuleToken),
             QString::number(request.iModulePort), Text(request.strSubModule), QString::number(request.iStream),
             QString::number(request.iKind), QString::number(request.bEncrypted ? 1 : 0));
}

} // namespace

int FakeDownloads::RecordStart(const char* pszOperation, const KXLogic::DownloadRequest& request,
                               const QString& strOwnFields)
{
    const QString strRecordId = Text(request.strRecordId);
    const int iNth = ++m_iStarts;
    m_calls.Add(QString::fromUtf8(pszOperation) + QLatin1Char(' ') + strRecordId + QLatin1Char(' ') +
                CommonFields(request) + strOwnFields);
    return m_resultOfCall.value(iNth, m_resultOfRecord.value(strRecordId, m_iStartResult));
}

int FakeDownloads::RecordStop(const char* pszOperation, const QString& strRecordId)
{
    m_calls.Add(QString::fromUtf8(pszOperation) + QLatin1Char(' ') + strRecordId);
    return m_iStopResult;
}

int FakeDownloads::StartCloudRecordDownload(const KXLogic::CloudDownloadRequest& request)
{
    return RecordStart("StartCloudRecordDownload", request, CloudFields(request));
}

int FakeDownloads::StartDeviceRecordDownload(const KXLogic::DeviceDownloadRequest& request)
{
    return RecordStart("StartDeviceRecordDownload", request, DeviceFields(request));
}

int FakeDownloads::StartDeviceRecordDownloadAlt(const KXLogic::DeviceDownloadRequest& request)
{
    return RecordStart("StartDeviceRecordDownloadAlt", request, DeviceFields(request));
}

int FakeDownloads::StartIOTLanRecordDownload(const KXLogic::IOTLanDownloadRequest& request)
{
    return RecordStart("StartIOTLanRecordDownload", request, LanFields(request));
}

int FakeDownloads::StartLanModuleRecordDownload(const KXLogic::LanModuleDownloadRequest& request)
{
    return RecordStart("StartLanModuleRecordDownload", request, LanFields(request));
}

int FakeDownloads::StopCloudRecordDownload(qint64 lRecordId)
{
    return RecordStop("StopCloudRecordDownload", QString::number(lRecordId));
}

int FakeDownloads::StopDeviceRecordDownload(const std::string& strRecordId)
{
    return RecordStop("StopDeviceRecordDownload", Text(strRecordId));
}

int FakeDownloads::StopIOTLanRecordDownload(const std::string& strRecordId)
{
    return RecordStop("StopIOTLanRecordDownload", Text(strRecordId));
}

int FakeDownloads::StopLanModuleRecordDownload(const std::string& strRecordId)
{
    return RecordStop("StopLanModuleRecordDownload", Text(strRecordId));
}
