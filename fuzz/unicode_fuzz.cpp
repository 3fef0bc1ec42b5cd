// The Unicode conversions: text that converts cleanly comes back the same, no unit is written beyond the
// size, and a cut never leaves half a character.
#include <vector>

#include "fuzz_target.h"
#include "input.h"
#include "support/unicode.h"

namespace {

/// True for text in which each character is whole and legal.
bool IsUtf8(const std::string& text) {
  std::vector<char32_t> characters(text.size() + 1);
  return LCopyUTF32FromUTF8Native(characters.data(), text.c_str(), characters.size()) == kUnicodeClean;
}

void CheckUtf8RoundTrip(const std::string& text) {
  const size_t room = text.size() + 1;
  std::vector<char32_t> characters(room);
  const int result = LCopyUTF32FromUTF8Native(characters.data(), text.c_str(), room);
  FUZZ_CHECK(result == kUnicodeClean || result == kUnicodeIllegal);
  for (const char32_t* c = characters.data(); *c; ++c) FUZZ_CHECK(*c < 0x110000 && (*c < 0xD800 || *c > 0xDFFF));
  std::vector<char> again(room);
  FUZZ_CHECK(LCopyUTF8FromUTF32Native(again.data(), characters.data(), room - 1) == kUnicodeClean);
  const std::string kept = again.data();
  FUZZ_CHECK(text.compare(0, kept.size(), kept) == 0);
  FUZZ_CHECK((kept == text) == (result == kUnicodeClean));

  std::vector<char16_t> units(room);
  FUZZ_CHECK(LCopyUnicodeFromUTF8(units.data(), text.c_str(), room) == result);
  FUZZ_CHECK(LCopyUTF8FromUnicode(again.data(), units.data(), room) == kUnicodeClean);
  FUZZ_CHECK(kept == again.data());
}

/// Every size gives a beginning of the text; ASan sees a unit too many.
void CheckCutting(const std::string& text, size_t size) {
  std::vector<char> bytes(size);
  const size_t length = utf8strlcpy(bytes.data(), text.c_str(), size);
  FUZZ_CHECK(length < size);
  FUZZ_CHECK(strlen(bytes.data()) == length);
  FUZZ_CHECK(text.compare(0, length, bytes.data()) == 0);
  FUZZ_CHECK((length == text.size()) == (text.size() < size));
  if (IsUtf8(text)) {
    FUZZ_CHECK(IsUtf8(bytes.data()));
    FUZZ_CHECK(text.size() < size || length + 5 > size);
  }

  std::vector<char32_t> characters(size);
  LCopyUTF32FromUTF8Native(characters.data(), text.c_str(), size);
  std::vector<char16_t> units(size);
  LCopyUnicodeFromUTF32(units.data(), characters.data(), size);
  LCopyUTF32FromUnicode(characters.data(), units.data(), size);
  LCopyUTF8FromUnicode(bytes.data(), units.data(), size);
  FUZZ_CHECK(IsUtf8(bytes.data()));
  FUZZ_CHECK(text.compare(0, strlen(bytes.data()), bytes.data()) == 0);
}

/// Units and characters of any value, not only those that come from UTF-8.
void CheckAnyUnits(const std::string& bytes, size_t size) {
  std::vector<char16_t> units(bytes.size() / 2 + 1);
  std::vector<char32_t> characters(bytes.size() / 4 + 1);
  if (!bytes.empty()) {
    memcpy(units.data(), bytes.data(), bytes.size() / 2 * 2);
    memcpy(characters.data(), bytes.data(), bytes.size() / 4 * 4);
  }
  std::vector<char32_t> fromUnits(size);
  LCopyUTF32FromUnicode(fromUnits.data(), units.data(), size);
  for (const char32_t* c = fromUnits.data(); *c; ++c) FUZZ_CHECK(*c < 0x110000 && (*c < 0xD800 || *c > 0xDFFF));

  std::vector<char16_t> fromCharacters(size);
  LCopyUnicodeFromUTF32(fromCharacters.data(), characters.data(), size);
  std::vector<char> utf8(size + 1);
  const int result = LCopyUTF8FromUTF32Native(utf8.data(), characters.data(), size);
  FUZZ_CHECK(result == kUnicodeClean || result == kUnicodeIllegal);
  FUZZ_CHECK(strlen(utf8.data()) <= size);
}

}  // namespace

ORVANE_FUZZ_TARGET(unicode) {
  FuzzInput input(data, size);
  const size_t room = 1 + input.Byte();
  const std::string bytes = input.Rest();
  const std::string text = bytes.substr(0, bytes.find('\0'));
  CheckUtf8RoundTrip(text);
  CheckCutting(text, room);
  CheckAnyUnits(bytes, room);
}
