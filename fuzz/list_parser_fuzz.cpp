// Listing lines from a hostile server: every reading on its own and all in order, on bytes that end at the
// end of their memory.
#include <cstring>
#include <vector>

#include "ftp/list_parser.h"
#include "fuzz_target.h"

namespace {

using Parser = LFTPListInfoParser;

bool EndsInside(const char (&text)[kTextSize]) { return memchr(text, 0, sizeof text) != nullptr; }

}  // namespace

ORVANE_FUZZ_TARGET(list_parser) {
  const Parser::LocalDate today = {2021, 6, 15};
  std::vector<char> line(data, data + size);
  Parser::FTPNativeFileInfo info;
  // The readings that are told a length must not look behind it.
  (void)Parser::ParseAsUnix(line.data(), size, info, today);
  (void)Parser::ParseAsDos(line.data(), size, info);

  line.push_back(0);
  const bool isRead = Parser::GetFileInfo(line.data(), info, today);
  FUZZ_CHECK(EndsInside(info.name) && EndsInside(info.owner));
  FUZZ_CHECK(EndsInside(info.group) && EndsInside(info.attributes));
  FUZZ_CHECK(info.linkTarget[0] == 0);
  FUZZ_CHECK(isRead == info.lastModified.dateKnown);

  char attributes[kTextSize] = {};
  (void)LFTPGetMLSDAttributesFromLine(line.data(), attributes);
  FUZZ_CHECK(EndsInside(attributes));
}
