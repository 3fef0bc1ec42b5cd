// When a file transfer shows its progress: at each block of 1024 bytes of a small file, close to a hundred
// times for a large one. No clock, no interface: a rule that a transfer asks.
#pragma once

#include <cstddef>
#include <cstdint>

class FtpTransferProgress {
 public:
  static constexpr size_t kBlockSize = 1024;

  enum Direction { kDownload, kUpload };

  FtpTransferProgress() = default;
  /// `size` in bytes; 0 for an unknown one, which never shows anything new. `start` is the fraction done
  /// before.
  FtpTransferProgress(Direction direction, uint64_t size, double start = 0);

  /// Counts one block, of `bytes` bytes. True when status and progress are to be shown anew.
  [[nodiscard]] bool CountBlock(size_t bytes);
  /// 0.0 to 1.0. A large upload counts a hundredth for each showing, so that it may end below 1.
  double Fraction() const { return dFraction < 1 ? dFraction : 1; }

 private:
  Direction direction = kDownload;
  uint64_t iSize = 0;
  uint64_t iBlocks = 0;   ///< Of the whole file.
  uint64_t iBytes = 0;    ///< Counted so far.
  uint64_t iCounter = 0;  ///< Blocks since the last showing.
  double dFraction = 0;
};
