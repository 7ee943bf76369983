#include "FakeHost/FakePictures.h"

#include "KXBase/IPictureDownloaderListener.h"

#include <QtCore/QFile>
#include <QtCore/QObject>

#include <utility>

FakePictures::FakePictures(CallList& calls, QString strFolder)
    : m_calls(calls)
    , m_strFolder(std::move(strFolder))
{}

FakePictures::~FakePictures() = default;

void FakePictures::Attach(IPictureDownloaderListener* pListener)
{
    m_pAttachThread = std::make_unique<QObject>();
    m_pListener = pListener;
    m_calls.Add(QStringLiteral("Attach pictures"));
}

void FakePictures::Detach(IPictureDownloaderListener* pListener)
{
    m_calls.Add(QStringLiteral("Detach pictures"));
    if (m_bForgets && pListener == m_pListener)
        m_pListener = nullptr;
}

void FakePictures::get(const QString& strUrl)
{
    m_calls.Add(QStringLiteral("get ") + strUrl);
    if (!m_bFailAll || !m_pAttachThread)
        return;
    QMetaObject::invokeMethod(
        m_pAttachThread.get(), [this, strUrl] { AnswerFailed(strUrl.toUtf8().constData()); }, Qt::QueuedConnection);
}

void FakePictures::Answer(const char* pszUrl, int iResult, const QString& strLocalPath)
{
    if (!m_pAttachThread)
        return;
    const QString strUrl = QString::fromUtf8(pszUrl);
    QMetaObject::invokeMethod(m_pAttachThread.get(), [this, iResult, strUrl, strLocalPath] {
        if (m_pListener)
            m_pListener->OnPictureDownloaded(iResult, strUrl, strLocalPath);
    });
}

QString FakePictures::AnswerWithFile(const char* pszUrl, const QByteArray& content)
{
    QString strPath = QStringLiteral("%1/served-%2.enc").arg(m_strFolder, QString::number(++m_iFiles));
    QFile file(strPath);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write the served picture");
    file.close();
    Answer(pszUrl, 0, strPath);
    return strPath;
}
