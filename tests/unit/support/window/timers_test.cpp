#include "support/window/timers.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "window_fixture.h"

namespace {

constexpr unsigned kNever = 3600 * 1000;

/// What happened, in an object that outlives the one that is called.
struct Calls {
  std::vector<int> ids;
  bool isOnMainThread = true;
};

class RecordingTimers : public LTimerHandlerBase {
 public:
  explicit RecordingTimers(Calls& record) : calls(record) {}
  void EvTimer(int id) override {
    calls.ids.push_back(id);
    calls.isOnMainThread = calls.isOnMainThread && platform::IsMainThread();
    if (onFire) onFire();
  }

  std::function<void()> onFire;

 private:
  Calls& calls;
};

class RecordingNotify : public LThreadQueuedNotify {
 public:
  explicit RecordingNotify(Calls& record) : calls(record) {}
  ~RecordingNotify() override { wasAlive = 0; }
  void EvNotify() override {
    calls.ids.push_back(wasAlive);
    calls.isOnMainThread = calls.isOnMainThread && platform::IsMainThread();
  }

 private:
  Calls& calls;
  int wasAlive = 1;
};

void OnWorkers(int count, const std::function<void(int)>& work) {
  std::vector<std::thread> workers;
  for (int i = 0; i < count; ++i) workers.emplace_back(work, i);
  for (std::thread& worker : workers) worker.join();
}

class Timers : public WindowFixture {
 protected:
  Calls calls;
};
class MainThreadCalls : public Timers {};

TEST_F(Timers, FireOnceAndInOrder) {
  RecordingTimers timers(calls);
  timers.TimerSet(2, 40);
  timers.TimerSet(1, 1);
  timers.TimerSet(-1, 1);
  EXPECT_TRUE(timers.IsTimerSet(1));
  EXPECT_FALSE(timers.IsTimerSet(-1));
  ASSERT_TRUE(PumpUntil([this] { return calls.ids.size() == 2; }));
  PumpFor(60);
  EXPECT_EQ(calls.ids, (std::vector<int>{1, 2}));
  EXPECT_FALSE(timers.IsTimerSet(1));
}

TEST_F(Timers, AreMovedAndCancelled) {
  RecordingTimers timers(calls);
  timers.TimerSet(1, kNever);
  timers.TimerSet(1, 1);
  timers.TimerSet(2, 5);
  timers.TimerReset(2);
  timers.TimerReset(77);
  timers.TimerSet(4, 1);
  timers.TimerSet(4, kNever);
  ASSERT_TRUE(PumpUntil([this] { return calls.ids.size() == 1; }));
  timers.TimerSet(3, 5);
  timers.TimerDestroy();
  PumpFor(20);
  EXPECT_EQ(calls.ids, std::vector<int>{1});
}

TEST_F(Timers, MayBeSetAgainAndAllCancelledWhileOneFires) {
  RecordingTimers timers(calls);
  timers.onFire = [&] {
    if (calls.ids.size() < 2) timers.TimerSet(7, 1);
  };
  timers.TimerSet(7, 1);
  ASSERT_TRUE(PumpUntil([this] { return calls.ids.size() == 2; }));
  timers.onFire = [&] { timers.TimerDestroy(); };
  timers.TimerSet(1, 5);
  timers.TimerSet(2, 5);
  PumpFor(40);
  EXPECT_EQ(calls.ids.size(), 3u);
}

TEST_F(Timers, ComeToTheMainThreadWhoeverSetsThem) {
  RecordingTimers timers(calls);
  timers.TimerSet(100, kNever);
  std::atomic<bool> isDone = false;
  std::thread workers([&] {
    OnWorkers(4, [&timers](int worker) {
      for (int i = 0; i < 50; ++i) {
        timers.TimerSet(worker, kNever);
        timers.TimerReset(worker);
        (void)timers.IsTimerSet(worker);
      }
      timers.TimerSet(worker, 1);
    });
    timers.TimerReset(100);
    isDone = true;
  });
  EXPECT_TRUE(PumpUntil([&] { return isDone && calls.ids.size() >= 4; }));
  workers.join();
  PumpFor(20);
  std::sort(calls.ids.begin(), calls.ids.end());
  EXPECT_EQ(calls.ids, (std::vector<int>{0, 1, 2, 3}));
  EXPECT_TRUE(calls.isOnMainThread);
  EXPECT_FALSE(timers.IsTimerSet(100));
}

TEST_F(Timers, GoWithTheirOwner) {
  {
    RecordingTimers timers(calls);
    RecordingNotify notify(calls);
    timers.TimerSet(1, 1);
    OnWorkers(4, [&](int worker) {
      timers.TimerSet(10 + worker, 0);
      for (int i = 0; i < 10; ++i) notify.Notify();
    });
  }
  PumpFor(20);
  EXPECT_TRUE(calls.ids.empty());
}

TEST_F(MainThreadCalls, ComeInTheirOrderAndSeeWhatWasDoneBefore) {
  int written = 0;
  std::vector<int> seen;
  std::thread worker([&] {
    for (int i = 1; i <= 100; ++i) {
      platform::EventLoopPost([value = std::make_shared<int>(i), &seen] { seen.push_back(*value); });
    }
    written = 1;
    platform::EventLoopPost([&] { seen.push_back(100 + written); });
  });
  EXPECT_TRUE(PumpUntil([&seen] { return seen.size() == 101; }));
  worker.join();
  for (size_t i = 0; i < seen.size(); ++i) EXPECT_EQ(seen[i], static_cast<int>(i) + 1);
}

TEST_F(MainThreadCalls, ComeOnceForEachNotification) {
  RecordingNotify notify(calls);
  std::thread workers([&notify] {
    OnWorkers(4, [&notify](int) {
      for (int i = 0; i < 100; ++i) notify.Notify();
    });
  });
  EXPECT_TRUE(PumpUntil([this] { return calls.ids.size() >= 400; }));
  workers.join();
  PumpFor(5);
  EXPECT_EQ(calls.ids, std::vector<int>(400, 1));
  EXPECT_TRUE(calls.isOnMainThread);
}

}  // namespace
