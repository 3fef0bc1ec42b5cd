// The process model: how a long operation reports, waits and is stopped.
//
// Every long operation is a free function `Process...(LProcessInterface&, ...)` that returns an
// LProcessResult and never knows who runs it: a progress dialog, nothing at all, a parent that maps its
// progress into a sub-range. It runs on the main thread; the user interface lives only because `IsToStop`
// and the waits of an interactive interface pump the window system. So a loop under a process calls
// `IsToStop` at least every 200 ms, and no call under it blocks for longer.
//
// Whatever stands behind an interface may run any command of the user's inside `IsToStop` and the waits:
// look again at what was held across them.
#pragma once

#include <cstdarg>

#include "core/signal_object.h"

enum LProcessResult : int {
  LProcessResultOk = 0,       ///< Finished; for a wait: the signal was set, or the time elapsed as asked.
  LProcessResultStopped = 1,  ///< The user or a parent asked to stop, and the operation gave up.
  LProcessResultFailed = 2,   ///< Anything else; for a wait on a signal: the time ran out.
};

constexpr unsigned kWaitForever = 4294967295u;

/// What a long operation may ask of whoever runs it. All times in milliseconds.
class LProcessInterface {
 public:
  virtual ~LProcessInterface() = default;

  /// Has a stop been asked for? On an interactive interface this also pumps the user interface once.
  [[nodiscard]] virtual bool IsToStop() = 0;
  /// 0 when the time has passed, 1 when stopped.
  [[nodiscard]] virtual LProcessResult ProcessWait(unsigned int ms) = 0;
  /// 0 signalled, 1 stopped, 2 timed out; the same for the group.
  [[nodiscard]] virtual LProcessResult ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) = 0;
  [[nodiscard]] virtual LProcessResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) = 0;
  [[nodiscard]] virtual LProcessResult ProcessWaitUntilStopped();
  [[nodiscard]] virtual LProcessResult ProcessWaitSignalForever(LSignalObjectRef signal);
  [[nodiscard]] virtual LProcessResult ProcessWaitSignalObjectGroupForever(LSignalObjectGroup& group);

  /// Reports an error to the user. Never changes the flow: the process decides.
  virtual void SetError(const char* /*text*/) {}
  /// Level 0 is the action line, level 1 the item line.
  virtual void SetStatus(const char* /*text*/, int /*level*/) {}
  /// The fraction done, 0.0 to 1.0.
  virtual void SetProgress(double /*fraction*/) {}
  virtual void SetProgressIndeterminateOn() {}
  virtual void SetProgressIndeterminateOff() {}

  /// Formatted by the C library's rules, cut at 8191 bytes.
  void SetErrorF(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void SetStatusF(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));
};

/// Never stops, shows nothing. For replies that must be read although the user has cancelled, and for quick
/// background queries. Blocks its thread without a pump; on the main thread the windows go on drawing themselves, and
/// no command comes between.
class LProcessInterfaceVoid : public LProcessInterface {
 public:
  bool IsToStop() override;
  LProcessResult ProcessWait(unsigned int ms) override;
  LProcessResult ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) override;
  /// An empty group gives 2 at once.
  LProcessResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) override;
};

/// Stops, waits and errors are the parent's; status and progress go nowhere. The parent outlives it.
class LProcessInterfaceNested : public LProcessInterface {
 public:
  explicit LProcessInterfaceNested(LProcessInterface& parent) : pParent(&parent) {}
  bool IsToStop() override { return pParent->IsToStop(); }
  LProcessResult ProcessWait(unsigned int ms) override { return pParent->ProcessWait(ms); }
  LProcessResult ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) override;
  LProcessResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) override;
  void SetError(const char* text) override { pParent->SetError(text); }

 protected:
  LProcessInterface* pParent;
};

/// A part of the parent's work: progress `p` is the parent's `p * scale + base`, and each status sinks one
/// line.
class LProcessInterfaceSubProcess : public LProcessInterfaceNested {
 public:
  LProcessInterfaceSubProcess(LProcessInterface& parent, double base, double scale)
      : LProcessInterfaceNested(parent), dBase(base), dScale(scale) {}
  void SetStatus(const char* text, int level) override { pParent->SetStatus(text, level + 1); }
  void SetProgress(double fraction) override { pParent->SetProgress(fraction * dScale + dBase); }

 private:
  double dBase;
  double dScale;
};

/// The same for a recursion over folders: the status line stays where it is at every depth.
class LProcessInterfaceRecursiveSubProcess : public LProcessInterfaceSubProcess {
 public:
  using LProcessInterfaceSubProcess::LProcessInterfaceSubProcess;
  void SetStatus(const char* text, int level) override { pParent->SetStatus(text, level); }
};

/// One item of a list: the list owns the action line, the item the item line. Made anew for each item.
class ChildInterface : public LProcessInterface {
 public:
  ChildInterface(LProcessInterface& parent, int total, int index) : pParent(&parent), iTotal(total), iIndex(index) {}
  /// The parent's answer, or else the own flag.
  bool IsToStop() override { return pParent->IsToStop() || bStop; }
  LProcessResult ProcessWait(unsigned int ms) override { return pParent->ProcessWait(ms); }
  LProcessResult ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) override;
  LProcessResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) override;
  void SetStatus(const char* text, int level) override;
  void SetProgress(double fraction) override;

  bool bStop = false;  ///< Set from outside when the machine goes to sleep.

 private:
  LProcessInterface* pParent;
  int iTotal;
  int iIndex;
};
