// Lines of MLSD and of LIST from a hostile server, as items of a listing; the value of a fact; the quoted path.
#include <cstring>

#include "ftp/commands.h"
#include "ftp/dir_iterator.h"
#include "ftp/facts.h"
#include "fuzz_target.h"
#include "input.h"

namespace {

bool EndsInside(const char (&text)[kTextSize]) { return memchr(text, 0, sizeof text) != nullptr; }

void CheckItem(const LFileTransferProtocol::DirIterator::Item& item, const std::string& line) {
  FUZZ_CHECK(EndsInside(item.name) && EndsInside(item.attributes));
  FUZZ_CHECK(EndsInside(item.owner) && EndsInside(item.group));
  FUZZ_CHECK(line.find(item.name) != std::string::npos);
}

}  // namespace

ORVANE_FUZZ_TARGET(facts_line) {
  FuzzInput input(data, size);
  const std::string line = input.Text();
  LFileTransferProtocol::DirIterator::Item item;
  const size_t blank = line.find(' ');
  const size_t name = blank == std::string::npos ? 0 : line.find_first_not_of(' ', blank);
  const bool isEntry = name < line.size();
  FUZZ_CHECK(FtpItemFromFactsLine(line.c_str(), "*", item) == isEntry || line.find('*') != std::string::npos);
  CheckItem(item, line);

  char value[kTextSize] = {};
  if (FtpFactValue(line.c_str(), "size=", value)) {
    FUZZ_CHECK(EndsInside(value) && !strchr(value, ';'));
    (void)FtpNumber(value);
  }
  (void)FtpTypeIsLink(line.c_str());
  char path[kTextSize];
  FtpQuotedPath(line.c_str(), path);
  FUZZ_CHECK(EndsInside(path) && !strchr(path, '"'));
}
