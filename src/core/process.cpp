#include "core/process.h"

#include <cstdio>

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "support/text.h"

namespace {

constexpr size_t kMessageSize = 8192;

}  // namespace

// LProcessInterface

LProcessResult LProcessInterface::ProcessWaitUntilStopped() { return ProcessWait(kWaitForever); }

LProcessResult LProcessInterface::ProcessWaitSignalForever(LSignalObjectRef signal) {
  return ProcessWaitSignal(signal, kWaitForever);
}

LProcessResult LProcessInterface::ProcessWaitSignalObjectGroupForever(LSignalObjectGroup& group) {
  return ProcessWaitSignalObjectGroup(group, kWaitForever);
}

void LProcessInterface::SetErrorF(const char* format, ...) {
  char text[kMessageSize];
  va_list arguments;
  va_start(arguments, format);
  TextFormatBounded(text, sizeof text, format, arguments);
  va_end(arguments);
  SetError(text);
}

void LProcessInterface::SetStatusF(int level, const char* format, ...) {
  char text[kMessageSize];
  va_list arguments;
  va_start(arguments, format);
  TextFormatBounded(text, sizeof text, format, arguments);
  va_end(arguments);
  SetStatus(text, level);
}

// LProcessInterfaceVoid

namespace {

/// The wait in slices, between which the windows draw themselves. `wait` takes milliseconds and is true when it is
/// over.
template <typename Wait>
bool WaitInSlices(unsigned ms, Wait wait) {
  for (;;) {
    const unsigned slice = ms < platform::kEventLoopDrawMs ? ms : platform::kEventLoopDrawMs;
    if (wait(slice)) return true;
    if (ms != kWaitForever) ms -= slice;
    if (ms == 0) return false;
    platform::EventLoopDraw();
  }
}

}  // namespace

bool LProcessInterfaceVoid::IsToStop() {
  platform::EventLoopDraw();
  return false;
}

LProcessResult LProcessInterfaceVoid::ProcessWait(unsigned int ms) {
  WaitInSlices(ms, [](unsigned slice) {
    platform::ClockSleepMs(slice);
    return false;
  });
  return LProcessResultOk;
}

LProcessResult LProcessInterfaceVoid::ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) {
  pollfd entry = {signal.fd, POLLIN, 0};
  const bool isOver = WaitInSlices(ms, [&](unsigned slice) { return SignalPoll(&entry, 1, slice) > 0; });
  return isOver && (entry.revents & POLLIN) ? LProcessResultOk : LProcessResultFailed;
}

LProcessResult LProcessInterfaceVoid::ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) {
  if (group.count == 0) return LProcessResultFailed;
  const bool isSet =
      WaitInSlices(ms, [&](unsigned slice) { return SignalPoll(group.entries, group.count, slice) > 0; });
  return isSet ? LProcessResultOk : LProcessResultFailed;
}

// LProcessInterfaceNested

LProcessResult LProcessInterfaceNested::ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) {
  return pParent->ProcessWaitSignal(signal, ms);
}

LProcessResult LProcessInterfaceNested::ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) {
  return pParent->ProcessWaitSignalObjectGroup(group, ms);
}

// ChildInterface

LProcessResult ChildInterface::ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) {
  return pParent->ProcessWaitSignal(signal, ms);
}

LProcessResult ChildInterface::ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) {
  return pParent->ProcessWaitSignalObjectGroup(group, ms);
}

void ChildInterface::SetStatus(const char* text, int level) {
  if (level > 0) pParent->SetStatus(text, level);
}

void ChildInterface::SetProgress(double fraction) {
  pParent->SetProgress((static_cast<double>(iIndex) + fraction) / static_cast<double>(iTotal));
}
