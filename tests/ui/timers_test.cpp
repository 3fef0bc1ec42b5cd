// One-shot timers by id, and calls posted to the main thread.
#include "support/window/timers.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <thread>
#include <vector>

#include "core/process.h"
#include "platform/event_loop.h"
#include "ui/window_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Clocks : LTimerHandlerBase {
  void EvTimer(int id) override {
    fired.push_back(id);
    if (again == id) {
      again = -1;
      TimerSet(id, 10);
    }
    if (removeOnFire) TimerDestroy();
  }
  std::vector<int> fired;
  int again = -1;
  bool removeOnFire = false;
};

TEST(Timers, FireOnceInTheOrderOfTheirTimes) {
  Clocks clocks;
  clocks.TimerSet(1, 60);
  clocks.TimerSet(2, 20);
  EXPECT_TRUE(clocks.IsTimerSet(1));
  ui::Pump(150);
  EXPECT_THAT(clocks.fired, ElementsAre(2, 1));
  EXPECT_FALSE(clocks.IsTimerSet(1));
}

TEST(Timers, SetTwiceMovesTheFiring) {
  Clocks clocks;
  clocks.TimerSet(1, 20);
  clocks.TimerSet(1, 120);
  ui::Pump(70);
  EXPECT_THAT(clocks.fired, IsEmpty());
  ui::Pump(120);
  EXPECT_THAT(clocks.fired, ElementsAre(1));
}

TEST(Timers, MayBeSetAgainWhileTheyFire) {
  Clocks clocks;
  clocks.again = 7;
  clocks.TimerSet(7, 5);
  EXPECT_TRUE(ui::WaitUntil([&] { return clocks.fired.size() == 2; }, 1000));
  ui::Pump(40);
  EXPECT_THAT(clocks.fired, ElementsAre(7, 7));
}

TEST(Timers, ResetAndDestroyCancel) {
  Clocks clocks;
  for (int id = 1; id <= 3; ++id) clocks.TimerSet(id, 20);
  clocks.TimerReset(2);
  clocks.TimerReset(99);
  clocks.TimerReset(-1);
  clocks.TimerSet(-5, 1);
  ui::Pump(80);
  EXPECT_THAT(clocks.fired, testing::UnorderedElementsAre(1, 3));
  clocks.TimerSet(4, 20);
  clocks.TimerDestroy();
  ui::Pump(60);
  EXPECT_THAT(clocks.fired, testing::UnorderedElementsAre(1, 3));
}

TEST(Timers, AHandlerMayCancelAllFromItsOwnFiring) {
  Clocks clocks;
  clocks.removeOnFire = true;
  clocks.TimerSet(1, 5);
  clocks.TimerSet(2, 5);
  ui::Pump(60);
  EXPECT_EQ(clocks.fired.size(), 1u);
}

TEST(Timers, AHandlerThatIsGoneIsNotCalled) {
  {
    Clocks clocks;
    clocks.TimerSet(1, 5);
  }
  ui::Pump(40);
}

TEST(Timers, MayBeSetFromAnotherThread) {
  Clocks clocks;
  std::thread([&] {
    clocks.TimerSet(1, 10);
    clocks.TimerSet(2, 10);
    clocks.TimerReset(2);
  }).join();
  EXPECT_TRUE(ui::WaitUntil([&] { return !clocks.fired.empty(); }, 1000));
  ui::Pump(40);
  EXPECT_THAT(clocks.fired, ElementsAre(1));
}

struct Notified : LThreadQueuedNotify {
  void EvNotify() override {
    ++count;
    onMainThread = platform::IsMainThread();
  }
  int count = 0;
  bool onMainThread = false;
};

TEST(Timers, ANotificationArrivesOnTheMainThreadUnlessItsObjectIsGone) {
  Notified kept;
  auto gone = std::make_unique<Notified>();
  std::thread([&] {
    kept.Notify();
    gone->Notify();
  }).join();
  EXPECT_EQ(kept.count, 0);
  gone.reset();
  EXPECT_TRUE(ui::WaitUntil([&] { return kept.count == 1; }, 1000));
  EXPECT_TRUE(kept.onMainThread);
}

TEST(Timers, AQuietWaitDrawsAndDoesNothingElse) {
  struct Field : QLineEdit {
    void paintEvent(QPaintEvent* event) override {
      QLineEdit::paintEvent(event);
      ++drawn;
    }
    int drawn = 0;
  } field;
  field.show();
  ASSERT_TRUE(ui::WaitUntil([&] { return field.isActiveWindow() && field.drawn > 0; }));
  Clocks clocks;
  clocks.TimerSet(1, 0);
  bool posted = false;
  platform::EventLoopPost([&] { posted = true; });
  field.update();
  field.drawn = 0;
  LProcessInterfaceVoid quiet;
  EXPECT_EQ(quiet.ProcessWait(150), LProcessResultOk);
  EXPECT_GT(field.drawn, 0);
  EXPECT_THAT(clocks.fired, IsEmpty());
  EXPECT_FALSE(posted);
  ui::Pump(50);
  EXPECT_THAT(clocks.fired, ElementsAre(1));
  EXPECT_TRUE(posted) << "nothing is lost";
}

}  // namespace
