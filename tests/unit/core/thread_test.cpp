#include "core/thread.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <sched.h>
#include <unistd.h>

#include "stoppable.h"

namespace {

/// A thread whose body is a function of the test's.
class TestThread : public LThread {
 public:
  explicit TestThread(std::function<void(LThread&)> body) : body_(std::move(body)) {}
  ~TestThread() override { StopAndWait(); }
  int Runs() const { return runs_; }

 protected:
  void ThreadMain() override {
    ++runs_;
    body_(*this);
  }

 private:
  std::function<void(LThread&)> body_;
  std::atomic<int> runs_ = 0;
};

TEST(Thread, RunsItsBodyUnderItsOwnIdAndMayBeStartedAgain) {
  std::atomic<pid_t> seen = -1;
  std::atomic<bool> wasStoppedAtStart = false;
  LSignalObject hasLooked;
  TestThread thread([&](LThread& self) {
    seen = gettid();
    wasStoppedAtStart = self.IsToStop();
    hasLooked.Signal();
    (void)self.ProcessWaitUntilStopped();
  });
  EXPECT_EQ(thread.ThreadId(), -1);
  LProcessInterfaceVoid process;
  for (int run = 1; run <= 2; ++run) {
    thread.Start(LThread::kDefaultPriority);
    const pid_t id = thread.ThreadId();
    thread.Start(LThread::kDefaultPriority);  // It runs already.
    EXPECT_EQ(process.ProcessWaitSignal(hasLooked.Ref(), 10000), LProcessResultOk);
    hasLooked.Reset();
    EXPECT_FALSE(wasStoppedAtStart || thread.IsToStop());
    thread.StopAndWait();
    EXPECT_EQ(seen, id);
    EXPECT_NE(seen, getpid());
    EXPECT_EQ(thread.Runs(), run);
    EXPECT_EQ(thread.ThreadId(), -1);
    EXPECT_EQ(thread.ProcessWait(5000), LProcessResultStopped) << "the stop stays until the next start";
  }
}

TEST(Thread, DestructorWaitsForTheBody) {
  for (int round = 0; round < 50; ++round) {
    std::atomic<bool> hasEnded = false;
    auto thread = std::make_unique<TestThread>([&](LThread& self) {
      (void)self.ProcessWaitUntilStopped();
      hasEnded = true;
    });
    thread->Start(20);
    thread.reset();
    ASSERT_TRUE(hasEnded);
  }
}

TEST(Thread, WaitsTellStopFromSignalFromTime) {
  struct Row {
    const char* name;
    bool isStopped, isSignalled;
    LProcessResult wait, waitSignal;
  };
  const Row rows[] = {
      {"nothing", false, false, LProcessResultOk, LProcessResultFailed},
      {"signal", false, true, LProcessResultOk, LProcessResultOk},
      {"stop", true, false, LProcessResultStopped, LProcessResultStopped},
      {"both", true, true, LProcessResultStopped, LProcessResultStopped},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    TestThread thread([](LThread&) {});
    LSignalObject signal;
    if (row.isStopped) thread.SignalStop();
    if (row.isSignalled) signal.Signal();
    LSignalObjectGroup group;
    ASSERT_TRUE(group.Add(signal.Ref()));
    EXPECT_EQ(thread.ProcessWait(10), row.wait);
    EXPECT_EQ(thread.ProcessWaitSignal(signal.Ref(), 10), row.waitSignal);
    EXPECT_EQ(thread.ProcessWaitSignalObjectGroup(group, 10), row.waitSignal);
    EXPECT_EQ(thread.ProcessWaitSignalObjectGroup(group, 10), row.waitSignal);
    EXPECT_EQ(group.count, 3u) << "Each wait leaves the stop signal in the group";
  }
}

TEST(Thread, PriorityIsTheSystemsOwnOrWhatItLeaves) {
  const int own = LThread::GetPriority(0);
  TestThread thread([](LThread& self) { (void)self.ProcessWaitUntilStopped(); });
  thread.Start(12);
  EXPECT_EQ(LThread::GetPriority(thread.ThreadId()), 12);
  thread.SetPriority(5);
  EXPECT_EQ(LThread::GetPriority(thread.ThreadId()), 5);
  EXPECT_EQ(LThread::GetPriority(0), own) << "The test's own thread is left alone";
  EXPECT_EQ(LThread::GetPriority(2147483647), 20) << "No such thread";
  thread.SetPriority(LThread::kTimeConstraintPriority);
  const bool isGranted = sched_getscheduler(thread.ThreadId()) == SCHED_RR;
  EXPECT_EQ(LThread::GetPriority(thread.ThreadId()) == 91, isGranted);
  thread.SetPriority(20);
  EXPECT_EQ(sched_getscheduler(thread.ThreadId()), SCHED_OTHER);
}

}  // namespace
