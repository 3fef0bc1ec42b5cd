// Readers and writers of lines on file descriptors. One handle belongs to one thread at a time.
#pragma once

#include <cstddef>

#include "support/strings.h"

/// Reads lines from a descriptor of the owner's, byte by byte, so that the file position always stands behind
/// the last line. Does not close it.
struct LReadFileRef {
  explicit LReadFileRef(int file) : descriptor(file) {}

  // A line ends at a carriage return, a line feed or a pair of them in either order. False only at the end of
  // the file with nothing read.

  /// Drops what goes beyond `size` - 1 bytes.
  bool ReadLine(char* buffer, size_t size);
  bool ReadLine(LStringLongTemplate<char>& string);

  int descriptor;  ///< -1 when closed.
};

/// The same through a buffer, but here a line feed ends the line by itself. Does not close the descriptor.
struct LReadFileBuffered {
  explicit LReadFileBuffered(int file) : descriptor(file) {}

  bool ReadLine(char* buffer, size_t size);

  int descriptor;
  char buffer[8192];
  size_t position = 0;  ///< Of the next byte in `buffer`.
  size_t held = 0;      ///< Bytes in `buffer`.

 private:
  /// The next byte, taken with `take` true; -1 at the end.
  int NextByte(bool take);
};

/// Writes to a descriptor of the owner's. Does not close it.
struct LWriteFileRef {
  explicit LWriteFileRef(int file) : descriptor(file) {}

  bool Write(const void* data, size_t size);
  /// True if the whole text was written.
  bool WriteString(const char* text) { return Write(text, strlen(text)); }

  int descriptor;  ///< -1 when nothing can be written.
};

/// A file emptied and locked for this writer alone; closed by the destructor.
struct LWriteFile : LWriteFileRef {
  /// Waits `milliseconds` for the lock; without it the file keeps its content and `descriptor` is -1.
  LWriteFile(const char* path, unsigned milliseconds);
  LWriteFile(const LWriteFile&) = delete;
  LWriteFile& operator=(const LWriteFile&) = delete;
  ~LWriteFile() { Close(); }

  void Close();
};
