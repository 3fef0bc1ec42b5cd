// The URI codec: what is encoded decodes to itself, in few characters, and any text decodes within its
// bounds.
#include "fuzz_target.h"
#include "input.h"
#include "support/codecs.h"
#include "support/rb_tree.h"

namespace {

using Writer = LStringLongTemplateWriter<char>;

std::string Encoded(const std::string& text) {
  LStringLongTemplate<char> out;
  Writer writer(out);
  LURIEncodeToWriterDirect(writer, text.c_str());
  return std::string(out.Text(), out.length);
}

/// Decodes and says how far it came.
std::string Decoded(const std::string& text, const char* stops, size_t& consumed) {
  LStringLongTemplate<char> out;
  Writer writer(out);
  consumed = LURIDecodeToWriterDirect(writer, text.c_str(), stops);
  return std::string(out.Text(), out.length);
}

void CheckRoundTrip(const std::string& text) {
  const std::string encoded = Encoded(text);
  for (const char c : encoded) FUZZ_CHECK(isalnum(static_cast<unsigned char>(c)) || strchr("!-._~%", c));
  size_t consumed = 0;
  FUZZ_CHECK(Decoded(encoded, "=&", consumed) == text);
  FUZZ_CHECK(consumed == encoded.size());
}

void CheckDecoding(const std::string& text) {
  size_t consumed = 0;
  const std::string whole = Decoded(text, "", consumed);
  FUZZ_CHECK(consumed == text.size());
  FUZZ_CHECK(whole.size() <= text.size());
  const std::string part = Decoded(text, "=&", consumed);
  FUZZ_CHECK(consumed <= text.size());
  FUZZ_CHECK(consumed == text.size() || strchr("=&", text[consumed]));
  FUZZ_CHECK(whole.compare(0, part.size(), part) == 0);

  char fixed[kTextSize];
  LFixedLengthStringWriterTemplate<char> writer(fixed);
  FUZZ_CHECK(LURIDecodeToWriterDirect(writer, text.c_str()) == text.size());
  FUZZ_CHECK(std::string(fixed, writer.length) == whole.substr(0, 259));
}

/// Every pair that a query text gives is found again in the query text made from it.
void CheckQuery(const std::string& text) {
  LHashTableTemplate<char> table;
  table.LoadHTTPString(text.c_str());
  std::string again;
  for (auto* node = table.First(); node; node = table.Next(node)) {
    again += Encoded(node->key.Text()) + "=" + Encoded(node->value->Text()) + "&";
  }
  LHashTableTemplate<char> second;
  second.LoadHTTPString(again.c_str());
  auto* copy = second.First();
  for (auto* node = table.First(); node; node = table.Next(node), copy = second.Next(copy)) {
    FUZZ_CHECK(copy);
    if (!copy) return;
    FUZZ_CHECK(strcmp(copy->key, node->key) == 0);
    FUZZ_CHECK(strcmp(copy->value->Text(), node->value->Text()) == 0);
  }
  FUZZ_CHECK(!copy);
}

}  // namespace

ORVANE_FUZZ_TARGET(uri) {
  const std::string text = FuzzInput(data, size).Text();
  CheckRoundTrip(text);
  CheckDecoding(text);
  CheckQuery(text);
}
