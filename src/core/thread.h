// A background thread that is its own process interface: its stop is a signal object.
#pragma once

#include <pthread.h>
#include <sys/types.h>

#include <mutex>

#include "core/process.h"

/// Derive, give ThreadMain, call Start. The destructor of the most derived class must call StopAndWait first:
/// the body uses the derived object. Controls are not to be touched from the body.
class LThread : public LProcessInterface {
 public:
  static constexpr int kTimeConstraintPriority = 91;
  static constexpr int kDefaultPriority = 20;

  LThread() = default;
  ~LThread() override;

  /// Starts the body; nothing if it runs already. Returns when the thread has started.
  void Start(int priority);
  void SetPriority(int priority);
  /// 91 for a time-constraint thread, else the scheduling priority; 20 when that cannot be read.
  static int GetPriority(pthread_t thread);
  /// Signals stop and waits for the end of the body. Any thread but its own.
  void StopAndWait();
  void SignalStop() { soStop.Signal(); }

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
  pid_t iThreadId = -1;  ///< The system's id of the thread; -1 while there is none.
  int iPriority = 0;
  bool bRunning = false;
  LSignalObject soStop;
  LSignalObject soFinished;
  LSignalObject soStarted;
  std::recursive_mutex mutex;  ///< Guards the handle and the flags.
};
