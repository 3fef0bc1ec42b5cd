#include "platform/event_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>
#include <deque>
#include <memory>
#include <mutex>
#include <poll.h>
#include <vector>

namespace platform {

unsigned gEventLoopOftenUs = 1000;

namespace {

bool AnyReadable(const int* descriptors, size_t count) {
  std::vector<pollfd> entries;
  for (size_t i = 0; i < count; ++i) entries.push_back({descriptors[i], POLLIN, 0});
  return count != 0 && poll(entries.data(), entries.size(), 0) > 0;
}

}  // namespace

bool EventLoopWait(const int* descriptors, size_t count, unsigned ms) {
  if (AnyReadable(descriptors, count)) return true;
  bool timedOut = false;
  QTimer timer;
  timer.setSingleShot(true);
  QObject::connect(&timer, &QTimer::timeout, [&] { timedOut = true; });
  constexpr unsigned kLongest = 0x7FFFFFFF;
  timer.start(static_cast<int>(ms < kLongest ? ms : kLongest));
  std::vector<std::unique_ptr<QSocketNotifier>> watched;
  for (size_t i = 0; i < count; ++i) {
    watched.push_back(std::make_unique<QSocketNotifier>(descriptors[i], QSocketNotifier::Read));
    QObject::connect(watched.back().get(), &QSocketNotifier::activated, [one = watched.back().get()] {
      one->setEnabled(false);  // It says so again and again until somebody reads.
    });
  }
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  return !timedOut;
}

namespace {

/// Calls on their way to the main thread. They lie here rather than in the library's events, so that they go
/// from thread to thread under a lock that ThreadSanitizer knows.
struct PostedCalls {
  std::mutex mutex;
  std::deque<std::function<void()>> calls;
};

bool isDrawing = false;  ///< In EventLoopDraw. Main thread.
int heldOff = 0;         ///< Posted calls whose turn came meanwhile.

/// Never destroyed: threads may post while the process ends.
PostedCalls& Posted() {
  static auto& posted = *new PostedCalls;
  return posted;
}

bool HavePosted() {
  PostedCalls& posted = Posted();
  const std::lock_guard lock(posted.mutex);
  return !posted.calls.empty();
}

void RunNextPosted() {
  if (isDrawing) {
    ++heldOff;
    return;
  }
  std::function<void()> call;
  {
    PostedCalls& posted = Posted();
    const std::lock_guard lock(posted.mutex);
    call = std::move(posted.calls.front());
    posted.calls.pop_front();
  }
  call();
}

void QueueNextPosted() {
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [] { RunNextPosted(); }, Qt::QueuedConnection);
}

QElapsedTimer& SinceLastTurn() {
  static QElapsedTimer clock;
  return clock;
}

bool isTurnDue = false;  ///< EventLoopPumpOften leaves the turn to its next call. Main thread.

}  // namespace

void EventLoopPump() {
  isTurnDue = false;
  QCoreApplication::processEvents();
  SinceLastTurn().start();
}

void EventLoopPumpOften() {
  const QElapsedTimer& clock = SinceLastTurn();
  const qint64 often = gEventLoopOftenUs;
  const qint64 us = clock.isValid() ? clock.nsecsElapsed() / 1000 : 2 * often;
  // The time has mostly passed in a wait for the peer, and behind it comes the next command. Once that is sent, a turn
  // costs nothing: the peer works meanwhile. So the turn that is due waits for the next question.
  const bool isTime = us >= 2 * often || (us >= often && isTurnDue);
  isTurnDue = us >= often;
  if (isTime || HavePosted()) EventLoopPump();
}

void EventLoopDraw() {
  if (!QCoreApplication::instance() || !IsMainThread() || isDrawing) return;
  QElapsedTimer& clock = SinceLastTurn();
  if (clock.isValid() && clock.elapsed() < kEventLoopDrawMs) return;
  isDrawing = true;
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers |
                                  QEventLoop::X11ExcludeTimers);
  isDrawing = false;
  for (; heldOff > 0; --heldOff) QueueNextPosted();
  clock.start();
}

bool EventLoopIsDrawing() { return isDrawing; }

void EventLoopPost(std::function<void()> call) {
  QCoreApplication* application = QCoreApplication::instance();
  if (!application) return;
  {
    PostedCalls& posted = Posted();
    const std::lock_guard lock(posted.mutex);
    posted.calls.push_back(std::move(call));
  }
  QueueNextPosted();
}

bool IsMainThread() {
  const QCoreApplication* application = QCoreApplication::instance();
  return !application || application->thread() == QThread::currentThread();
}

struct Timer {
  QTimer timer;
};

Timer* TimerCreate(std::function<void()> call) {
  auto* made = new Timer;
  made->timer.setSingleShot(true);
  QObject::connect(&made->timer, &QTimer::timeout, &made->timer, std::move(call));
  return made;
}

void TimerArm(Timer* timer, unsigned ms) { timer->timer.start(static_cast<int>(ms)); }

void TimerDestroy(Timer* timer) {
  if (!timer) return;
  timer->timer.stop();
  // It may be the timer whose call is on the stack.
  EventLoopPost([timer] { delete timer; });
}

}  // namespace platform
