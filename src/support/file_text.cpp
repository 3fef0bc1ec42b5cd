// Whole files of text.
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <utility>

#include "platform/file_io.h"
#include "support/file_handles.h"
#include "support/files.h"

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

void PutUtf8(LStringLongTemplateWriter<char>& writer, uint32_t code) {
  const auto put = [&writer](uint32_t byte) { writer.Put(static_cast<char>(byte)); };
  if (code < 0x80) return put(code);
  if (code < 0x800) {
    put(0xC0 | code >> 6);
  } else {
    if (code < 0x10000) {
      put(0xE0 | code >> 12);
    } else {
      put(0xF0 | code >> 18);
      put(0x80 | (code >> 12 & 0x3F));
    }
    put(0x80 | (code >> 6 & 0x3F));
  }
  put(0x80 | (code & 0x3F));
}

/// Turns UTF-16 behind its mark into UTF-8. A last odd byte is dropped, and the text ends at a zero unit. Any
/// surrogate starts a pair, as everywhere in this program; one without a partner becomes U+FFFD.
void ConvertUtf16(LStringLongTemplate<char>& text, bool bigEndian) {
  const auto unitAt = [&text, bigEndian](size_t at) -> uint32_t {
    const uint32_t first = static_cast<unsigned char>(text.data[at]);
    const uint32_t second = static_cast<unsigned char>(text.data[at + 1]);
    return bigEndian ? first << 8 | second : second << 8 | first;
  };
  const size_t end = text.length & ~static_cast<size_t>(1);
  LStringLongTemplate<char> converted;
  converted.GrowToSize(kTextSize);
  LStringLongTemplateWriter<char> writer(converted);
  for (size_t at = 2; at < end && unitAt(at) != 0; at += 2) {
    uint32_t code = unitAt(at);
    if (code >= 0xD800 && code <= 0xDFFF) {
      at += 2;
      code = at < end ? 0x10000 + ((code & 0x3FF) << 10) + (unitAt(at) & 0x3FF) : 0xFFFD;
    }
    PutUtf8(writer, code);
  }
  converted.data[converted.length] = 0;
  text = std::move(converted);
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
