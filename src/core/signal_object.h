// The one wake-up primitive: a pipe, so that poll and the event loop can wait on it. Signalled means
// readable.
#pragma once

#include <cstddef>
#include <poll.h>

/// The readable end of a signal, by value. Does not own the descriptor.
class LSignalObjectRef {
 public:
  explicit LSignalObjectRef(int descriptor) : fd(descriptor) {}
  /// Takes every byte off the pipe.
  void Reset();
  int fd;  ///< A negative one is never signalled.
};

/// Owns a pipe. Signalling may be done from any thread; a signal stays set until it is reset.
class LSignalObject {
 public:
  LSignalObject();
  LSignalObject(const LSignalObject&) = delete;
  LSignalObject& operator=(const LSignalObject&) = delete;
  ~LSignalObject();

  /// False when the system had no pipe left: such a signal is never set.
  bool IsValid() const { return iReadFd != -1; }
  void Signal();
  void Reset() { Ref().Reset(); }
  [[nodiscard]] bool IsSignalled() const;
  LSignalObjectRef Ref() const { return LSignalObjectRef(iReadFd); }

 private:
  int iReadFd = -1;
  int iWriteFd = -1;
};

/// Up to 256 descriptors to wait for together. Fixed size, no ownership.
class LSignalObjectGroup {
 public:
  static constexpr size_t kCapacity = 256;
  /// False when the group is full.
  bool Add(LSignalObjectRef signal);

  pollfd entries[kCapacity];
  size_t count = 0;
};

/// poll(2) over signals, in milliseconds; from 2147483648 on without a limit. Interruptions do not end it.
int SignalPoll(pollfd* entries, size_t count, unsigned int ms);
