// The one place where socket code waits: for one descriptor, one slice at a time. For the .cpp files of the
// sockets.
#pragma once

#include <algorithm>

#include "core/sockets.h"

/// The events of a descriptor that can never be written again.
constexpr short kSocketTrouble = POLLERR | POLLHUP | POLLNVAL;

/// Polls for `events` (POLLIN, POLLOUT). Returns the events that came: 0 when the time ran out, and those of
/// kSocketTrouble unasked.
inline short SocketWait(int fd, short events, unsigned int ms) {
  // poll(2) skips a negative descriptor in silence: the whole slice would pass on a socket that is closed.
  if (fd < 0) return POLLNVAL;
  pollfd entry = {fd, events, 0};
  const int ready = platform::NetPoll(&entry, 1, static_cast<int>(ms));
  return ready < 0 ? static_cast<short>(POLLERR) : entry.revents;
}

/// Takes one slice off a budget of time. False when nothing of it is left.
inline bool SocketTakeSlice(unsigned int& ms) {
  if (ms <= kSocketSliceMs) return false;
  ms -= kSocketSliceMs;
  return true;
}
