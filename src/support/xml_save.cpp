// Saving a tree.
#include <algorithm>
#include <strings.h>

#include "support/ascii.h"
#include "support/xml.h"

namespace {

using Text = LStringLongTemplate<char>;

/// Deeper elements are indented no further: the tabs of a hostile document would grow with its size squared.
constexpr int kIndentLimit = 1000;

bool IsBlank(const char* text) { return text[strspn(text, "\t\n\r ")] == 0; }

void Encode(Text& out, const char* text) {
  LStringLongTemplateWriter<char> writer(out);
  LHTMLEncodeToWriterSimple(writer, text);
  out.data[out.length] = 0;
}

void WriteTabs(Text& out, int indent) {
  for (int i = std::min(indent, kIndentLimit); i > 0; --i) out.Append('\t');
}

void WriteLineEnd(Text& out, int indent) {
  if (indent >= 0) out.Append('\n');
}

/// Line by line, each line end as a line feed.
bool WriteText(Text& out, const char* text) {
  if (!text || IsBlank(text)) return false;
  Text lines;
  for (; *text; ++text) {
    const bool isLineEnd = IsLineEnd(*text);
    lines.Append(isLineEnd ? '\n' : *text);
    if (isLineEnd && IsLineEnd(text[1]) && text[1] != *text) ++text;
  }
  Encode(out, lines.Text());
  return true;
}

/// The rest of a name with an exclamation mark: its content as it is, and what closes it.
void WriteRaw(Text& out, const LXMLElement& element) {
  for (const LXMLElement* child = element.children.first; child; child = child->next) {
    if (child->text) out.Append(child->text);
  }
  if (strcmp(element.tagName, "!--") == 0) {
    out.Append("-->");
  } else {
    out.Append(strcasecmp(element.tagName, "![CDATA[") == 0 ? "]]>" : ">");
  }
}

void WriteAttributes(Text& out, const LXMLElement& element) {
  const bool isDeclaration = strcmp(element.tagName, "?xml") == 0;
  const char* version = isDeclaration ? element.attributes.GetParm("version") : nullptr;
  if (version && *version) {
    out.Append(" version=\"");
    out.Append(version);
    out.Append('"');
  }
  using Tree = LHashTableTemplate<char>;
  for (const Tree::Node* node = element.attributes.First(); node; node = Tree::Next(node)) {
    if (isDeclaration && strcasecmp(node->key, "version") == 0) continue;
    out.Append(' ');
    out.Append(node->key.Text());
    out.Append("=\"");
    Encode(out, node->value->Text());
    out.Append('"');
  }
}

bool HasElement(const LXMLElement& element) {
  const LXMLElement* child = element.children.first;
  while (child && !child->tagName) child = child->next;
  return child != nullptr;
}

bool HasWrittenText(const LXMLElement& element) {
  const LXMLElement* child = element.children.first;
  while (child && (!child->text || IsBlank(child->text))) child = child->next;
  return child != nullptr;
}

/// An element whose opening tag is written.
struct OpenElement {
  const LXMLElement* element;
  const LXMLElement* child;  ///< The next to be written.
  int indent;
  bool hasElement;
};

/// True if children are to follow; otherwise the element is written whole.
bool WriteOpening(Text& out, const LXMLElement& element, int indent, bool hasElement) {
  WriteTabs(out, indent);
  out.Append('<');
  out.Append(element.tagName);
  const bool isRaw = element.tagName[0] == '!';
  if (isRaw) {
    WriteRaw(out, element);
  } else {
    WriteAttributes(out, element);
    if (hasElement || HasWrittenText(element)) {
      out.Append('>');
      if (hasElement) WriteLineEnd(out, indent);
      return true;
    }
    out.Append(element.tagName[0] == '?' ? "?>" : "/>");
  }
  WriteLineEnd(out, indent);
  return false;
}

void WriteClosing(Text& out, const OpenElement& open) {
  if (open.hasElement) WriteTabs(out, open.indent);
  out.Append("</");
  out.Append(open.element->tagName);
  out.Append(">\n");
}

void WriteNode(Text& out, const LXMLElement& node, int indent, LVector<OpenElement>& open) {
  if (!node.tagName) {
    WriteText(out, node.text);
    return;
  }
  const bool hasElement = HasElement(node);
  if (WriteOpening(out, node, indent, hasElement)) {
    open.Add({&node, node.children.first, indent, hasElement});
  }
}

}  // namespace

template <typename Writer>
void LHTMLEncodeToWriterSimple(Writer& writer, const char* text) {
  for (; *text; ++text) {
    switch (*text) {
      case '<': tplstrcpy(writer, "&lt;"); break;
      case '>': tplstrcpy(writer, "&gt;"); break;
      case '"': tplstrcpy(writer, "&quot;"); break;
      case '&': tplstrcpy(writer, "&amp;"); break;
      default: writer.Put(*text);
    }
  }
}

template void LHTMLEncodeToWriterSimple(LStringLongTemplateWriter<char>&, const char*);
template void LHTMLEncodeToWriterSimple(LStringLongTemplateAppender<char>&, const char*);
template void LHTMLEncodeToWriterSimple(LFixedLengthStringWriterTemplate<char>&, const char*);

bool LXMLElement::SaveToBuffer(Text& out, int indent) const {
  if (!tagName) return WriteText(out, text);
  // A list of the open elements, not a recursion: a deep tree costs no stack.
  LVector<OpenElement> open;
  WriteNode(out, *this, indent, open);
  while (open.size != 0) {
    OpenElement& innermost = open[open.size - 1];
    if (!innermost.child) {
      WriteClosing(out, innermost);
      --open.size;
      continue;
    }
    const LXMLElement& child = *innermost.child;
    innermost.child = child.next;
    WriteNode(out, child, innermost.indent < 0 ? -1 : innermost.indent + 1, open);
  }
  return true;
}

void LXMLDocument::SaveAll(Text& out) const {
  for (const LXMLElement* child = children.first; child; child = child->next) child->SaveToBuffer(out, 0);
}
