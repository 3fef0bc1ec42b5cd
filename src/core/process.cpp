#include "core/process.h"

#include <cstdio>

#include "platform/clock.h"
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

LProcessResult LProcessInterfaceVoid::ProcessWait(unsigned int ms) {
  platform::ClockSleepMs(ms);
  return LProcessResultOk;
}

LProcessResult LProcessInterfaceVoid::ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) {
  pollfd entry = {signal.fd, POLLIN, 0};
  const bool isReadable = SignalPoll(&entry, 1, ms) > 0 && (entry.revents & POLLIN);
  return isReadable ? LProcessResultOk : LProcessResultFailed;
}

LProcessResult LProcessInterfaceVoid::ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) {
  if (group.count == 0) return LProcessResultFailed;
  return SignalPoll(group.entries, group.count, ms) > 0 ? LProcessResultOk : LProcessResultFailed;
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
