#include "ftp/transfer_progress.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr uint64_t kBlock = FtpTransferProgress::kBlockSize;

/// Runs a whole file through; gives the blocks after which something was shown, counted from 1.
std::vector<uint64_t> Showings(FtpTransferProgress& progress, uint64_t size) {
  std::vector<uint64_t> showings;
  uint64_t block = 0;
  for (uint64_t left = size; left > 0;) {
    const uint64_t bytes = left < kBlock ? left : kBlock;
    ++block;
    if (progress.CountBlock(bytes)) showings.push_back(block);
    left -= bytes;
  }
  return showings;
}

TEST(TransferProgress, ShowsSmallFilesAtEachBlockAndLargeOnesAHundredTimes) {
  const struct {
    const char* name;
    uint64_t size;
    size_t showings;
    uint64_t first;  ///< Block of the first showing.
    uint64_t step;
    double endDownload;
    double endUpload;
  } rows[] = {
      {"empty", 0, 0, 0, 0, 0, 0},
      {"one byte", 1, 1, 1, 1, 1, 1},
      {"one block", kBlock, 1, 1, 1, 1, 1},
      {"99 blocks", 99 * kBlock, 99, 1, 1, 1, 1},
      {"a byte more than 99 blocks is 100", 99 * kBlock + 1, 50, 2, 2, 1, 0.5},
      {"100 blocks", 100 * kBlock, 50, 2, 2, 1, 0.5},
      {"150 blocks", 150 * kBlock, 75, 2, 2, 1, 0.75},
      {"1000 blocks", 1000 * kBlock, 90, 11, 11, 0.99, 0.9},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    for (const auto way : {FtpTransferProgress::kDownload, FtpTransferProgress::kUpload}) {
      FtpTransferProgress progress(way, row.size);
      EXPECT_EQ(progress.Fraction(), 0);
      const std::vector<uint64_t> showings = Showings(progress, row.size);
      ASSERT_EQ(showings.size(), row.showings);
      for (size_t i = 0; i < showings.size(); ++i) EXPECT_EQ(showings[i], row.first + i * row.step);
      EXPECT_NEAR(progress.Fraction(), way == FtpTransferProgress::kDownload ? row.endDownload : row.endUpload, 1e-9);
    }
  }
}

TEST(TransferProgress, NeverPassesOne) {
  FtpTransferProgress grown(FtpTransferProgress::kDownload, 100 * kBlock);
  for (int i = 0; i < 300; ++i) (void)grown.CountBlock(kBlock);
  EXPECT_EQ(grown.Fraction(), 1);
  FtpTransferProgress resumed(FtpTransferProgress::kUpload, 10 * kBlock, 0.95);
  for (int i = 0; i < 10; ++i) (void)resumed.CountBlock(kBlock);
  EXPECT_EQ(resumed.Fraction(), 1);
}

TEST(TransferProgress, StartsWhereAnAppendedFileWentOn) {
  FtpTransferProgress progress(FtpTransferProgress::kUpload, 1000 * kBlock, 0.5);
  EXPECT_EQ(progress.Fraction(), 0.5);
  for (int i = 0; i < 11; ++i) (void)progress.CountBlock(kBlock);
  EXPECT_NEAR(progress.Fraction(), 0.51, 1e-9);
}

}  // namespace
