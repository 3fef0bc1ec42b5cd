// Lines of LIST.
#include "ftp/dir_iterator.h"
#include "ftp/list_parser.h"
#include "support/date_time.h"

bool FtpItemFromListingLine(const char* line, const char* pattern, LFileTransferProtocol::DirIterator::Item& item) {
  LFTPListInfoParser::FTPNativeFileInfo info;
  if (!LFTPListInfoParser::GetFileInfo(line, info)) return false;
  // A command for an empty name would mean the server's own directory.
  if (!info.name[0] || !FtpNameMatches(pattern, info.name)) return false;
  TextCopy(item.name, info.name);
  item.isDirectory = info.isDirectory;
  item.isSymbolicLink = info.isSymbolicLink;
  item.typeKnown = true;
  const auto& date = info.lastModified;
  if (date.dateKnown) {
    // The server's time, with no zone: shown as it stands.
    (void)LDateTime::SetDateTime(item.modified, date.year, date.month, date.day, date.hour, date.minute, 0);
    item.modifiedKnown = true;
  }
  item.size = info.size;
  TextCopy(item.attributes, info.attributes);
  TextCopy(item.owner, info.owner);
  TextCopy(item.group, info.group);
  item.sizeKnown = item.attributesKnown = item.ownerKnown = item.groupKnown = true;
  return true;
}
