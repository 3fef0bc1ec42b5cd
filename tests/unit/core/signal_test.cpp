#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <thread>

#include "core/process.h"
#include "core/signal_object.h"
#include "stoppable.h"

namespace {

TEST(Signal, StaysSetUntilItIsReset) {
  LSignalObject signal;
  EXPECT_FALSE(signal.IsSignalled());
  for (int i = 0; i < 70000; ++i) signal.Signal();  // A full pipe does not block.
  EXPECT_TRUE(signal.IsSignalled());
  EXPECT_TRUE(signal.IsSignalled());
  signal.Ref().Reset();
  EXPECT_FALSE(signal.IsSignalled());
  signal.Signal();
  EXPECT_TRUE(signal.IsSignalled());
  EXPECT_TRUE(fcntl(signal.Ref().fd, F_GETFD) & FD_CLOEXEC) << "not inherited by another program";
}

TEST(SignalGroup, HoldsTwoHundredFiftySix) {
  LSignalObject signal;
  LSignalObjectGroup group;
  for (size_t i = 0; i < LSignalObjectGroup::kCapacity; ++i) EXPECT_TRUE(group.Add(signal.Ref()));
  EXPECT_FALSE(group.Add(signal.Ref()));
  EXPECT_EQ(group.count, 256u);
}

void DoNothing(int) {}

TEST(SignalPoll, SystemSignalsDoNotEndAWait) {
  struct sigaction action = {};
  action.sa_handler = &DoNothing;
  struct sigaction before = {};
  sigaction(SIGUSR1, &action, &before);
  LSignalObject signal;
  const pthread_t waiting = pthread_self();
  std::thread other([&] {
    for (int i = 0; i < 5; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      pthread_kill(waiting, SIGUSR1);
    }
  });
  LProcessInterfaceVoid process;
  const Stopwatch watch;
  EXPECT_EQ(process.ProcessWaitSignal(signal.Ref(), 120), LProcessResultFailed);
  EXPECT_GE(watch.Ms(), 119);
  const Stopwatch sleep;
  EXPECT_EQ(process.ProcessWait(30), LProcessResultOk);
  EXPECT_GE(sleep.Ms(), 29);
  other.join();
  sigaction(SIGUSR1, &before, nullptr);
}

}  // namespace
