#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

#include <memory>

class IPictureDownloaderListener;

// Stands for one attached listener on the thread that attached it.
//
// Thread: made and lives on the listener's thread; Post and Close on any thread. Ownership: Close destroys it.
class PictureListenerPort : public QObject
{
    Q_OBJECT

public:
    explicit PictureListenerPort(IPictureDownloaderListener* pListener);
    ~PictureListenerPort() override;

    // Tells the listener later, on its thread.
    void Post(int iResult, const QString& strUrl, const QString& strLocalPath);
    // When it returns, the listener is in no call and gets none; called from inside one, it gets none but that one.
    void Close();

private:
    struct State;

    static void Deliver(State& state, int iResult, const QString& strUrl, const QString& strLocalPath);

    const std::shared_ptr<State> m_pState; // a running call and a waiting Close outlive the port
};
