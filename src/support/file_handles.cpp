#include "support/file_handles.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

#include "platform/clock.h"
#include "platform/file_io.h"
#include "support/ascii.h"
#include "support/files.h"

namespace {

/// One byte of the file, or -1 at its end and on an error.
int ReadByte(int descriptor) {
  unsigned char byte = 0;
  ssize_t size = 0;
  do {
    size = platform::FileRead(descriptor, &byte, 1);
  } while (size < 0 && errno == EINTR);
  return size == 1 ? byte : -1;
}

/// Puts one line through the writer; rule of LReadFileRef.
template <typename Writer>
bool ReadLineInto(int descriptor, Writer& writer) {
  int byte = ReadByte(descriptor);
  if (byte < 0) return false;
  for (; byte >= 0; byte = ReadByte(descriptor)) {
    if (!IsLineEnd(byte)) {
      writer.Put(static_cast<char>(byte));
      continue;
    }
    const int next = ReadByte(descriptor);
    const bool pair = IsLineEnd(next) && next != byte;
    if (next >= 0 && !pair) platform::FileSeek(descriptor, -1, SEEK_CUR);
    break;
  }
  return true;
}

/// Fills a caller's buffer; the last byte stays free for the terminator.
struct BoundedWriter {
  void Put(char c) {
    if (length + 1 < size) buffer[length++] = c;
  }
  void Terminate() {
    if (size != 0) buffer[length] = 0;
  }

  char* buffer;
  size_t size;
  size_t length = 0;
};

}  // namespace

bool LReadFileRef::ReadLine(char* buffer, size_t size) {
  BoundedWriter writer{buffer, size};
  const bool read = ReadLineInto(descriptor, writer);
  writer.Terminate();
  return read;
}

bool LReadFileRef::ReadLine(LStringLongTemplate<char>& string) {
  string.GrowToSize(kTextSize);
  string.length = 0;
  LStringLongTemplateWriter<char> writer(string);
  const bool read = ReadLineInto(descriptor, writer);
  string.data[string.length] = 0;
  return read;
}

int LReadFileBuffered::NextByte(bool take) {
  if (position == held) {
    ssize_t size = 0;
    do {
      size = platform::FileRead(descriptor, buffer, sizeof buffer);
    } while (size < 0 && errno == EINTR);
    position = 0;
    held = size > 0 ? static_cast<size_t>(size) : 0;
    if (held == 0) return -1;
  }
  const int byte = static_cast<unsigned char>(buffer[position]);
  if (take) ++position;
  return byte;
}

bool LReadFileBuffered::ReadLine(char* line, size_t size) {
  BoundedWriter writer{line, size};
  int byte = NextByte(true);
  const bool read = byte >= 0;
  for (; byte >= 0 && !IsLineEnd(byte); byte = NextByte(true)) writer.Put(static_cast<char>(byte));
  if (byte == '\r' && NextByte(false) == '\n') ++position;
  writer.Terminate();
  return read;
}

bool LWriteFileRef::Write(const void* data, size_t size) {
  const char* at = static_cast<const char*>(data);
  while (size != 0) {
    const ssize_t written = platform::FileWrite(descriptor, at, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    at += written;
    size -= static_cast<size_t>(written);
  }
  return true;
}

LWriteFile::LWriteFile(const char* path, unsigned milliseconds)
    : LWriteFileRef(platform::FileOpen(path, O_RDWR | O_CREAT, 0666)) {
  if (flocktimed(descriptor, LOCK_EX | LOCK_NB, milliseconds) != 0) {
    descriptor = -1;  // What was opened stays so until exit.
    return;
  }
  platform::FileTruncate(descriptor, 0);
}

void LWriteFile::Close() {
  if (descriptor != -1) platform::FileClose(descriptor);
  descriptor = -1;
}

int flocktimed(int descriptor, int operation, unsigned milliseconds) {
  for (uint64_t wait = milliseconds / 32 + 1;; wait *= 2) {
    if (platform::FileLock(descriptor, operation) == 0) return 0;
    if (errno != EWOULDBLOCK || wait >= milliseconds) return -1;
    platform::ClockSleepMs(static_cast<unsigned>(wait));
  }
}
