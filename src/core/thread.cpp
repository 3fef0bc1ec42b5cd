#include "core/thread.h"

#include <algorithm>
#include <cerrno>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// The system knows a niceness from -20 (soonest) to 19.
constexpr int kNicenessBest = -20;
constexpr int kNicenessWorst = 19;

/// Whether the thread is scheduled by a real-time policy now.
bool IsRealTime(pid_t thread) {
  const int policy = sched_getscheduler(thread);
  return policy == SCHED_RR || policy == SCHED_FIFO;
}

bool SetRealTime(pid_t thread) {
  // The lowest real-time priority runs before every ordinary thread, and steals no more than that needs.
  sched_param parameter = {};
  parameter.sched_priority = sched_get_priority_min(SCHED_RR);
  return sched_setscheduler(thread, SCHED_RR, &parameter) == 0;
}

/// Raising a priority needs a right that a desktop user seldom has; the thread then runs as it did.
void SetNormal(pid_t thread, int priority) {
  const sched_param parameter = {};
  if (IsRealTime(thread)) (void)sched_setscheduler(thread, SCHED_OTHER, &parameter);
  const int niceness = std::clamp(LThread::kDefaultPriority - priority, kNicenessBest, kNicenessWorst);
  (void)setpriority(PRIO_PROCESS, static_cast<id_t>(thread), niceness);
}

}  // namespace

LThread::~LThread() { StopAndWait(); }

void LThread::Start(int priority) {
  {
    const std::lock_guard lock(mutex);
    // A body that has ended took its handle away with it, so there is never an ended thread to join.
    if (bHasHandle) return;
    // Without its pipes a thread could be neither awaited nor stopped.
    if (!soStop.IsValid() || !soFinished.IsValid() || !soStarted.IsValid()) return;
    soStop.Reset();
    soFinished.Reset();
    soStarted.Reset();
    bRunning = true;
    iPriority = priority;
    bHasHandle = pthread_create(&hThread, nullptr, &Entry, this) == 0;
    if (bHasHandle) {
      pollfd started = {soStarted.Ref().fd, POLLIN, 0};
      SignalPoll(&started, 1, kWaitForever);
    }
  }
  SetPriority(priority);
}

void* LThread::Entry(void* self) {
  LThread& thread = *static_cast<LThread*>(self);
  thread.iThreadId = gettid();
  thread.soStarted.Signal();
  thread.ThreadMain();
  // Whoever waits for the end takes the mutex once more before the object goes, so it is safe to let go of it
  // here.
  const std::lock_guard lock(thread.mutex);
  pthread_detach(thread.hThread);
  thread.bHasHandle = false;
  thread.bRunning = false;
  thread.iThreadId = -1;
  thread.soFinished.Signal();
  return nullptr;
}

void LThread::StopAndWait() {
  soStop.Signal();
  if (!soStarted.IsSignalled()) return;
  pollfd finished = {soFinished.Ref().fd, POLLIN, 0};
  SignalPoll(&finished, 1, kWaitForever);
  const std::lock_guard lock(mutex);
}

void LThread::SetPriority(int priority) {
  // Under the mutex the thread cannot end, so the id is its own and not that of a later one.
  const std::lock_guard lock(mutex);
  if (iThreadId == -1) return;
  if (priority == kTimeConstraintPriority && SetRealTime(iThreadId)) return;
  SetNormal(iThreadId, priority);
}

int LThread::GetPriority(pid_t thread) {
  if (IsRealTime(thread)) return kTimeConstraintPriority;
  errno = 0;
  const int niceness = getpriority(PRIO_PROCESS, static_cast<id_t>(thread));
  return errno == 0 ? kDefaultPriority - niceness : kDefaultPriority;
}

bool LThread::IsToStop() { return soStop.IsSignalled(); }

LProcessResult LThread::ProcessWait(unsigned int ms) {
  pollfd stop = {soStop.Ref().fd, POLLIN, 0};
  return SignalPoll(&stop, 1, ms) > 0 ? LProcessResultStopped : LProcessResultOk;
}

LProcessResult LThread::ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) {
  pollfd entries[] = {{soStop.Ref().fd, POLLIN, 0}, {signal.fd, POLLIN, 0}};
  if (SignalPoll(entries, 2, ms) <= 0) return LProcessResultFailed;
  return entries[0].revents ? LProcessResultStopped : LProcessResultOk;
}

LProcessResult LThread::ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) {
  // A full group is waited for without the stop signal; its last entry is then read as the stop all the same.
  (void)group.Add(soStop.Ref());
  if (SignalPoll(group.entries, group.count, ms) <= 0) return LProcessResultFailed;
  return group.entries[group.count - 1].revents ? LProcessResultStopped : LProcessResultOk;
}
