// A background thread that is its own process interface: its stop is a signal object.
//
// Start, the priority and the stop may be used from any thread; the interface's waits are for the body
// itself.
#pragma once

#include <atomic>
#include <mutex>
#include <pthread.h>
#include <sys/types.h>

#include "core/process.h"

/// Derive, give ThreadMain, call Start. The destructor of the most derived class must call StopAndWait first:
/// the body uses the derived object. Controls are not to be touched from the body.
class LThread : public LProcessInterface {
 public:
  /// Asks for the system's real-time scheduling (SCHED_RR).
  static constexpr int kTimeConstraintPriority = 91;
  /// The scale of the other priorities: 20 is niceness 0, a higher number runs sooner, 1 is the nicest.
  static constexpr int kDefaultPriority = 20;

  LThread() = default;
  LThread(const LThread&) = delete;
  LThread& operator=(const LThread&) = delete;
  ~LThread() override;

  /// Starts the body; nothing if it runs already. Returns when the thread has started. A thread that the
  /// system refuses is not reported: the body just never runs.
  void Start(int priority);
  /// Has an effect while the body runs. A priority that the system refuses changes nothing.
  void SetPriority(int priority);
  /// Of the system's id of a thread, 0 for the calling one: 91 for a real-time thread, else its priority; 20
  /// when that cannot be read.
  static int GetPriority(pid_t thread);
  /// Signals stop and waits for the end of the body. Any thread but its own. The thread can be started again.
  void StopAndWait();
  void SignalStop() { soStop.Signal(); }
  /// The system's id of the thread; -1 while there is none.
  pid_t ThreadId() const { return iThreadId; }

  bool IsToStop() override;
  LProcessResult ProcessWait(unsigned int ms) override;
  LProcessResult ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) override;
  /// Adds the stop signal to the group if it has room; the entry stays there.
  LProcessResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) override;

 protected:
  virtual void ThreadMain() = 0;

 private:
  static void* Entry(void* self);

  pthread_t hThread = {};
  bool bHasHandle = false;
  std::atomic<pid_t> iThreadId = -1;  ///< Set by the thread itself before it signals its start.
  int iPriority = 0;
  bool bRunning = false;
  LSignalObject soStop;
  LSignalObject soFinished;
  LSignalObject soStarted;
  std::recursive_mutex mutex;  ///< Guards the handle and the flags.
};
