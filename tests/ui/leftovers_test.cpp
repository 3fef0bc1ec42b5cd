// What a thousand transfers leave behind in the program: no descriptor, no window object and next to no memory.
#include <QApplication>
#include <QPixmapCache>
#include <QWidget>
#include <malloc.h>

#include "ui/transfer_fixture.h"

// The sanitizer's own allocator counts for itself; absent in a build without it.
extern "C" size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace {

/// What has been asked of the allocator and not given back; what it keeps for itself does not count.
size_t BytesInUse() {
  if (__sanitizer_get_current_allocated_bytes) return __sanitizer_get_current_allocated_bytes();
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

struct Holdings {
  long descriptors;
  int widgets;
  long bytes;

  static Holdings Now() {
    ui::Pump(100);          // What is deleted later is deleted, and the history has shown its last lines.
    QPixmapCache::clear();  // What the style has drawn, within a bound of its own.
    return {OpenDescriptors(), static_cast<int>(QApplication::allWidgets().size()), static_cast<long>(BytesInUse())};
  }
};

class Leftovers : public TransferTest {
 protected:
  static constexpr int kFolders = 20;
  static constexpr long kAllowedBytes = 1024 * 1024;

  void MakeFiles(const std::string& folder, int perFolder) {
    for (int i = 0; i < kFolders; ++i) {
      for (int k = 0; k < perFolder; ++k) {
        WriteFile(folder + "/f" + std::to_string(i) + "/" + std::to_string(k) + ".bin", RandomBytes(2000));
      }
    }
  }
  static int CountFiles(const std::string& folder) {
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) files += entry.is_regular_file();
    return files;
  }
  /// Files down in one run and as many up in another one; at the end all lists are as they were.
  void MoveFiles(int perFolder) {
    MakeFiles(Remote("down"), perFolder);
    MakeFiles(Local("up"), perFolder);
    Refresh();
    TransferTest::Download({"down"});
    ASSERT_EQ(CountFiles(Local("down")), kFolders * perFolder);
    TransferTest::Upload({"up"});
    ASSERT_EQ(CountFiles(Remote("up")), kFolders * perFolder);
    for (const std::string& folder : {Remote("down"), Remote("up"), Local("down"), Local("up")}) {
      std::filesystem::remove_all(folder);
    }
    Refresh();
  }
  void Refresh() {
    PressTool(kLocalTools, kCommandLocalRefresh);
    PressTool(kRemoteTools, kCommandRemoteRefresh);
  }
};

TEST_F(Leftovers, OfAThousandTransfers) {
  StartConnected();
  // What is made once and kept.
  for (int i = 0; i < 2; ++i) MoveFiles(1);
  const Holdings before = Holdings::Now();
  MoveFiles(25);
  const Holdings after = Holdings::Now();
  printf("1000 transfers: %+ld bytes, %+ld descriptors, %+d widgets\n", after.bytes - before.bytes,
         after.descriptors - before.descriptors, after.widgets - before.widgets);
  EXPECT_EQ(after.descriptors, before.descriptors);
  EXPECT_EQ(after.widgets, before.widgets);
  EXPECT_LT(after.bytes - before.bytes, kAllowedBytes);
}

}  // namespace
