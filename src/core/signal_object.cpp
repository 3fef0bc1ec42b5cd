#include "core/signal_object.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <unistd.h>

#include "platform/net.h"

void LSignalObjectRef::Reset() {
  char byte;
  for (;;) {
    const ssize_t result = read(fd, &byte, 1);
    if (result == 1 || (result == -1 && errno == EINTR)) continue;
    return;
  }
}

LSignalObject::LSignalObject() {
  int ends[2];
  if (pipe2(ends, O_NONBLOCK | O_CLOEXEC) != 0) return;
  iReadFd = ends[0];
  iWriteFd = ends[1];
}

LSignalObject::~LSignalObject() {
  if (!IsValid()) return;
  close(iReadFd);
  close(iWriteFd);
}

void LSignalObject::Signal() {
  const char byte = 1;
  // A full pipe is signalled already, so nothing but an interruption is worth another try.
  while (write(iWriteFd, &byte, 1) == -1 && errno == EINTR) {
  }
}

bool LSignalObject::IsSignalled() const {
  pollfd entry = {iReadFd, POLLIN, 0};
  return SignalPoll(&entry, 1, 0) > 0;
}

bool LSignalObjectGroup::Add(LSignalObjectRef signal) {
  if (count >= kCapacity) return false;
  entries[count++] = {signal.fd, POLLIN, 0};
  return true;
}

int SignalPoll(pollfd* entries, size_t count, unsigned int ms) {
  return platform::NetPoll(entries, count, ms > INT_MAX ? -1 : static_cast<int>(ms));
}
