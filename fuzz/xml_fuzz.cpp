// XML: any bytes are read and saved, what was saved is read and saved again as the same text, and any text
// comes back from an attribute.
#include <string>
#include <strings.h>
#include <vector>

#include "fuzz_target.h"
#include "input.h"
#include "support/xml.h"

namespace {

struct Parsed {
  explicit Parsed(const std::string& text) : loader(error) {
    loader.text.Append(text.data(), text.size());
    document.LoadData(loader);
  }
  std::string Saved() const {
    LStringLongTemplate<char> out;
    document.SaveAll(out);
    return out.Text();
  }

  char error[kTextSize] = {};
  LXMLLoaderTemplate<char> loader;
  LXMLDocument document;
};

/// Lines and columns are those of the text up to the reader's position.
void CheckPosition(const LXMLLoaderTemplate<char>& loader, const std::string& text) {
  long line = 1;
  long column = 1;
  for (size_t at = 0; at < loader.position; ++at, ++column) {
    const char c = text[at];
    if (c != '\r' && c != '\n') continue;
    const bool isPair = at + 1 < loader.position && text[at + 1] != c && strchr("\r\n", text[at + 1]);
    if (isPair) ++at;
    ++line;
    column = 0;
  }
  FUZZ_CHECK(loader.line == line && loader.column == column);
}

/// True for a name that is read back as it is written: quotes, references and what ends a name are not
/// encoded.
bool IsPlainName(const char* name) {
  const size_t mark = name[0] == '!' || name[0] == '?' ? 1 : 0;
  return name[mark] && name[strcspn(name, " \t\n\r/=>\"'&")] == 0 && !strpbrk(name + mark, "!?");
}

bool HasPlainAttributes(const LXMLElement& element) {
  const bool isDeclaration = strcmp(element.tagName, "?xml") == 0;
  using Tree = LHashTableTemplate<char>;
  for (const Tree::Node* node = element.attributes.First(); node; node = Tree::Next(node)) {
    const char* name = node->key.Text();
    const char* value = node->value->Text();
    const size_t length = strlen(value);
    if (!IsPlainName(name) || strchr("!?", name[0])) return false;
    // A question mark before the end of a tag is taken for a declaration's.
    if (length != 0 && value[length - 1] == '?') return false;
    // The version is written as it stands, and only if it says something; its other spellings are not.
    const bool isVersion = isDeclaration && strcasecmp(name, "version") == 0;
    if (isVersion && (strcmp(name, "version") != 0 || !value[0] || strpbrk(value, "\"&"))) return false;
  }
  return true;
}

/// Without recursion, as the tree may be of any depth.
bool IsPlainTree(const LXMLDocument& document) {
  std::vector<const LXMLElement*> waiting;
  const auto add = [&waiting](const LXMLElement& parent) {
    for (const LXMLElement* child = parent.children.first; child; child = child->next) waiting.push_back(child);
  };
  add(document);
  while (!waiting.empty()) {
    const LXMLElement& element = *waiting.back();
    waiting.pop_back();
    if (!element.tagName) continue;
    if (!IsPlainName(element.tagName) || !HasPlainAttributes(element)) return false;
    // In another spelling it is read to the first bracket, but closed as character data.
    if (strcasecmp(element.tagName, "![CDATA[") == 0 && strcmp(element.tagName, "![CDATA[") != 0) return false;
    // Nothing parts such a name from its closing mark.
    if (element.tagName[0] == '?' && element.attributes.IsEmpty()) return false;
    add(element);
  }
  return true;
}

/// One saving drops white space and settles line ends; from then on nothing changes any more.
void CheckRoundTrip(const Parsed& parsed) {
  const std::string saved = parsed.Saved();
  if (parsed.error[0] || !IsPlainTree(parsed.document) || saved.size() > 100000) return;
  const Parsed once(saved);
  FUZZ_CHECK(once.error[0] == 0);
  const std::string again = once.Saved();
  FUZZ_CHECK(Parsed(again).Saved() == again);
}

/// The text as it is after a reading: line ends settled.
std::string Settled(const std::string& text) {
  std::string settled;
  for (size_t at = 0; at < text.size(); ++at) {
    const bool isLineEnd = text[at] == '\r' || text[at] == '\n';
    settled += isLineEnd ? '\n' : text[at];
    const char next = at + 1 < text.size() ? text[at + 1] : 0;
    if (isLineEnd && next != text[at] && (next == '\r' || next == '\n')) ++at;
  }
  return settled;
}

/// Any text comes back from an attribute.
void CheckValue(const std::string& value) {
  LXMLDocument document;
  LXMLElement* element = new LXMLElement("Section");
  document.children.AddHead(element);
  element->attributes.SetParmBottom("value", value.c_str());
  LStringLongTemplate<char> out;
  document.SaveAll(out);
  const Parsed parsed(out.Text());
  FUZZ_CHECK(parsed.error[0] == 0);
  const LXMLElement* read = parsed.document.children.first;
  FUZZ_CHECK(read && !read->next);
  FUZZ_CHECK(read && read->attributes.GetParm("value") == Settled(value));
}

}  // namespace

ORVANE_FUZZ_TARGET(xml) {
  FuzzInput input(data, size);
  const std::string text = input.Text();
  const Parsed parsed(text);
  FUZZ_CHECK(parsed.loader.position <= text.size());
  FUZZ_CHECK(parsed.error[0] == 0 || strncmp(parsed.error, "Ln ", 3) == 0);
  FUZZ_CHECK(parsed.error[0] != 0 || parsed.loader.position == text.size());
  CheckPosition(parsed.loader, text);
  CheckRoundTrip(parsed);
  CheckValue(text);
}
