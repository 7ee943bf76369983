#include "Host/Site/SiteServer.h"

#include "Host/Site/SocketIo.h"

#include <algorithm>
#include <future>

namespace {

constexpr char Loopback[] = "127.0.0.1";
constexpr std::size_t Threads = 64; // connections served at the same time; more than that wait
constexpr std::size_t RequestsPerConnection = 1000;
constexpr int IdleSeconds = 15;
constexpr int RequestSeconds = 10; // for the rest of a request that has begun
constexpr int TickMilliseconds = 50;

using Clock = std::chrono::steady_clock;

bool WaitReadable(socket_t socket, const std::atomic<bool>& bStopping, int iSeconds)
{
    const auto end = Clock::now() + std::chrono::seconds(iSeconds);
    while (!bStopping && Clock::now() < end)
        if (KXHost::SocketIo::WaitReadable(socket, TickMilliseconds))
            return true;
    return false;
}

class Connection;

// The connection that the calling thread serves.
thread_local Connection* t_pConnection = nullptr;

// A request in memory; the answer to it goes nowhere.
class Rehearsal final : public httplib::Stream
{
public:
    bool is_readable() const override { return true; }
    bool is_writable() const override { return true; }
    socket_t socket() const override { return INVALID_SOCKET; }
    ssize_t read(char* pData, size_t uSize) override
    {
        const std::string_view taken = m_left.substr(0, uSize);
        std::copy(taken.begin(), taken.end(), pData);
        m_left.remove_prefix(taken.size());
        return static_cast<ssize_t>(taken.size());
    }
    ssize_t write(const char*, size_t uSize) override { return static_cast<ssize_t>(uSize); }
    void get_remote_ip_and_port(std::string&, int&) const override {}
    void get_local_ip_and_port(std::string&, int&) const override {}

private:
    std::string_view m_left = "GET / HTTP/1.1\r\n\r\n";
};

// One connection as the library sees it. The library reads requests byte by byte, hence the buffer.
class Connection final : public httplib::Stream
{
public:
    Connection(socket_t socket, const std::atomic<bool>& bStopping)
        : m_socket(socket)
        , m_bStopping(bStopping)
    {
        t_pConnection = this;
    }
    ~Connection() override { t_pConnection = nullptr; }

    bool HasUnread() const { return m_uRead < m_uFilled; }
    void Mute() { m_bMute = true; }

    bool is_readable() const override { return HasUnread() || !m_bStopping; }
    bool is_writable() const override { return !m_bStopping && !m_bMute; }
    socket_t socket() const override { return m_socket; }

    ssize_t read(char* pData, size_t uSize) override
    {
        if (!HasUnread() && !Fill())
            return -1;
        const std::size_t uTaken = std::min(uSize, m_uFilled - m_uRead);
        std::copy_n(m_buffer.data() + m_uRead, uTaken, pData);
        m_uRead += uTaken;
        return static_cast<ssize_t>(uTaken);
    }

    ssize_t write(const char* pData, size_t uSize) override
    {
        while (is_writable()) {
            const auto result = KXHost::SocketIo::Send(m_socket, pData, uSize);
            if (result.outcome == KXHost::SocketIo::Outcome::Moved)
                return static_cast<ssize_t>(result.uMoved);
            if (result.outcome == KXHost::SocketIo::Outcome::Over)
                break;
            KXHost::SocketIo::WaitWritable(m_socket, TickMilliseconds);
        }
        return -1;
    }

    void get_remote_ip_and_port(std::string& strAddress, int& iPort) const override
    {
        strAddress = Loopback;
        iPort = KXHost::SocketIo::PeerPort(m_socket);
    }

    void get_local_ip_and_port(std::string& strAddress, int& iPort) const override
    {
        strAddress = Loopback;
        iPort = KXHost::SocketIo::LocalPort(m_socket);
    }

private:
    bool Fill()
    {
        if (!WaitReadable(m_socket, m_bStopping, RequestSeconds))
            return false;
        const auto result = KXHost::SocketIo::Receive(m_socket, m_buffer.data(), m_buffer.size());
        m_uRead = 0;
        m_uFilled = result.uMoved;
        return result.outcome == KXHost::SocketIo::Outcome::Moved;
    }

    const socket_t m_socket;
    const std::atomic<bool>& m_bStopping;
    std::array<char, 4096> m_buffer;
    std::size_t m_uRead = 0;
    std::size_t m_uFilled = 0;
    bool m_bMute = false;
};

} // namespace

namespace KXHost {

SiteServer::SiteServer()
{
    set_address_family(AF_INET);
    set_tcp_nodelay(true);
    set_socket_options(SocketIo::TakePortAlone);
    set_keep_alive_timeout(IdleSeconds);
    set_keep_alive_max_count(RequestsPerConnection);
}

SiteServer::~SiteServer()
{
    Stop();
}

bool SiteServer::Start(int iPort)
{
    const int iBound = iPort == 0 ? bind_to_any_port(Loopback) : (bind_to_port(Loopback, iPort) ? iPort : 0);
    if (iBound <= 0)
        return false;
    m_iPort = iBound;
    SocketIo::LengthenQueue(svr_sock_);
    Rehearse();
    // The library makes its thread pool once it is ready to be stopped.
    std::promise<void> ready;
    new_task_queue = [&ready] {
        ready.set_value();
        return new httplib::ThreadPool(Threads);
    };
    m_listener = std::thread([this] { listen_after_bind(); });
    ready.get_future().wait();
    return true;
}

void SiteServer::Rehearse()
{
    Rehearsal rehearsal;
    bool bClosed = false;
    process_request(rehearsal, true, bClosed, nullptr);
}

void SiteServer::Stop()
{
    if (!m_listener.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(m_stopMutex);
        m_bStopping = true;
    }
    m_stopped.notify_all();
    stop();
    m_listener.join();
}

bool SiteServer::Pause(std::chrono::milliseconds time) const
{
    std::unique_lock<std::mutex> lock(m_stopMutex);
    return !m_stopped.wait_for(lock, time, [this] { return m_bStopping.load(); });
}

void SiteServer::Hang() const
{
    t_pConnection->Mute();
    while (Pause(std::chrono::milliseconds(TickMilliseconds)))
        if (SocketIo::HasPeerLeft(t_pConnection->socket()))
            return;
}

bool SiteServer::process_and_close_socket(socket_t socket)
{
    const bool bServed = SocketIo::MakeNonBlocking(socket) && Serve(socket);
    SocketIo::Close(socket);
    return bServed;
}

bool SiteServer::Serve(socket_t socket)
{
    Connection connection(socket, m_bStopping);
    // A transfer is sent from its beginning to its end: a wish for ranges may be passed over.
    const auto passOverRanges = [](httplib::Request& request) { request.ranges.clear(); };
    for (std::size_t uLeft = keep_alive_max_count_; uLeft > 0; --uLeft) {
        if (!connection.HasUnread() && !WaitReadable(socket, m_bStopping, IdleSeconds))
            return true;
        bool bClosed = false;
        if (!process_request(connection, uLeft == 1, bClosed, passOverRanges))
            return false;
        if (bClosed)
            return true;
    }
    return true;
}

} // namespace KXHost
