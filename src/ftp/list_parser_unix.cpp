// The tolerant Unix reading, for lines with missing, extra or glued columns.
//
// The columns, * where one is required, ? where it may be missing or repeated:
//   permissions*  links?  owner?  group?  size*  date*  time or year*  name*
// The reading walks them once, left to right. It finds the size by the date behind it, since owners and
// groups may hold blanks or be missing, and gathers in the group text whatever turns out to be neither.
#include <cstring>
#include <initializer_list>

#include "ftp/list_parser.h"

namespace {

using Parser = LFTPListInfoParser;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsHighByte(char c) { return static_cast<unsigned char>(c) >= 0x80; }

/// A piece of the line; not owned. A null text means that there is none.
struct Token {
  const char* text = nullptr;
  unsigned long length = 0;

  explicit operator bool() const { return text != nullptr; }
  Token Front(unsigned long count) const { return {text, count}; }
  Token Behind(unsigned long count) const { return {text + count, length - count}; }
  bool Is(const char* word) const { return length == strlen(word) && memcmp(text, word, length) == 0; }
  bool IsAllDigits() const { return Parser::IsAllDigits(text, length); }
  bool EndsInDigit() const { return length != 0 && IsDigit(text[length - 1]); }
  int Number() const { return Parser::strntoi(text, length); }
  unsigned long DigitsAtStart() const {
    unsigned long digits = 0;
    while (digits < length && IsDigit(text[digits])) ++digits;
    return digits;
  }
  /// True for digits with a byte of another script behind them: a day or month and its mark, in any encoding.
  bool IsMarkedNumber() const {
    const unsigned long digits = DigitsAtStart();
    return digits != 0 && digits < length && IsHighByte(text[digits]);
  }
  /// Where `c` stands first; `length` if nowhere.
  unsigned long Find(char c) const {
    const void* found = length != 0 ? memchr(text, c, length) : nullptr;
    return found ? static_cast<unsigned long>(static_cast<const char*>(found) - text) : length;
  }
  /// Takes final points and commas off; true if there was one.
  bool TrimPunctuation() {
    const unsigned long before = length;
    while (length != 0 && (text[length - 1] == '.' || text[length - 1] == ',')) --length;
    return length != before;
  }
};

/// A date token split at a separator, in three parts, or in two with an empty third.
struct DateParts {
  DateParts(const Token& token, char separator) {
    first = token.Front(token.Find(separator));
    second = token.Behind(first.length + 1);
    const unsigned long end = second.Find(separator);
    three = end != second.length;
    if (!three) return;
    third = second.Behind(end + 1);
    second = second.Front(end);
  }
  Token first, second, third;
  bool three = false;
};

class UnixReading {
 public:
  UnixReading(const char* line, unsigned long length, Parser::FTPNativeFileInfo& info, const Parser::LocalDate& today)
      : m_line(line), m_length(length), m_info(info), m_today(today) {}

  bool Read() {
    return ReadPermissions() && ReadUpToDate() && ReadDateToken() && ReadDate() && ReadTimeOrYear() &&
           ReadTimeBehindYear() && ReadName();
  }

 private:
  Token Next();
  Token Peek();
  void AppendToGroup(const Token& token);

  // The columns, in the order of the line. Each is false for a line that this reading cannot take.
  bool ReadPermissions();
  bool ReadLinksAndOwner();
  bool ReadUpToDate();
  bool FindSize(Token& before, Token& last);
  bool SettleSize(const Token& before, const Token& last, const Token& previous);
  bool ReadGluedSize(const Token& before, const Token& last);
  bool ReadDateToken();
  bool SplitAtDash();
  bool SplitAtSlash();
  bool ReadDayAfterMonth();
  bool ReadDate();
  bool ReadMonthAndDay(const Token& month, const Token& day);
  bool ReadTimeOrYear();
  bool ReadClock();
  bool ReadTimeBehindYear();
  bool ReadName();

  const char* m_line;
  unsigned long m_length;
  unsigned long m_position = 0;
  Parser::FTPNativeFileInfo& m_info;
  const Parser::LocalDate& m_today;

  bool m_folderForm = false;      ///< "folder" stands in place of the link count.
  bool m_yearFirst = false;       ///< The month column held a year; the time column holds the day.
  bool m_commaAfterDay = false;   ///< As in "Jan 5, 2001 10:30".
  Token m_date;                   ///< The token that begins the date.
  Token m_first, m_second;        ///< Day and month as they come on most servers; which is which, ReadDate decides.
  Token m_time;                   ///< The token where a time or a year is looked for.
  unsigned long m_timeStart = 0;  ///< Position in front of m_time, to put it back.
};

Token UnixReading::Next() {
  Token token;
  token.text = Parser::GetNextToken(m_line, m_length, token.length, m_position, false);
  return token;
}

Token UnixReading::Peek() {
  const unsigned long position = m_position;
  const Token token = Next();
  m_position = position;
  return token;
}

void UnixReading::AppendToGroup(const Token& token) {
  char text[kTextSize];
  TextCopyPart(text, token.text, token.length);
  if (m_info.group[0] != 0) TextAppend(m_info.group, " ");
  TextAppend(m_info.group, text);
}

bool UnixReading::ReadPermissions() {
  const Token permissions = Next();
  if (!permissions || !Parser::IsPermissionLetter(permissions.text[0])) return false;
  TextCopyPart(m_info.attributes, permissions.text, permissions.length);
  m_info.isDirectory = permissions.text[0] == 'd';
  m_info.isSymbolicLink = permissions.text[0] == 'l';
  if (permissions.length != 1) return ReadLinksAndOwner();

  // A blank behind the type letter: what is appended, blank and rights, has lost its last two characters.
  const Token rights = Next();
  if (!rights) return false;
  if (rights.length < 2) return true;
  TextAppend(m_info.attributes, " ");
  char text[kTextSize];
  TextCopyPart(text, rights.text, rights.length - 2);
  TextAppend(m_info.attributes, text);
  return true;
}

bool UnixReading::ReadLinksAndOwner() {
  const Token links = Next();
  if (!links) return false;
  if (m_info.isDirectory && links.Is("folder")) {
    m_folderForm = true;
    return true;
  }
  if (!links.IsAllDigits()) {
    AppendToGroup(links);
    const size_t length = strlen(m_info.attributes);
    if (length < 4) return true;
    // Some servers name the protocol behind the rights, and a link count never stands there.
    const Token ending{m_info.attributes + length - 3, 3};
    if (!ending.Is("FTP") && !ending.Is("FTS") && !ending.Is("TCP") && !ending.Is("SSH")) return true;
  }
  const Token owner = Peek();
  if (!owner) return false;
  if (!owner.IsAllDigits()) return true;
  TextCopyPart(m_info.owner, owner.text, owner.length);
  return static_cast<bool>(Next());
}

bool UnixReading::ReadUpToDate() {
  const Token group = Next();
  if (!group) return false;
  AppendToGroup(group);

  Token before = Next();
  if (!before) return false;
  if (before.length == 3 && !before.IsAllDigits()) {
    // The short name of a month: the column in front of it, taken as the group, was the size.
    m_info.size = Parser::strntoi64(m_info.group, strlen(m_info.group));
    m_date = before;
    return true;
  }
  Token last = Next();
  return last && FindSize(before, last);
}

/// Moves on until `last` or the token in front of it can be the size. A token that is passed goes to the
/// group.
bool UnixReading::FindSize(Token& before, Token& last) {
  Token previous;
  unsigned long long size;
  while (!Parser::ParseSize(last.text, last.length, size) && !before.IsAllDigits() && !before.EndsInDigit()) {
    if (previous.EndsInDigit()) {
      AppendToGroup(last);
      before = previous;
      break;
    }
    if (previous) AppendToGroup(previous);
    previous = last;
    last = Next();
    if (!last) return false;
  }
  return SettleSize(before, last, previous);
}

bool UnixReading::SettleSize(const Token& before, const Token& last, const Token& previous) {
  unsigned long long size = 0;
  if (Parser::ParseSize(last.text, last.length, size)) {
    m_info.size = size;
    AppendToGroup(before);
    if (previous) AppendToGroup(previous);
    m_date = Next();
    return static_cast<bool>(m_date);
  }
  m_date = last;
  if (!Parser::ParseSize(before.text, before.length, size)) return ReadGluedSize(before, last);
  m_info.size = size;
  if (m_folderForm && m_info.group[0] != 0) {
    char group[kTextSize];
    TextCopy(group, m_info.group);
    TextCopy(m_info.group, "folder ");
    TextAppend(m_info.group, group);
  }
  return true;
}

/// The size has grown into the text in front of it, as a long group and a large file leave no blank between
/// them.
bool UnixReading::ReadGluedSize(const Token& before, const Token& last) {
  const auto frontLength = [](const Token& token) {
    unsigned long front = token.length;
    while (front > 1 && IsDigit(token.text[front - 1])) --front;
    return front;
  };
  unsigned long front = frontLength(last);
  if (front < last.length) {
    const Token digits = last.Behind(front);
    const unsigned long taken = front - 1;
    AppendToGroup(last.Front(taken));
    m_info.size = Parser::strntoi64(digits.text, taken < digits.length ? taken : digits.length);
    return true;
  }
  if (!before.EndsInDigit()) return false;
  front = frontLength(before);
  AppendToGroup(before.Front(front));
  m_info.size = Parser::strntoi64(before.text + front, before.length - front);
  return true;
}

bool UnixReading::ReadDateToken() {
  m_info.lastModified.year = 0;
  if (m_date.Find('-') != m_date.length) return SplitAtDash();
  if (m_date.Find('/') != m_date.length) return SplitAtSlash();
  return ReadDayAfterMonth();
}

bool UnixReading::SplitAtDash() {
  const DateParts parts(m_date, '-');
  if (!parts.three) {
    m_first = parts.second;
    m_second = parts.first;
    return true;
  }
  bool inOrder;
  if (parts.first.length == 4) {
    m_info.lastModified.year = parts.first.Number();
    inOrder = parts.second.Number() != 0;
    m_first = inOrder ? parts.second : parts.third;
    m_second = inOrder ? parts.third : parts.second;
    return true;
  }
  if (parts.first.length == 0) return false;
  m_info.lastModified.year = parts.third.Number();
  inOrder = parts.second.Number() < 13;
  m_first = inOrder ? parts.first : parts.second;
  m_second = inOrder ? parts.second : parts.first;
  return true;
}

bool UnixReading::SplitAtSlash() {
  const DateParts parts(m_date, '/');
  if (!parts.three) {
    m_first = parts.second;
    m_second = parts.first;
    return true;
  }
  const bool yearFirst = parts.first.length == 4;
  if (!yearFirst && parts.first.length != 2) return false;
  m_info.lastModified.year = yearFirst ? parts.first.Number() : parts.third.Number();
  const Token& outer = yearFirst ? parts.third : parts.first;
  const bool inOrder = parts.second.Number() < 13;
  m_first = inOrder ? outer : parts.second;
  m_second = inOrder ? parts.second : outer;
  return true;
}

bool UnixReading::ReadDayAfterMonth() {
  m_second = m_date;
  m_first = Next();
  if (!m_first) return false;
  if (m_first.text[m_first.length - 1] == ',') {
    m_commaAfterDay = true;
    --m_first.length;
  }
  if (m_first.TrimPunctuation()) m_commaAfterDay = false;
  if (m_first.length == 0) return false;
  if (m_first.IsMarkedNumber()) m_first.length = m_first.DigitsAtStart();
  return true;
}

bool UnixReading::ReadDate() {
  Token day = m_first;
  Token month = m_second;
  if (day.Number() == 0) {
    day = m_second;
    month = m_first;
    m_commaAfterDay = false;
  }
  m_timeStart = m_position;
  m_time = Next();
  if (!m_time) return false;
  month.TrimPunctuation();
  if (month.length == 0) return false;
  return ReadMonthAndDay(month, day);
}

bool UnixReading::ReadMonthAndDay(const Token& month, const Token& day) {
  auto& date = m_info.lastModified;
  const int number = month.Number();
  if (number > 1000) {
    m_yearFirst = true;
    date.year = number;
    date.month = day.Number();
    return date.month >= 1 && date.month <= 12;
  }
  date.month = Parser::GetMonthOfToken(month.text, month.length);
  if (date.month == 0) {
    if (!month.IsMarkedNumber()) return false;
    date.month = number;
    if (date.month < 1 || date.month > 12) return false;
  }
  date.day = day.Number();
  return date.day >= 1 && date.day <= 31;
}

/// Hour and minute, around the first of the separators that the token holds. False if it holds none.
bool UnixReading::ReadClock() {
  for (const char separator : {':', '.', '-'}) {
    const unsigned long at = m_time.Find(separator);
    if (at == m_time.length) continue;
    m_info.lastModified.hour = m_time.Front(at).Number();
    m_info.lastModified.minute = m_time.Behind(at + 1).Number();
    m_info.lastModified.timeKnown = true;
    return true;
  }
  return false;
}

bool UnixReading::ReadTimeOrYear() {
  auto& date = m_info.lastModified;
  if (ReadClock()) {
    if (date.year == 0) date.year = Parser::YearOf(date.month, date.day, m_today);
    return true;
  }
  if (m_yearFirst) {
    date.day = m_time.Number();
    return date.day >= 1 && date.day <= 31;
  }
  if (date.year != 0) {
    m_position = m_timeStart;  // The name begins here.
    return true;
  }
  date.year = m_time.Number();
  return date.year != 0;
}

bool UnixReading::ReadTimeBehindYear() {
  if (!m_commaAfterDay) return true;
  const Token time = Peek();
  if (!time) return false;
  const bool shaped =
      time.length == 5 && time.text[2] == ':' && time.Front(2).IsAllDigits() && time.Behind(3).IsAllDigits();
  if (!shaped) return true;
  const int hour = time.Front(2).Number();
  const int minute = time.Behind(3).Number();
  if (hour > 23 || minute > 59) return true;
  m_info.lastModified.hour = hour;
  m_info.lastModified.minute = minute;
  m_info.lastModified.timeKnown = true;
  return static_cast<bool>(Next());
}

bool UnixReading::ReadName() {
  if (m_position >= m_length) return false;
  Token name;
  name.text = Parser::GetNextToken(m_line, m_length, name.length, m_position, true);
  // A marked listing ends the names of folders, programs, and so on, with a sign of their kind.
  while (name.length != 0 && memchr("\r\n*/|", name.text[name.length - 1], 5)) --name.length;
  TextCopyPart(m_info.name, name.text, name.length);
  m_info.lastModified.dateKnown = true;
  return true;
}

}  // namespace

bool LFTPListInfoParser::ParseAsUnix(const char* line, unsigned long length, FTPNativeFileInfo& info) {
  return ParseAsUnix(line, length, info, LocalToday());
}

bool LFTPListInfoParser::ParseAsUnix(const char* line, unsigned long length, FTPNativeFileInfo& info,
                                     const LocalDate& today) {
  return UnixReading(line, length, info, today).Read();
}
