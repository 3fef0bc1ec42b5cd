// Whole files of text.
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <utility>

#include "platform/file_io.h"
#include "support/file_handles.h"
#include "support/files.h"
#include "support/unicode.h"

namespace {

constexpr off_t kLargestText = 3000000000;
constexpr unsigned kReadLockMs = 5000;
constexpr unsigned kWriteLockMs = 500;

/// Reads the open file to its end, but no more than it held when the reading began.
bool ReadAll(int descriptor, LStringLongTemplate<char>& out) {
  struct stat status {};
  if (platform::FileStatus(descriptor, status) != 0 || status.st_size > kLargestText) return false;
  LStringLongTemplate<char> text;
  const size_t size = static_cast<size_t>(status.st_size);
  text.GrowToSize(size + 1);
  while (text.length < size) {
    const ssize_t got = platform::FileRead(descriptor, text.data + text.length, size - text.length);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) break;
    text.length += static_cast<size_t>(got);
  }
  text.data[text.length] = 0;
  out = std::move(text);
  return true;
}

/// Turns UTF-16 behind its mark into UTF-8. A last odd byte is dropped, and the text ends at a zero unit.
void ConvertUtf16(LStringLongTemplate<char>& text, bool bigEndian) {
  const size_t count = text.length / 2 - 1;
  const std::unique_ptr<char16_t[]> units(new char16_t[count + 1]);
  const char* bytes = text.data + 2;
  for (size_t i = 0; i < count; ++i, bytes += 2) {
    const unsigned char high = static_cast<unsigned char>(bytes[bigEndian ? 0 : 1]);
    const unsigned char low = static_cast<unsigned char>(bytes[bigEndian ? 1 : 0]);
    units[i] = static_cast<char16_t>(high << 8 | low);
  }
  units[count] = 0;
  const std::unique_ptr<char32_t[]> characters(new char32_t[count + 1]);
  LCopyUTF32FromUnicode(characters.get(), units.get(), count + 1);
  // A unit gives three bytes at most, and a pair of them four.
  const size_t limit = count * 4;
  LStringLongTemplate<char> converted;
  converted.GrowToSize(limit + 1);
  LCopyUTF8FromUTF32Native(converted.data, characters.get(), limit);
  text = converted.data;
}

void DropFront(LStringLongTemplate<char>& text, size_t size) {
  text.length -= size;
  memmove(text.data, text.data + size, text.length + 1);
}

}  // namespace

bool LLoadText(const char* path, LStringLongTemplate<char>& out) {
  const int descriptor = platform::FileOpen(path, O_RDONLY, 0);
  // Without the lock what was opened stays so until exit, as with every lock here.
  if (flocktimed(descriptor, LOCK_SH | LOCK_NB, kReadLockMs) != 0) return false;
  const bool whole = ReadAll(descriptor, out);
  platform::FileClose(descriptor);
  return whole;
}

bool LLoadTextAutoChar(const char* path, LStringLongTemplate<char>& out) {
  if (!LLoadText(path, out)) return false;
  if (out.length < 2) return true;
  if (memcmp(out.data, "\xFF\xFE", 2) == 0) {
    ConvertUtf16(out, false);
  } else if (memcmp(out.data, "\xFE\xFF", 2) == 0) {
    ConvertUtf16(out, true);
  } else if (out.length >= 3 && memcmp(out.data, "\xEF\xBB\xBF", 3) == 0) {
    DropFront(out, 3);
  }
  return true;
}

bool LSaveText(const char* path, const char* text) {
  bool written = false;
  {
    LWriteFile file(path, kWriteLockMs);
    written = file.descriptor != -1 && file.WriteString(text);
  }
  // The system takes attributes of users only under this prefix.
  constexpr char kName[] = "user.com.apple.TextEncoding";
  constexpr char kUtf8[] = "utf-8;134217984";
  platform::FileSetPathAttribute(path, kName, kUtf8, sizeof kUtf8 - 1);
  return written;
}

bool LSaveTextAsUTF8(const char* path, const LStringLongTemplate<char>& text) { return LSaveText(path, text.Text()); }
