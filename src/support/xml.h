// A small forgiving reader and writer of XML, for settings files.
//
// A document is read in memory into a tree of LXMLElement and saved from it, indented by tabs. Nothing is
// validated and namespaces are not known. The first error is noted with its line and column, and reading goes
// on as well as it can. Depth costs no stack: documents of any nesting are read, saved and destroyed.
//
// A document belongs to one thread.
#pragma once

#include "support/containers.h"
#include "support/rb_tree.h"
#include "support/strings.h"
#include "support/text.h"

// Of the process model, which lies above: here they are only handed through (core/xml_load.cpp).
class LProcessInterface;
enum LProcessResult : int;

/// The state of one parse. The error buffer is the caller's and is empty at the start.
template <typename T>
struct LXMLLoaderTemplate {
  explicit LXMLLoaderTemplate(T (&errorText)[kTextSize]) : error(errorText) {}

  /// The next byte; 0 at the end, without advancing. A carriage return, a line feed and either pair of them
  /// come back as one line feed.
  T GetChar();
  /// The byte that stands next in the text, as it stands there.
  T PeekChar() const { return text.Text()[position]; }
  /// Notes the error with the present line and column, unless one is noted already.
  void SetError(const char* format, ...) __attribute__((format(printf, 2, 3)));
  /// Asks at most once for each 512 bytes that were read. A stop stays one.
  bool IsToStop();

  LStringLongTemplate<T> text;  ///< UTF-8, read up to its first zero byte.
  T (&error)[kTextSize];
  size_t position = 0;
  long line = 1;
  long column = 1;                       ///< In bytes.
  LProcessInterface* process = nullptr;  ///< Not owned; null if nobody can stop the parse.
  /// Asks `process`; goes with it.
  bool (*pAskToStop)(LProcessInterface& process) = nullptr;
  size_t askedAt = 0;  ///< Position of the last question.
  bool bStopped = false;
};

// The lexical steps.

/// Reads a name and returns the byte that ended it: a blank, tab, line feed, `/`, `=`, `>`, or 0 at the end
/// of the text. "!--", "!DOCTYPE" and "![CDATA[" end by themselves. Quotes are taken off. Cuts the name.
char XMLLoadTag(LXMLLoaderTemplate<char>& loader, char (&name)[kTextSize]);
/// Reads what stands behind an equals sign, in quotes or without; returns the byte that ended it.
char XMLLoadAttribute(LXMLLoaderTemplate<char>& loader, LStringLongTemplate<char>& value);
/// Reads what stands behind a `&`, up to its semicolon. An entity that is not known gives a `&`.
void XMLAmpChar(LXMLLoaderTemplate<char>& loader, char (&out)[kTextSize]);

/// Encodes `<`, `>`, `&` and the double quote, and nothing else. For any writer of support/strings.h; the
/// caller terminates.
template <typename Writer>
void LHTMLEncodeToWriterSimple(Writer& writer, const char* text);

/// A node. With a tag name it is an element, with a text it is a text node, and with neither it is a
/// document. A comment, a character data section and a document type are the elements "!--", "![CDATA[" and
/// "!DOCTYPE", each with one text node for its raw content; the declaration is the element "?xml".
class LXMLElement {
 public:
  /// A document.
  LXMLElement() = default;
  explicit LXMLElement(const char* name);
  /// A text node from new, of `size` bytes without a zero.
  [[nodiscard]] static LXMLElement* NewText(const char* content, size_t size);
  LXMLElement(const LXMLElement&) = delete;
  LXMLElement& operator=(const LXMLElement&) = delete;
  ~LXMLElement();

  /// Replaces the children by what is read up to the end tag of this element, or up to the end of the text
  /// for a document.
  void LoadData(LXMLLoaderTemplate<char>& loader);
  /// Appends this element or text node. `indent` is the depth; below 0 nothing is formatted from here on.
  /// False if there was nothing to write, as for a document itself.
  bool SaveToBuffer(LStringLongTemplate<char>& out, int indent) const;

  bool IsText() const { return text != nullptr; }

  LXMLElement* next = nullptr;  ///< Set by the list that owns this node.
  bool preserveSpace = false;   ///< xml:space was seen here or further out.
  LHashTableTemplate<char> attributes;
  LList<LXMLElement> children;
  char* tagName = nullptr;  ///< Owned, from array new; null for a text node and a document.
  char* text = nullptr;     ///< Owned, from array new; null but for a text node.

 private:
  friend class LXMLTreeReader;

  /// Reads on behind the tag's name, which `ended` ended. True if children and an end tag follow.
  bool LoadTag(LXMLLoaderTemplate<char>& loader, char ended);
  char LoadAttribute(LXMLLoaderTemplate<char>& loader);
  void LoadRaw(LXMLLoaderTemplate<char>& loader, char ended);
};

class LXMLDocument : public LXMLElement {
 public:
  /// Appends all of the document, ready to be a file.
  void SaveAll(LStringLongTemplate<char>& out) const;
  /// 1 if the user stopped the reading, which leaves a part of the tree, and 2 with a text in `error` if the
  /// file could not be read; else 0. A syntax error is no failure: it leaves its text in `error`, which the
  /// caller tests, and what was read in the tree. Defined in core/xml_load.cpp, beside what it asks.
  LProcessResult LoadFromFile(LProcessInterface& process, const char* path, char (&error)[kTextSize]);
};
