// The one place where socket code waits: for one descriptor, one slice at a time. For the .cpp files of the
// sockets.
#pragma once

#include <algorithm>

#include "core/sockets.h"

/// Polls for `events` (POLLIN, POLLOUT). Returns the events that came: 0 when the time ran out, and POLLERR,
/// POLLHUP or POLLNVAL besides for a descriptor in trouble.
inline short SocketWait(int fd, short events, unsigned int ms) {
  pollfd entry = {fd, events, 0};
  const int ready = platform::NetPoll(&entry, 1, static_cast<int>(ms));
  if (ready < 0) return POLLERR;
  // poll(2) skips a negative descriptor in silence, and the whole slice would pass on a socket that is
  // closed.
  return fd < 0 ? POLLNVAL : entry.revents;
}

/// Waits a slice for room to write. False when the descriptor cannot be written any more.
inline bool SocketWaitForRoom(int fd, unsigned int ms) {
  return (SocketWait(fd, POLLOUT, ms) & (POLLERR | POLLHUP | POLLNVAL)) == 0;
}

/// Takes one slice off a budget of time. False when nothing of it is left.
inline bool SocketTakeSlice(unsigned int& ms) {
  if (ms <= kSocketSliceMs) return false;
  ms -= kSocketSliceMs;
  return true;
}
