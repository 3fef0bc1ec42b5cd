// The bound of a whole reply. Each line of a reply has a time-out of its own, so a server that sends one line after
// another, or one without an end, would hold its reader for ever: also one that cannot be stopped. Main thread.
#pragma once

#include "core/process.h"
#include "platform/clock.h"

/// Stands between a process and the reading of one reply: it asks for a stop when the time is up.
class FtpReplyLimit : public LProcessInterfaceNested {
 public:
  /// From now on, `ms` milliseconds. The parent outlives it.
  FtpReplyLimit(LProcessInterface& parent, unsigned int ms)
      : LProcessInterfaceNested(parent), iEnd(platform::ClockMonotonicMs() + ms) {}

  /// What all lines of a reply may take when each of them may take `lineMs`: long greetings do come slowly.
  static constexpr unsigned int WholeReplyMs(unsigned int lineMs) { return 3 * lineMs; }

  bool IsToStop() override {
    if (pParent->IsToStop()) return true;
    bOver = platform::ClockMonotonicMs() > iEnd;
    return bOver;
  }
  /// Between two lines: those that have been decrypted already are read without a question. 0 to go on.
  [[nodiscard]] LProcessResult AskAgain() { return Judge(IsToStop() ? LProcessResultStopped : LProcessResultOk); }
  /// A stop that nobody but the limit asked for is a failure.
  LProcessResult Judge(LProcessResult result) const {
    return result == LProcessResultStopped && bOver ? LProcessResultFailed : result;
  }

 private:
  int64_t iEnd;
  bool bOver = false;
};
