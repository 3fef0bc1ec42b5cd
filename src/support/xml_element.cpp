// Reading a document into its tree.
#include <strings.h>

#include "support/xml.h"

namespace {

using Loader = LXMLLoaderTemplate<char>;

constexpr char kUnnamed[] = "名前の無い<を間違えて使っています。必要に応じて「<」では無く「&lt;」を使ってください。";
constexpr char kTagUnfinished[] = "<%s>タグの終わり山括弧（>）がありません";
constexpr char kEndMissing[] =
    "(EOF) Element <%s> should be terminated with </%s>. Check you have terminated your element properly.";
constexpr char kEndOfAnother[] =
    "Element <%s> should be terminated with </%s>, was with %s. "
    "Check you have terminated your element properly.";
constexpr char kEndMisplaced[] = "Misplaced </%s> which does not match a <%s>.";

constexpr size_t kFirstTextCapacity = 32;

char* NewCopy(const char* text, size_t size) {
  char* copy = new char[size + 1];
  if (size != 0) memcpy(copy, text, size);
  copy[size] = 0;
  return copy;
}

bool EndsWith(const LStringLongTemplate<char>& text, const char* end) {
  const size_t size = strlen(end);
  return text.length >= size && memcmp(text.Text() + text.length - size, end, size) == 0;
}

void DropLast(LStringLongTemplate<char>& text, size_t size) {
  if (size == 0) return;
  text.length -= size;
  text.data[text.length] = 0;
}

}  // namespace

/// Reads the content of elements. The open ones stand in a list, not on the stack, so that no document is
/// nested too deeply.
class LXMLTreeReader {
 public:
  LXMLTreeReader(Loader& state, LXMLElement& root) : loader(state) { Open(root); }

  void Read() {
    content.GrowToSize(kFirstTextCapacity);
    while (open.size != 0) {
      ReadNext();
      if (loader.IsToStop()) return;
    }
  }

 private:
  struct OpenElement {
    LXMLElement* element;
    LXMLElement** end;  ///< Where the next child is hung in.
  };

  LXMLElement& Current() { return *open[open.size - 1].element; }

  void Open(LXMLElement& element) {
    element.children.Clear();
    open.Add({&element, &element.children.first});
  }
  void Close() {
    FlushText();
    --open.size;
  }
  void Append(LXMLElement* child) {
    LXMLElement**& end = open[open.size - 1].end;
    *end = child;
    end = &child->next;
  }

  void ReadNext() {
    const char c = loader.GetChar();
    switch (c) {
      case '<': return ReadTag();
      case '&': {
        char character[kTextSize];
        XMLAmpChar(loader, character);
        return content.Append(character);
      }
      case 0:
        if (const char* name = Current().tagName) loader.SetError(kEndMissing, name, name);
        return Close();
      default: return content.Append(c);
    }
  }

  void ReadTag() {
    char name[kTextSize];
    const char ended = XMLLoadTag(loader, name);
    if (name[0] == 0) {
      if (ended == '/') {
        ReadEndTag();
      } else {
        loader.SetError("%s", kUnnamed);
      }
      return Close();
    }
    FlushText();
    LXMLElement* child = new LXMLElement(name);
    child->preserveSpace = Current().preserveSpace;
    Append(child);
    if (child->LoadTag(loader, ended)) Open(*child);
  }

  void ReadEndTag() {
    char name[kTextSize];
    char ended = XMLLoadTag(loader, name);
    const char* own = Current().tagName;
    if (!own) {
      loader.SetError(kEndMisplaced, name, name);
    } else if (strcmp(own, name) != 0) {
      loader.SetError(kEndOfAnother, own, own, name);
    }
    while (ended != '>' && ended != 0) ended = loader.GetChar();
  }

  /// The text gathered so far becomes a node of the current element.
  void FlushText() {
    if (content.length != 0) {
      if (!Current().preserveSpace) LStringTrimFormatting(content.data);
      const size_t size = strlen(content.data);
      if (size != 0) Append(LXMLElement::NewText(content.data, size));
    }
    content.length = 0;
  }

  Loader& loader;
  LVector<OpenElement> open;          ///< From the root inwards.
  LStringLongTemplate<char> content;  ///< Text of the innermost one since its last child.
};

LXMLElement::LXMLElement(const char* name) : tagName(NewCopy(name, strlen(name))) {}

LXMLElement* LXMLElement::NewText(const char* content, size_t size) {
  LXMLElement* node = new LXMLElement;
  node->text = NewCopy(content, size);
  return node;
}

LXMLElement::~LXMLElement() {
  // A child hands its own children over before it goes: otherwise a deep tree would be destroyed on a deep
  // stack.
  while (LXMLElement* child = children.RemoveHead()) {
    LXMLElement** end = &child->children.first;
    while (*end) end = &(*end)->next;
    *end = children.first;
    children.first = child->children.first;
    child->children.first = nullptr;
    delete child;
  }
  delete[] tagName;
  delete[] text;
}

void LXMLElement::LoadData(Loader& loader) { LXMLTreeReader(loader, *this).Read(); }

bool LXMLElement::LoadTag(Loader& loader, char ended) {
  if (tagName[0] == '!') {
    LoadRaw(loader, ended);
    return false;
  }
  bool isSelfClosing = false;
  while (ended != '>') {
    if (ended == 0) {
      loader.SetError(kTagUnfinished, tagName);
      return false;
    }
    if (ended == '/') isSelfClosing = true;
    ended = LoadAttribute(loader);
  }
  return !isSelfClosing && tagName[0] != '?';
}

/// Reads one attribute; returns the byte that ended it.
char LXMLElement::LoadAttribute(Loader& loader) {
  char name[kTextSize];
  LStringLongTemplate<char> value;
  char ended = XMLLoadTag(loader, name);
  if (ended == ' ' && loader.PeekChar() == '=') ended = loader.GetChar();
  if (ended == '=') ended = XMLLoadAttribute(loader, value);
  if (name[0] == 0) return ended;
  if (strcasecmp(name, "xml:space") == 0) {
    preserveSpace = true;
    return ended;
  }
  // What closes a declaration hangs on its last value.
  if (ended == '>' && EndsWith(value, "?")) DropLast(value, 1);
  attributes.SetParmBottom(name, value.Text());
  return ended;
}

/// Reads the raw text behind a name with an exclamation mark; it becomes the only child.
void LXMLElement::LoadRaw(Loader& loader, char ended) {
  const bool isComment = strcmp(tagName, "!--") == 0;
  const bool isData = strcmp(tagName, "![CDATA[") == 0;
  const bool isNameWhole = isComment || isData || strcmp(tagName, "!DOCTYPE") == 0;
  const char* const closing = isComment ? "--" : isData ? "]]" : "";
  LStringLongTemplate<char> content;
  bool isBracketed = false;
  // The name of any other declaration was ended by a byte that belongs to the content.
  for (char c = isNameWhole ? loader.GetChar() : ended;; c = loader.GetChar()) {
    if (c == 0) {
      loader.SetError(kEndMissing, tagName, tagName);
      break;
    }
    if (c == '>' && !isBracketed && EndsWith(content, closing)) {
      DropLast(content, strlen(closing));
      break;
    }
    if (!isComment && !isData && (c == '[' || c == ']')) isBracketed = c == '[';
    content.Append(c);
  }
  children.AddHead(NewText(content.Text(), content.length));
}
