// The one wake-up primitive: a pipe, so that poll and the event loop can wait on it. Signalled means readable.
#pragma once

#include <poll.h>

#include <cstddef>

/// The readable end of a signal, by value. Does not own the descriptor.
class LSignalObjectRef {
 public:
  explicit LSignalObjectRef(int descriptor) : fd(descriptor) {}
  /// Takes every byte off the pipe.
  void Reset();
  int fd;
};

/// Owns a pipe. Signalling may be done from any thread; a signal stays set until it is reset.
class LSignalObject {
 public:
  LSignalObject();
  LSignalObject(const LSignalObject&) = delete;
  LSignalObject& operator=(const LSignalObject&) = delete;
  ~LSignalObject();

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
