#include "support/window/timers.h"

#include "platform/event_loop.h"

// LTimerHandlerBase

struct LTimerHandlerBase::State {
  std::recursive_mutex mutex;  // Guards the map; timers themselves are touched on the main thread only.
  std::map<int, platform::Timer*> timers;
  LTimerHandlerBase* owner;  // Null once the owner is gone.
};

namespace {

/// Runs `call` now on the main thread, or queues it there.
template <typename Call>
void OnMainThread(Call call) {
  if (platform::IsMainThread()) {
    call();
  } else {
    platform::EventLoopPost(call);
  }
}

}  // namespace

LTimerHandlerBase::LTimerHandlerBase() : pState(std::make_shared<State>()) { pState->owner = this; }

LTimerHandlerBase::~LTimerHandlerBase() {
  TimerDestroy();
  const std::lock_guard lock(pState->mutex);
  pState->owner = nullptr;
}

void LTimerHandlerBase::TimerSet(int id, unsigned milliseconds) {
  if (id < 0) return;
  OnMainThread([state = pState, id, milliseconds] {
    const std::lock_guard lock(state->mutex);
    if (!state->owner) return;
    platform::Timer*& timer = state->timers[id];
    if (!timer) {
      timer = platform::TimerCreate([weak = std::weak_ptr<State>(state), id] {
        const std::shared_ptr<State> alive = weak.lock();
        if (!alive || !alive->owner) return;
        alive->owner->TimerReset(id);
        alive->owner->EvTimer(id);
      });
    }
    platform::TimerArm(timer, milliseconds);
  });
}

void LTimerHandlerBase::TimerReset(int id) {
  OnMainThread([state = pState, id] {
    const std::lock_guard lock(state->mutex);
    const auto found = state->timers.find(id);
    if (found == state->timers.end()) return;
    platform::TimerDestroy(found->second);
    state->timers.erase(found);
  });
}

void LTimerHandlerBase::TimerDestroy() {
  const std::lock_guard lock(pState->mutex);
  for (const auto& [id, timer] : pState->timers) platform::TimerDestroy(timer);
  pState->timers.clear();
}

bool LTimerHandlerBase::IsTimerSet(int id) {
  const std::lock_guard lock(pState->mutex);
  return pState->timers.count(id) != 0;
}

// LThreadQueuedNotify

struct LThreadQueuedNotify::State {
  LThreadQueuedNotify* owner;  // Null once the owner is gone; main thread only.
};

LThreadQueuedNotify::LThreadQueuedNotify() : pState(std::make_shared<State>()) { pState->owner = this; }

LThreadQueuedNotify::~LThreadQueuedNotify() { pState->owner = nullptr; }

void LThreadQueuedNotify::Notify() {
  platform::EventLoopPost([state = pState] {
    if (state->owner) state->owner->EvNotify();
  });
}

// LQueuedNotifyDataSender

struct LQueuedNotifyDataSender::State {
  LQueuedNotifyDataHandler* handler;  // Null before it is set and once the sender is gone; main thread only.
};

LQueuedNotifyDataSender::LQueuedNotifyDataSender() : pState(std::make_shared<State>()) { pState->handler = nullptr; }

LQueuedNotifyDataSender::~LQueuedNotifyDataSender() { pState->handler = nullptr; }

void LQueuedNotifyDataSender::SetHandler(LQueuedNotifyDataHandler* handler) { pState->handler = handler; }

void LQueuedNotifyDataSender::Post(intptr_t data) {
  platform::EventLoopPost([state = pState, data] {
    if (state->handler) state->handler->EvQueuedNotifyData(data);
  });
}
