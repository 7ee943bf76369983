#pragma once

#include <httplib.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace KXHost {

// The HTTP server of the library, with connections that can be ended at any moment: every wait of a connection looks
// at the stop flag. Handlers run on the server's threads, one connection per thread.
class SiteServer final : private httplib::Server
{
public:
    using Handler = httplib::Server::Handler;
    using httplib::Server::Get;

    SiteServer();
    ~SiteServer() override;

    // Listens on 127.0.0.1; 0 takes a free port. False when the port cannot be had. Once only.
    bool Start(int iPort);
    void Stop();
    int Port() const { return m_iPort; }

    // For handlers, on their own thread. Pause gives false when the site stops; Hang returns when it stops or the
    // client has left, and nothing is sent after it.
    bool Pause(std::chrono::milliseconds time) const;
    void Hang() const;

private:
    bool process_and_close_socket(socket_t socket) override;
    bool Serve(socket_t socket);
    // The library makes its tables at the first request: that shall be over before there are threads.
    void Rehearse();

    std::atomic<bool> m_bStopping{false};
    mutable std::mutex m_stopMutex;
    mutable std::condition_variable m_stopped;
    std::thread m_listener;
    int m_iPort = 0;
};

} // namespace KXHost
