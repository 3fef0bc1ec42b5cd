// The Base64 codec: every block comes back from every form of its text, and any text decodes within its
// bounds.
#include "fuzz_target.h"
#include "input.h"
#include "support/codecs.h"

namespace {

std::string Decoded(const std::string& text) {
  LSizedArray<unsigned char> out;
  LBase64Decode(text.data(), text.size(), out);
  FUZZ_CHECK(out.size <= (text.size() + 3) / 4 * 3);
  return std::string(out.data, out.data + out.size);
}

std::string Encoded(const std::string& block, unsigned flags) {
  LStringLongTemplate<char> out;
  LBase64Encode(block.data(), block.size(), out, flags);
  FUZZ_CHECK(out.length == Base64EncodeGetRequiredLength(block.size(), flags));
  return std::string(out.Text(), out.length);
}

void CheckRoundTrip(const std::string& block) {
  for (unsigned flags = 0; flags < 4; ++flags) {
    const std::string text = Encoded(block, flags);
    FUZZ_CHECK(Decoded(text) == block);
    FUZZ_CHECK(!(flags & kBase64NoLineBreaks) || text.find('\r') == std::string::npos);
    for (size_t at = text.find('\r'); at != std::string::npos; at = text.find('\r', at + 1)) {
      FUZZ_CHECK(at % 78 == 76 && text[at + 1] == '\n');
    }
    char fixed[kTextSize];
    LFixedLengthStringWriterTemplate<char> writer(fixed);
    LBase64Encode(block.data(), block.size(), writer, flags);
    FUZZ_CHECK(std::string(fixed, writer.length) == text.substr(0, 259));
  }
}

/// A text decodes as the same text without the bytes that say nothing.
void CheckSkipping(const std::string& text) {
  std::string clean;
  for (const char c : text.substr(0, text.find('\0'))) {
    if (isalnum(static_cast<unsigned char>(c)) || c == '+' || c == '/') clean += c;
  }
  FUZZ_CHECK(Decoded(text) == Decoded(clean));
  FUZZ_CHECK(Decoded(text).size() == clean.size() * 6 / 8);
}

}  // namespace

ORVANE_FUZZ_TARGET(base64) {
  const std::string bytes = FuzzInput(data, size).Rest();
  CheckRoundTrip(bytes);
  CheckSkipping(bytes);
}
