#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QThreadPool>

#include <atomic>

namespace KXClient {

// Reads finished files on a thread of its own and says whether they are what was asked for.
//
// Thread: made, used and destroyed on the GUI thread; results come there.
class FileChecker : public QObject
{
    Q_OBJECT

public:
    explicit FileChecker(QObject* pParent = nullptr);
    // Breaks off what is being read.
    ~FileChecker() override;

    // `lSize` -1 and an empty `strSha256` mean that they are not known.
    void Check(int iIndex, const QString& strPath, qint64 lSize, const QString& strSha256);

signals:
    // `strProblem` is empty for a good file; `lSize` is -1 when there is no file.
    void SignalChecked(int iIndex, qint64 lSize, const QString& strProblem);

private:
    QThreadPool m_pool;
    std::atomic<bool> m_bCancelled{false};
};

} // namespace KXClient
