#include "Host/Site/SocketIo.h"

#ifndef _WIN32
#include <poll.h>
#endif

#include <algorithm>
#include <limits>

namespace {

constexpr int QueueLength = 128;

#ifdef _WIN32
using Length = int;
constexpr int SendFlags = 0;

bool IsBusy()
{
    return WSAGetLastError() == WSAEWOULDBLOCK;
}

int Poll(WSAPOLLFD& entry, int iMilliseconds)
{
    return WSAPoll(&entry, 1, iMilliseconds);
}

using PollEntry = WSAPOLLFD;
#else
using Length = std::size_t;
constexpr int SendFlags = MSG_NOSIGNAL;

bool IsBusy()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

int Poll(pollfd& entry, int iMilliseconds)
{
    return poll(&entry, 1, iMilliseconds);
}

using PollEntry = pollfd;
#endif

// The count of bytes is an int on Windows.
Length Clipped(std::size_t uSize)
{
    return static_cast<Length>(std::min<std::size_t>(uSize, std::numeric_limits<int>::max()));
}

bool Wait(socket_t socket, short iEvents, int iMilliseconds)
{
    PollEntry entry{};
    entry.fd = socket;
    entry.events = iEvents;
    return Poll(entry, iMilliseconds) > 0;
}

// `bBusy` must be read right after the call, while the error code stands.
template <class Count>
KXHost::SocketIo::Result ResultOf(Count iCount, bool bBusy)
{
    using KXHost::SocketIo::Outcome;
    if (iCount > 0)
        return {Outcome::Moved, static_cast<std::size_t>(iCount)};
    return {iCount < 0 && bBusy ? Outcome::Again : Outcome::Over, 0};
}

template <class Ask>
int PortBy(Ask ask, socket_t socket)
{
    sockaddr_in address{};
    socklen_t iLength = sizeof(address);
    void* pAddress = &address;
    return ask(socket, static_cast<sockaddr*>(pAddress), &iLength) == 0 ? ntohs(address.sin_port) : -1;
}

} // namespace

namespace KXHost::SocketIo {

void TakePortAlone(socket_t socket)
{
    const int iYes = 1;
    const void* pYes = &iYes;
#ifdef _WIN32
    const int iOption = SO_EXCLUSIVEADDRUSE;
#else
    const int iOption = SO_REUSEADDR;
#endif
    setsockopt(socket, SOL_SOCKET, iOption, static_cast<const char*>(pYes), sizeof(iYes));
}

void LengthenQueue(socket_t socket)
{
    listen(socket, QueueLength);
}

bool MakeNonBlocking(socket_t socket)
{
#ifdef _WIN32
    u_long uYes = 1;
    return ioctlsocket(socket, static_cast<long>(FIONBIO), &uYes) == 0;
#else
    return fcntl(socket, F_SETFL, fcntl(socket, F_GETFL, 0) | O_NONBLOCK) == 0;
#endif
}

bool WaitReadable(socket_t socket, int iMilliseconds)
{
    return Wait(socket, POLLIN, iMilliseconds);
}

bool WaitWritable(socket_t socket, int iMilliseconds)
{
    return Wait(socket, POLLOUT, iMilliseconds);
}

Result Receive(socket_t socket, char* pData, std::size_t uSize)
{
    const auto iCount = recv(socket, pData, Clipped(uSize), 0);
    return ResultOf(iCount, IsBusy());
}

Result Send(socket_t socket, const char* pData, std::size_t uSize)
{
    const auto iCount = send(socket, pData, Clipped(uSize), SendFlags);
    return ResultOf(iCount, IsBusy());
}

bool HasPeerLeft(socket_t socket)
{
    char cNext = 0;
    const auto iCount = recv(socket, &cNext, 1, MSG_PEEK);
    return iCount == 0 || (iCount < 0 && !IsBusy());
}

void Close(socket_t socket)
{
#ifdef _WIN32
    shutdown(socket, SD_BOTH);
    closesocket(socket);
#else
    shutdown(socket, SHUT_RDWR);
    close(socket);
#endif
}

int LocalPort(socket_t socket)
{
    return PortBy(getsockname, socket);
}

int PeerPort(socket_t socket)
{
    return PortBy(getpeername, socket);
}

} // namespace KXHost::SocketIo
