// XML in tests: parsing from memory, and trees as texts that a test can compare.
#pragma once

#include <string>

#include "support/xml.h"

/// A document from memory with the error its reading left.
struct ParsedXml {
  explicit ParsedXml(const std::string& text) {
    LXMLLoaderTemplate<char> loader(error);
    loader.text.Append(text.data(), text.size());
    document.LoadData(loader);
  }
  std::string Saved() const {
    LStringLongTemplate<char> out;
    document.SaveAll(out);
    return out.Text();
  }

  char error[kTextSize] = {};
  LXMLDocument document;
};

/// Children as `name(attribute=value ...)[children]`, text nodes in quotes. Not for deep trees.
inline std::string XmlTree(const LXMLElement& parent) {
  using Tree = LHashTableTemplate<char>;
  std::string tree;
  for (const LXMLElement* child = parent.children.first; child; child = child->next) {
    if (!tree.empty()) tree += ' ';
    if (child->IsText()) {
      tree += std::string("'") + child->text + "'";
      continue;
    }
    tree += child->tagName;
    std::string attributes;
    for (const Tree::Node* node = child->attributes.First(); node; node = Tree::Next(node)) {
      if (!attributes.empty()) attributes += ' ';
      attributes += std::string(node->key.Text()) + "=" + node->value->Text();
    }
    if (!attributes.empty()) tree += "(" + attributes + ")";
    if (child->children.first) tree += "[" + XmlTree(*child) + "]";
  }
  return tree;
}
