#include "platform/memory_info.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

TEST(MemoryInfo, GivesFiguresOfThisMachine) {
  const uint64_t machine =
      static_cast<uint64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
  for (const uint64_t figure : {platform::MemoryFreeAndInactive(), platform::MemoryResident()}) {
    EXPECT_GT(figure, 100000u);
    EXPECT_LE(figure, machine);
  }
}

TEST(MemoryInfo, ReadsTheDataLimit) {
  rlimit before;
  ASSERT_EQ(getrlimit(RLIMIT_DATA, &before), 0);
  if (before.rlim_cur != RLIM_INFINITY) GTEST_SKIP() << "this process has a limit of its own";
  uint64_t bytes = 0;
  EXPECT_TRUE(platform::MemoryDataLimit(bytes));
  EXPECT_EQ(bytes, UINT64_MAX);
  // The kernel counts far less than this in any test, so nothing fails below it.
  rlimit lowered = before;
  lowered.rlim_cur = rlim_t{1} << 50;
  ASSERT_EQ(setrlimit(RLIMIT_DATA, &lowered), 0);
  EXPECT_TRUE(platform::MemoryDataLimit(bytes));
  EXPECT_EQ(bytes, uint64_t{1} << 50);
  ASSERT_EQ(setrlimit(RLIMIT_DATA, &before), 0);
}

}  // namespace
