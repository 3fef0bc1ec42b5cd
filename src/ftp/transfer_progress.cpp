#include "ftp/transfer_progress.h"

namespace {

/// From so many blocks on a showing stands for a hundredth of the file.
constexpr uint64_t kShowings = 100;

}  // namespace

FtpTransferProgress::FtpTransferProgress(Direction wayOfData, uint64_t size, double start)
    : direction(wayOfData), iSize(size), iBlocks(size / kBlockSize + (size % kBlockSize != 0)), dFraction(start) {}

bool FtpTransferProgress::CountBlock(size_t bytes) {
  iBytes += bytes;
  if (iSize == 0) return false;
  if (iBlocks < kShowings) {
    dFraction += static_cast<double>(kBlockSize) / static_cast<double>(iSize);
    return true;
  }
  // Compared in whole numbers: a counter that would pass iBlocks / 100.
  if ((iCounter + 1) * kShowings <= iBlocks) {
    ++iCounter;
    return false;
  }
  iCounter = 0;
  if (direction == kDownload) {
    dFraction = static_cast<double>(iBytes) / static_cast<double>(iSize);
  } else {
    dFraction += 1.0 / kShowings;
  }
  return true;
}
