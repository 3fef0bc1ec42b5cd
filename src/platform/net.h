// The system calls on sockets, one thin function each; called from core/ and the data connection only.
// Any thread.
//
// Results and errno are those of the system call behind each: -1 with errno set on failure. Every socket is
// an IPv4 stream, non-blocking, close-on-exec, and a write to a closed one gives EPIPE and no signal. A test
// that simulates a network links its own definitions of these.
#pragma once

#include <cstddef>
#include <cstdint>
#include <poll.h>
#include <sys/types.h>

namespace platform {

int NetOpen();
/// Sets the kernel's buffers in bytes; 0 leaves one as it is.
void NetSetBuffers(int fd, int sendBytes, int receiveBytes);
/// `address` and `port` in network order. 0 connected at once; -1 with EINPROGRESS: poll for writing.
int NetConnect(int fd, uint32_t address, uint16_t port);
/// The error of a connect that was in progress, taken off the socket; 0 connected.
int NetConnectError(int fd);
ssize_t NetSend(int fd, const void* data, size_t size);
ssize_t NetReceive(int fd, void* data, size_t size);
/// Reads without taking off the socket.
ssize_t NetPeek(int fd, void* data, size_t size);
/// Bytes that can be read now; 0 also for an error or a closed peer.
size_t NetBytesReady(int fd);
/// Acknowledges at once what has come, where the kernel would put that off. No stream of the net: nothing happens.
void NetAcknowledge(int fd);
/// poll(2), but over interruptions. `ms` -1 waits without a limit.
int NetPoll(pollfd* entries, size_t count, int ms);
/// Ends the sending side only.
void NetShutdownSend(int fd);
void NetClose(int fd);

constexpr size_t kNetMaxAddresses = 4;
/// IPv4 addresses of a host name, network order, in the resolver's order; returns how many (0 to 4). Blocks.
size_t NetResolve(const char* host, uint32_t (&addresses)[kNetMaxAddresses]);

}  // namespace platform
