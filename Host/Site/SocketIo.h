#pragma once

#include <httplib.h>

#include <cstddef>

// The few socket operations whose names differ between platforms.
namespace KXHost::SocketIo {

enum class Outcome {
    Moved, // some bytes went
    Again, // none could go now
    Over,  // the connection has ended
};

struct Result
{
    Outcome outcome = Outcome::Over;
    std::size_t uMoved = 0;
};

// For the listening socket, before it is bound: a port in use must be told, and one just left must be free.
void TakePortAlone(socket_t socket);
// For the bound listening socket: the library's own queue of five is too short for a burst of clients.
void LengthenQueue(socket_t socket);
bool MakeNonBlocking(socket_t socket);

// True when the socket can be read or written, or has failed, within the time.
bool WaitReadable(socket_t socket, int iMilliseconds);
bool WaitWritable(socket_t socket, int iMilliseconds);
Result Receive(socket_t socket, char* pData, std::size_t uSize);
Result Send(socket_t socket, const char* pData, std::size_t uSize);
// The other side has closed its end. For a socket without unread data.
bool HasPeerLeft(socket_t socket);
// Ends both directions in order, then closes.
void Close(socket_t socket);

int LocalPort(socket_t socket);
int PeerPort(socket_t socket);

} // namespace KXHost::SocketIo
