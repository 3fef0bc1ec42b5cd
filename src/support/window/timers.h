// One-shot timers by id, and calls queued for the main thread.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace platform {
struct Timer;
}

/// Gives a window timers by id. TimerSet and TimerReset may be called from any thread; EvTimer comes on the main
/// thread. A timer fires once: EvTimer sets it again if it wants to.
class LTimerHandlerBase {
 public:
  LTimerHandlerBase();
  LTimerHandlerBase(const LTimerHandlerBase&) = delete;
  LTimerHandlerBase& operator=(const LTimerHandlerBase&) = delete;
  virtual ~LTimerHandlerBase();

  virtual void EvTimer(int id) = 0;
  /// Starts the timer, or moves its next firing. A negative id is ignored.
  void TimerSet(int id, unsigned milliseconds);
  /// Cancels and forgets it; an unknown id is ignored.
  void TimerReset(int id);
  void TimerDestroy();
  bool IsTimerSet(int id);

 private:
  struct State;
  std::shared_ptr<State> pState;  ///< Shared with calls on their way to the main thread; they look if it still lives.
};

/// Posts a notification to the main thread. Any thread may call Notify; EvNotify runs on the main thread. A
/// notification under way when the object goes is dropped.
class LThreadQueuedNotify {
 public:
  LThreadQueuedNotify();
  LThreadQueuedNotify(const LThreadQueuedNotify&) = delete;
  LThreadQueuedNotify& operator=(const LThreadQueuedNotify&) = delete;
  virtual ~LThreadQueuedNotify();
  virtual void EvNotify() = 0;
  void Notify();

 private:
  struct State;
  std::shared_ptr<State> pState;
};

/// Takes the numbers that senders post, on the main thread.
class LQueuedNotifyDataHandler {
 public:
  virtual ~LQueuedNotifyDataHandler() = default;
  virtual void EvQueuedNotifyData(intptr_t data) = 0;
};

/// Posts numbers to a handler, in order, each in a turn of the loop. Any thread may post; what is under way when the
/// sender goes is dropped, so the handler outlives the sender.
class LQueuedNotifyDataSender {
 public:
  LQueuedNotifyDataSender();
  LQueuedNotifyDataSender(const LQueuedNotifyDataSender&) = delete;
  LQueuedNotifyDataSender& operator=(const LQueuedNotifyDataSender&) = delete;
  ~LQueuedNotifyDataSender();
  /// Before the first post.
  void SetHandler(LQueuedNotifyDataHandler* handler);
  void Post(intptr_t data);

 private:
  struct State;
  std::shared_ptr<State> pState;
};
