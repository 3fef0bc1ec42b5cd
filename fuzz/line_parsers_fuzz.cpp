// The small parsers: what they give and what they skip make up the text, lists come back from what is quoted,
// and the order of names is one order.
#include <vector>

#include "fuzz_target.h"
#include "input.h"
#include "support/parsing.h"

namespace {

using Parser = LStringParserTemplate<char>;

/// Reads field by field to the end: each field begins where the cursor stood, and each step gets on.
template <typename Step>
void CheckSteps(const std::string& text, const char* stops, Step step) {
  Parser parser(text.c_str());
  while (*parser.cursor) {
    const char* before = parser.cursor;
    char field[kTextSize];
    step(parser, field);
    const size_t length = strcspn(before, stops);
    FUZZ_CHECK(std::string(field) == std::string(before, std::min<size_t>(length, 259)));
    FUZZ_CHECK(parser.cursor > before && parser.cursor >= before + length);
    FUZZ_CHECK(strspn(before + length, stops) >= static_cast<size_t>(parser.cursor - before) - length);
    if (parser.cursor <= before) return;
  }
  FUZZ_CHECK(parser.cursor == text.c_str() + text.size());
}

void CheckCursor(const std::string& text) {
  std::string whiteSpace;
  for (char c = 1; c < 33; ++c) whiteSpace += c;
  CheckSteps(text, whiteSpace.c_str(),
             [](Parser& parser, char(&field)[kTextSize]) { parser.GetToWhiteSpaceAndSkip(field); });
  CheckSteps(text, "\r\n", [](Parser& parser, char(&field)[kTextSize]) { parser.GetToEndOfLineAndSkip(field); });
}

void CheckReaders(const std::string& text, const std::string& set) {
  LStringLongTemplate<char> out;
  size_t consumed = LParseGetToCharacters(text.c_str(), set.c_str(), out);
  FUZZ_CHECK(consumed == strcspn(text.c_str(), set.c_str()));
  FUZZ_CHECK(out.Text() == text.substr(0, consumed));
  consumed = LParseGetToEndOfLine(text.c_str(), out);
  FUZZ_CHECK(consumed == strcspn(text.c_str(), "\r\n"));
  FUZZ_CHECK(out.Text() == text.substr(0, consumed));

  Parser parser(text.c_str());
  char before[kTextSize];
  parser.GetToString(set.c_str(), before);
  const size_t match = std::min(text.find(set), text.size());
  FUZZ_CHECK(parser.cursor == text.c_str() + match);
  FUZZ_CHECK(before == text.substr(0, std::min<size_t>(match, 259)));
}

std::vector<std::string> Items(const std::string& list) {
  std::vector<std::string> items;
  LCommaSeparatedListIteratorTemplate<char> it(list.c_str());
  for (it.Next(); !it.IsAtEnd(); it.Next()) {
    items.emplace_back(it.Item().Text());
    FUZZ_CHECK(items.size() <= list.size());
    if (items.size() > list.size()) break;
  }
  return items;
}

/// The items of any list, quoted and joined again, are the same items.
void CheckCommaList(const std::string& text) {
  const std::vector<std::string> items = Items(text);
  std::string quoted;
  for (const std::string& item : items) {
    quoted += '"';
    for (const char c : item) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    quoted += "\" ,\t";
  }
  FUZZ_CHECK(Items(quoted) == items);
}

int Sign(int value) { return (value > 0) - (value < 0); }

/// True if a run of digits is too long for the 32 bits that a comparison keeps.
bool HasLargeNumber(const std::string& text) {
  for (size_t at = 0; at < text.size(); ++at) {
    if (strspn(text.c_str() + at, "0123456789") > 9) return true;
  }
  return false;
}

void CheckOrder(const std::string& a, const std::string& b) {
  FUZZ_CHECK(LStringCompareLogical(a.c_str(), a.c_str()) == 0);
  const int order = Sign(LStringCompareLogical(a.c_str(), b.c_str()));
  // The difference of large numbers may go round to itself.
  if (HasLargeNumber(a) || HasLargeNumber(b)) return;
  FUZZ_CHECK(order == -Sign(LStringCompareLogical(b.c_str(), a.c_str())));
  FUZZ_CHECK(LStringCompareLogical((a + "x").c_str(), a.c_str()) > 0);
}

}  // namespace

ORVANE_FUZZ_TARGET(line_parsers) {
  FuzzInput input(data, size);
  const std::string first = input.Text();
  const std::string second = input.Text();
  CheckCursor(first);
  CheckReaders(first, second);
  CheckCommaList(first);
  CheckOrder(first, second);
}
