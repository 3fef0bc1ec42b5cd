// The strict Unix reading: permissions, links, owner, group, size, month, day, time or year, name.
#include <cstring>

#include "ftp/list_parser.h"

namespace {

using Parser = LFTPListInfoParser;
using LastModified = Parser::FTPNativeFileInfo::LastModified;

bool IsBetween(char c) { return c >= 1 && c <= 32; }

/// Takes the next token off the line, cut to `token`. False if none is left.
bool TakeToken(const char*& line, char (&token)[kTextSize]) {
  while (IsBetween(*line)) ++line;
  const char* start = line;
  while (*line && !IsBetween(*line)) ++line;
  TextCopyPart(token, start, static_cast<size_t>(line - start));
  return token[0] != 0;
}

bool TakeNumber(const char*& line, char (&token)[kTextSize]) {
  return TakeToken(line, token) && Parser::IsAllDigits(token, strlen(token));
}

bool TakeDate(const char*& line, LastModified& date) {
  char token[kTextSize];
  if (!TakeToken(line, token)) return false;
  const unsigned long length = strlen(token);
  // The month table has digits as keys too; a number here means that a column is missing in front of it.
  if (Parser::IsAllDigits(token, length)) return false;
  date.month = Parser::GetMonthOfToken(token, length);
  if (date.month == 0) return false;

  if (!TakeNumber(line, token)) return false;
  date.day = Parser::strntoi(token, strlen(token));
  if (date.day < 1 || date.day > 31) return false;
  date.dateKnown = true;
  return true;
}

bool TakeTimeOrYear(const char*& line, LastModified& date, const Parser::LocalDate& today) {
  char token[kTextSize];
  if (!TakeToken(line, token)) return false;
  const unsigned long length = strlen(token);
  if (length == 4 && Parser::IsAllDigits(token, length)) {
    date.year = Parser::strntoi(token, length);
    return true;
  }
  if (length < 3 || token[2] != ':') return false;
  date.hour = Parser::strntoi(token, 2);
  date.minute = Parser::strntoi(token + 3, length - 3);
  date.timeKnown = true;
  date.year = Parser::YearOf(date.month, date.day, today);
  return true;
}

}  // namespace

bool LFTPListInfoParser::ParseAsUnixStrict(const char* line, FTPNativeFileInfo& info) {
  return ParseAsUnixStrict(line, info, LocalToday());
}

bool LFTPListInfoParser::ParseAsUnixStrict(const char* line, FTPNativeFileInfo& info, const LocalDate& today) {
  if (!TakeToken(line, info.attributes) || !IsPermissionLetter(info.attributes[0])) return false;
  info.isDirectory = info.attributes[0] == 'd';
  info.isSymbolicLink = info.attributes[0] == 'l';

  char token[kTextSize];
  if (!TakeNumber(line, token)) return false;  // The number of links is of no use.
  if (!TakeToken(line, info.owner) || !TakeToken(line, info.group)) return false;
  if (!TakeNumber(line, token)) return false;
  info.size = strntoi64(token, strlen(token));
  if (!TakeDate(line, info.lastModified) || !TakeTimeOrYear(line, info.lastModified, today)) return false;

  // Exactly one blank stands in front of the name: any other belongs to it.
  if (!*line) return false;
  TextCopy(info.name, line + 1);
  return info.name[0] != 0;
}
