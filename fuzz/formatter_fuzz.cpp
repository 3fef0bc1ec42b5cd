// The formatting routine: directives of any shape give what the rules say, told in another way, and
// every writer gives the same text.
#include <cstdio>

#include "fuzz_target.h"
#include "input.h"
#include "support/strings.h"

namespace {

/// Flags, width and precision of any length, from the bytes that may stand in one.
std::string ReadFlags(FuzzInput& input) {
  static const char bytes[] = "0123456789.Llz";
  std::string flags;
  const size_t length = input.Byte() % 8 == 7 ? 250 + input.Byte() % 20 : input.Byte() % 5;
  const uint8_t start = input.Byte();
  for (size_t i = 0; i < length; ++i) {
    // A long one repeats a few bytes: what matters there is its length.
    const size_t at = length < 8 ? input.Byte() : start + i % 3;
    flags += bytes[at % (sizeof bytes - 1)];
  }
  return flags;
}

/// A number by the C library, with the length letters told apart from the rest.
std::string Number(std::string flags, char conversion, uint64_t word) {
  flags = flags.substr(0, 257);
  const bool isLong = flags.find_first_of("Llz") != std::string::npos;
  std::erase_if(flags, [](char c) { return strchr("Llz", c) != nullptr; });
  const std::string format = "%" + flags + (isLong ? "ll" : "") + conversion;
  char out[kTextSize] = {};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  const int length = isLong ? snprintf(out, sizeof out, format.c_str(), static_cast<unsigned long long>(word))
                            : snprintf(out, sizeof out, format.c_str(), static_cast<unsigned>(word));
#pragma GCC diagnostic pop
  return length < 0 ? "" : out;
}

/// Formats one piece that the input chooses; returns what it should have added.
std::string FormatPiece(FuzzInput& input, LStringLongTemplate<char>& out) {
  const uint8_t kind = input.Byte();
  if (kind % 5 == 0) {
    std::string plain = input.Text();
    std::erase(plain, '%');
    out.tsprintfappend(plain.c_str());
    return plain;
  }
  const std::string flags = ReadFlags(input);
  const std::string directive = "%" + flags;
  if (kind % 5 == 1) {
    const std::string text = input.Text();
    out.tsprintfappend((directive + "s").c_str(), text.c_str());
    return text;
  }
  const uint64_t word = input.Word();
  if (kind % 5 == 2) {
    const char conversion = "diouxX"[kind % 6];
    out.tsprintfappend((directive + conversion).c_str(), word);
    return Number(flags, conversion, word);
  }
  if (kind % 5 == 3) {
    out.tsprintfappend((directive + "%").c_str());
    return "%";
  }
  // A conversion that the C library takes for the beginning of a longer directive; the rest is text.
  const char conversion = "-+ #*h"[kind % 6];
  out.tsprintfappend((directive + conversion + "5d").c_str(), word);
  return "5d";
}

}  // namespace

ORVANE_FUZZ_TARGET(formatter) {
  FuzzInput input(data, size);
  LStringLongTemplate<char> out;
  std::string expected;
  while (!input.IsEmpty()) {
    expected += FormatPiece(input, out);
    FUZZ_CHECK(out.length < out.capacity);
    FUZZ_CHECK(out.Text() == expected);
  }
  FUZZ_CHECK(out.length == expected.size());

  char fixed[kTextSize];
  LFixedLengthStringWriterTemplate<char> writer(fixed);
  FUZZ_CHECK(sprintf(writer, "%s|%s", out.Text(), out.Text()) == writer.length);
  FUZZ_CHECK(std::string(fixed, writer.length) == (expected + "|" + expected).substr(0, 259));
}
