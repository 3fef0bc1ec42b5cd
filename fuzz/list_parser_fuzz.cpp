// Listing lines from a hostile server: every reading on its own and all in order, on bytes that end at the
// end of their memory.
#include <cstdint>
#include <cstring>
#include <vector>

#include "ftp/list_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const LFTPListInfoParser::LocalDate today = {2021, 6, 15};
  std::vector<char> line(data, data + size);
  LFTPListInfoParser::FTPNativeFileInfo info;
  // The readings that are told a length must not look behind it.
  (void)LFTPListInfoParser::ParseAsUnix(line.data(), size, info, today);
  (void)LFTPListInfoParser::ParseAsDos(line.data(), size, info);

  line.push_back(0);
  const bool read = LFTPListInfoParser::GetFileInfo(line.data(), info, today);
  const LFTPListInfoParser::FTPNativeFileInfo empty;
  if (!read && memcmp(info.name, empty.name, sizeof info.name) != 0) __builtin_trap();
  if (info.linkTarget[0] != 0) __builtin_trap();

  char attributes[kTextSize];
  if (LFTPGetMLSDAttributesFromLine(line.data(), attributes) && !memchr(attributes, 0, sizeof attributes)) {
    __builtin_trap();
  }
  return 0;
}
