// The guarded allocator on a machine whose memory the test sets: the figures of the platform are defined
// here.
#include "support/memory.h"

#include <gtest/gtest.h>
#include <memory>

#include "platform/memory_info.h"
#include "support/containers.h"

namespace {

constexpr uint64_t kPlenty = uint64_t{1} << 40;

struct Machine {
  uint64_t available = kPlenty;
  uint64_t resident = 0;
  uint64_t limit = UINT64_MAX;
  bool hasLimit = true;
  int questions = 0;
};

Machine gMachine;

/// A machine for one test; plenty for every other.
class Memory : public testing::Test {
 protected:
  ~Memory() override { gMachine = Machine(); }
};

bool IsGranted(size_t size) { return std::unique_ptr<unsigned char[]>(LMemoryLargeArrayNew(size)) != nullptr; }

}  // namespace

namespace platform {
uint64_t MemoryFreeAndInactive() {
  ++gMachine.questions;
  return gMachine.available;
}
uint64_t MemoryResident() { return gMachine.resident; }
bool MemoryDataLimit(uint64_t& bytes) {
  if (gMachine.hasLimit) bytes = gMachine.limit;
  return gMachine.hasLimit;
}
}  // namespace platform

namespace {

TEST_F(Memory, FreeHeapIsTheLesserOfLimitAndMachine) {
  struct {
    const char* name;
    Machine machine;
    uint64_t free;
  } rows[] = {
      {"the machine", {.available = 700, .resident = 10, .limit = 1000}, 700},
      {"the limit less what is in use", {.available = 700, .resident = 400, .limit = 1000}, 600},
      {"more in use than the limit allows", {.available = 700, .resident = 1001, .limit = 1000}, 0},
      {"no limit", {.available = 700, .resident = 400}, 700},
      {"a kernel that cannot tell", {.available = 0}, 0},
      {"a limit that cannot be read", {.available = 700, .hasLimit = false}, UINT64_MAX},
  };
  for (const auto& row : rows) {
    gMachine = row.machine;
    EXPECT_EQ(LMemoryGetFreeHeapSize(), row.free) << row.name;
  }
}

TEST_F(Memory, AsksForTheFreeHeapAboveOneMillionBytesOnly) {
  gMachine.available = 0;
  EXPECT_TRUE(IsGranted(1000000));
  EXPECT_EQ(gMachine.questions, 0);
  EXPECT_FALSE(IsGranted(1000001));
  EXPECT_EQ(gMachine.questions, 1);
  gMachine.available = 2 * 1000001;
  EXPECT_TRUE(IsGranted(1000001));
  EXPECT_FALSE(IsGranted(1000002)) << "more than half";
}

TEST_F(Memory, ARefusedBlockIsEmpty) {
  LSizedArray<unsigned char> block;
  block.SetArrayCapacityLarge(5);
  LVector<unsigned char> bytes;
  bytes.SetSizeLarge(10);
  ASSERT_EQ(block.size + bytes.size, 15u);
  gMachine.available = 0;
  block.SetArrayCapacityLarge(1000001);
  EXPECT_EQ(block.data, nullptr);
  EXPECT_EQ(block.size, 0u);
  bytes.SetSizeLarge(1000001);
  EXPECT_EQ(bytes.data, nullptr);
  EXPECT_EQ(bytes.size + bytes.capacity, 0u);
}

}  // namespace
