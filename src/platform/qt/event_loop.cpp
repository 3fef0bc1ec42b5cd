#include "platform/event_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>
#include <memory>
#include <poll.h>
#include <vector>

namespace platform {

void EventLoopPump() { QCoreApplication::processEvents(); }

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

void EventLoopPost(std::function<void()> call) {
  if (QCoreApplication* application = QCoreApplication::instance()) {
    QMetaObject::invokeMethod(application, std::move(call), Qt::QueuedConnection);
  }
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
