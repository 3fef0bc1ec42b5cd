// The two readers of lines on files: what they give are the lines of the file, cut to the buffer.
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "fuzz_target.h"
#include "input.h"
#include "support/file_handles.h"

namespace {

using Lines = std::vector<std::string>;

/// A file in memory that holds the bytes.
class MemoryFile {
 public:
  explicit MemoryFile(const std::string& bytes) : descriptor(memfd_create("lines", MFD_CLOEXEC)) {
    FUZZ_CHECK(write(descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    Rewind();
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(descriptor); }

  void Rewind() const { lseek(descriptor, 0, SEEK_SET); }

  const int descriptor;
};

/// The lines of the bytes. `isPairEitherWay`: a line feed before a carriage return ends the line with it.
Lines Expected(const std::string& bytes, bool isPairEitherWay) {
  Lines lines;
  for (size_t at = 0; at < bytes.size();) {
    const size_t end = std::min(bytes.find_first_of("\r\n", at), bytes.size());
    lines.push_back(bytes.substr(at, end - at));
    at = end + 1;
    if (at >= bytes.size()) break;
    const bool isPair = bytes[end] == '\r' ? bytes[at] == '\n' : isPairEitherWay && bytes[at] == '\r';
    if (isPair) ++at;
  }
  return lines;
}

/// A buffer shows a line up to its first zero, and no more than fits.
void CheckLines(const Lines& read, const Lines& expected, size_t size) {
  FUZZ_CHECK(read.size() == expected.size());
  for (size_t i = 0; i < std::min(read.size(), expected.size()); ++i) {
    FUZZ_CHECK(read[i] == expected[i].substr(0, size - 1).c_str());
  }
}

template <typename Reader>
Lines ReadAll(Reader& reader, size_t size) {
  std::vector<char> buffer(size);
  Lines lines;
  while (reader.ReadLine(buffer.data(), size)) lines.emplace_back(buffer.data());
  FUZZ_CHECK(buffer[0] == 0);
  return lines;
}

}  // namespace

ORVANE_FUZZ_TARGET(text_lines) {
  FuzzInput input(data, size);
  const size_t bufferSize = 1 + input.Byte();
  const std::string bytes = input.Rest();
  const MemoryFile file(bytes);

  LReadFileRef plain(file.descriptor);
  CheckLines(ReadAll(plain, bufferSize), Expected(bytes, true), bufferSize);
  FUZZ_CHECK(lseek(file.descriptor, 0, SEEK_CUR) == static_cast<off_t>(bytes.size()));

  file.Rewind();
  LStringLongTemplate<char> string;
  Lines whole;
  while (plain.ReadLine(string)) whole.emplace_back(string.Text(), string.length);
  FUZZ_CHECK(whole == Expected(bytes, true));

  file.Rewind();
  LReadFileBuffered buffered(file.descriptor);
  CheckLines(ReadAll(buffered, bufferSize), Expected(bytes, false), bufferSize);
}
