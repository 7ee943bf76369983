#pragma once

#include "Host/Http/HttpClient.h"

#include <QtCore/QQueue>
#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

#include <functional>
#include <mutex>

// Fetches pictures, a few at a time, first come, first served, into a temporary folder that goes with it. Thread: any.
class PictureFetcher
{
public:
    // `strPath` is empty when the picture could not be fetched. Called on a thread of the fetcher.
    using Fetched = std::function<void(const QString& strUrl, const QString& strPath)>;

    explicit PictureFetcher(Fetched fetched);
    ~PictureFetcher(); // ends all transfers, unannounced

    // Announced once.
    void Fetch(const QString& strUrl);

private:
    void StartNext();
    bool Start(const QString& strUrl);
    void OnFinished(const QString& strUrl, const QString& strPath, const QString& strReason);

    const Fetched m_fetched;
    QTemporaryDir m_folder;
    std::mutex m_mutex; // guards the three below
    QQueue<QString> m_queueUrls;
    std::size_t m_uRunning = 0;
    quint64 m_uFileNumber = 0;
    KXHost::HttpClient m_http; // ends first
};
