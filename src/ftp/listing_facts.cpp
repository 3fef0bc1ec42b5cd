// Lines of MLSD.
#include <cstring>

#include "ftp/dir_iterator.h"
#include "ftp/facts.h"
#include "ftp/list_parser.h"
#include "support/files.h"
#include "support/strings.h"

namespace {

using Item = LFileTransferProtocol::DirIterator::Item;

constexpr size_t kStampSize = 14;  ///< "YYYYMMDDhhmmss"; fractions of a second may follow.

/// What follows the first blank; a line without one is all name.
const char* NameOfFactsLine(const char* line) {
  const char* blank = strchr(line, ' ');
  if (!blank) return line;
  return blank + strspn(blank, " ");
}

void TakeModified(const char* facts, Item& item) {
  char value[kTextSize];
  if (!FtpFactValue(facts, "modify=", value)) return;
  value[kStampSize] = 0;
  FtpTimeFromStamp(value, item.modified);
  item.modifiedKnown = true;
}

/// Everything but a file counts as a directory: `cdir`, `pdir`, and the types of a system's own.
void TakeType(const char* facts, Item& item) {
  char value[kTextSize];
  if (!FtpFactValue(facts, "type=", value)) return;
  item.isDirectory = strncmp(value, "file", 4) != 0;
  item.isSymbolicLink = FtpTypeIsLink(value);
  item.typeKnown = true;
}

void TakeSize(const char* facts, Item& item) {
  char value[kTextSize];
  if (!FtpFactValue(facts, "size=", value)) return;
  item.size = static_cast<uint64_t>(FtpNumber(value));
  item.sizeKnown = true;
}

}  // namespace

bool FtpNameMatches(const char* pattern, const char* name) {
  char lowerPattern[kTextSize];
  char lowerName[kTextSize];
  TextCopy(lowerPattern, pattern);
  TextCopy(lowerName, name);
  TextLowerAscii(lowerPattern);
  TextLowerAscii(lowerName);
  return LFile::IsMatch(lowerPattern, lowerName);
}

bool FtpItemFromFactsLine(const char* line, const char* pattern, Item& item) {
  const char* name = NameOfFactsLine(line);
  // A command for an empty name would mean the server's own directory.
  if (!name[0] || !FtpNameMatches(pattern, name)) return false;
  TextCopy(item.name, name);
  char facts[kTextSize];
  TextCopy(facts, line);
  TextLowerAscii(facts);
  TakeModified(facts, item);
  TakeType(facts, item);
  TakeSize(facts, item);
  // Without the fact the text stays empty and counts as known all the same: nothing better is to be had.
  (void)LFTPGetMLSDAttributesFromLine(facts, item.attributes);
  item.attributesKnown = item.ownerKnown = item.groupKnown = true;
  return true;
}
