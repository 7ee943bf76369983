#include "Host/Client/FileChecker.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRunnable>

#include <functional>

namespace KXClient {

namespace {

constexpr qint64 PieceSize = 1024 * 1024;

class Job : public QRunnable
{
public:
    explicit Job(std::function<void()> work)
        : m_work(std::move(work))
    {}
    void run() override { m_work(); }

private:
    std::function<void()> m_work;
};

QString Sha256Of(QFile& file, const std::atomic<bool>& bCancelled)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QByteArray piece(static_cast<int>(PieceSize), Qt::Uninitialized);
    for (qint64 lRead = 1; lRead > 0 && !bCancelled;) {
        lRead = file.read(piece.data(), PieceSize);
        if (lRead < 0)
            return QString();
        hash.addData(piece.constData(), static_cast<int>(lRead));
    }
    return QString::fromLatin1(hash.result().toHex());
}

QString ProblemOf(const QString& strPath, qint64 lSize, const QString& strSha256, const std::atomic<bool>& bCancelled)
{
    QFile file(strPath);
    if (!QFileInfo(strPath).isFile())
        return QStringLiteral("no file");
    if (lSize >= 0 && file.size() != lSize)
        return QStringLiteral("has %1 bytes instead of %2").arg(file.size()).arg(lSize);
    if (strSha256.isEmpty())
        return QString();
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return file.errorString();
    const QString strFound = Sha256Of(file, bCancelled);
    if (strFound.isEmpty())
        return file.errorString();
    return strFound == strSha256 ? QString() : QStringLiteral("has SHA-256 %1").arg(strFound);
}

} // namespace

FileChecker::FileChecker(QObject* pParent)
    : QObject(pParent)
{
    m_pool.setMaxThreadCount(1); // the transfers need the other cores
}

FileChecker::~FileChecker()
{
    m_bCancelled = true;
    m_pool.clear();
    m_pool.waitForDone();
}

void FileChecker::Check(int iIndex, const QString& strPath, qint64 lSize, const QString& strSha256)
{
    m_pool.start(new Job([=] {
        const QString strProblem = ProblemOf(strPath, lSize, strSha256, m_bCancelled);
        const QFileInfo info(strPath);
        // Emitted on the pool's thread: the connections queue it.
        emit SignalChecked(iIndex, info.isFile() ? info.size() : -1, strProblem);
    }));
}

} // namespace KXClient
