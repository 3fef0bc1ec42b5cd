// The dictionary of text by text, a red-black tree: parameters of HTTP, attributes of XML, fields of
// notifications.
//
// A tree owns its nodes and their values, and only grows until it is destroyed as a whole. Iteration is in
// the order of the keys. Nothing locks: a tree belongs to one thread at a time.
#pragma once

#include <cstring>

#include "support/strings.h"

/// A text as a key: compared by its bytes, the null text like the empty one.
template <typename T>
class LStringLongKeyTemplate : public LStringLongTemplate<T> {
 public:
  using LStringLongTemplate<T>::LStringLongTemplate;

  /// As strcmp of this text and the other.
  int Compare(const LStringLongKeyTemplate& other) const { return strcmp(this->Text(), other.Text()); }
};

template <typename K, typename V>
struct LRBTreeNodeItem {
  /// Takes the value over.
  LRBTreeNodeItem(const K& nodeKey, V* nodeValue) : key(nodeKey), value(nodeValue) {}
  LRBTreeNodeItem(const LRBTreeNodeItem&) = delete;
  LRBTreeNodeItem& operator=(const LRBTreeNodeItem&) = delete;
  ~LRBTreeNodeItem() { delete value; }

  static constexpr int kBlack = 0;
  static constexpr int kRed = 1;

  K key;
  V* value;  ///< Owned, from new.
  int color = kRed;
  LRBTreeNodeItem* left = nullptr;
  LRBTreeNodeItem* right = nullptr;
  LRBTreeNodeItem* parent = nullptr;  ///< Null for the root.
};

template <typename K, typename V>
class LRBTree {
 public:
  using Node = LRBTreeNodeItem<K, V>;

  LRBTree() = default;
  LRBTree(const LRBTree&) = delete;
  LRBTree& operator=(const LRBTree&) = delete;
  ~LRBTree() { DeleteNodeTree(root); }

  /// Adds a node from new, behind those of an equal key. The tree owns it.
  void Add(Node* node) {
    Node* parent = nullptr;
    Node** link = &root;
    while (*link) {
      parent = *link;
      link = parent->key.Compare(node->key) < 1 ? &parent->right : &parent->left;
    }
    node->left = node->right = nullptr;
    node->parent = parent;
    node->color = Node::kRed;
    *link = node;
    Rebalance(node);
  }
  /// Takes the value over.
  void Add(const K& key, V* value) { Add(new Node(key, value)); }
  /// Replaces the value of the node that FindNode gives, or adds one. Takes the value over.
  void UpdateOrAdd(const K& key, V* value) {
    Node* node = FindNode(key);
    if (!node) return Add(key, value);
    delete node->value;
    node->value = value;
  }

  /// The first of this key that was added; null if there is none.
  Node* FindNode(const K& key) const {
    Node* found = nullptr;
    for (Node* node = root; node;) {
      const int order = node->key.Compare(key);
      // Equal keys stand in the order of their adding, and a rotation may have lifted a later one above the
      // first.
      if (order == 0) found = node;
      node = order < 0 ? node->right : node->left;
    }
    return found;
  }

  /// The node with the least key; null for an empty tree.
  Node* First() const { return root ? Leftmost(root) : nullptr; }
  /// The node behind `node` in the order of keys; null behind the last.
  static Node* Next(const Node* node) {
    if (node->right) return Leftmost(node->right);
    while (node->parent && node == node->parent->right) node = node->parent;
    return node->parent;
  }
  bool IsEmpty() const { return !root; }

  Node* root = nullptr;

 private:
  static Node* Leftmost(Node* node) {
    while (node->left) node = node->left;
    return node;
  }

  /// In post-order; as deep as the tree, which is twice the logarithm of its size.
  static void DeleteNodeTree(Node* node) {
    if (!node) return;
    DeleteNodeTree(node->left);
    DeleteNodeTree(node->right);
    delete node;
  }

  /// Hangs `child` in the place of `node`.
  void ReplaceChild(Node* node, Node* child) {
    child->parent = node->parent;
    if (!node->parent) {
      root = child;
    } else if (node == node->parent->left) {
      node->parent->left = child;
    } else {
      node->parent->right = child;
    }
  }
  void RotateLeft(Node* node) {
    Node* child = node->right;
    node->right = child->left;
    if (child->left) child->left->parent = node;
    ReplaceChild(node, child);
    child->left = node;
    node->parent = child;
  }
  void RotateRight(Node* node) {
    Node* child = node->left;
    node->left = child->right;
    if (child->right) child->right->parent = node;
    ReplaceChild(node, child);
    child->right = node;
    node->parent = child;
  }

  static bool IsRed(const Node* node) { return node && node->color == Node::kRed; }

  /// Mends the tree above a red node that was just hung in.
  void Rebalance(Node* node) {
    while (IsRed(node->parent)) {
      Node* parent = node->parent;
      Node* grandparent = parent->parent;
      const bool isLeft = parent == grandparent->left;
      Node* uncle = isLeft ? grandparent->right : grandparent->left;
      if (IsRed(uncle)) {
        parent->color = uncle->color = Node::kBlack;
        grandparent->color = Node::kRed;
        node = grandparent;
        continue;
      }
      // An inner grandchild is first turned outwards, and then the parent takes the grandparent's place.
      if (isLeft && node == parent->right) RotateLeft(parent);
      if (!isLeft && node == parent->left) RotateRight(parent);
      Node* top = isLeft ? grandparent->left : grandparent->right;
      top->color = Node::kBlack;
      grandparent->color = Node::kRed;
      if (isLeft) {
        RotateRight(grandparent);
      } else {
        RotateLeft(grandparent);
      }
      break;
    }
    root->color = Node::kBlack;
  }
};

/// A dictionary of text by text. The name tells its use; it is a tree.
template <typename T>
class LHashTableTemplate : public LRBTree<LStringLongKeyTemplate<T>, LStringLongTemplate<T>> {
 public:
  /// Sets the value of `name`, of its first node if there are several. A null name is ignored; a null value
  /// is empty.
  void SetParmBottom(const T* name, const T* value);
  /// The first value of `name`; null if there is none. Valid until that value is set again.
  const T* GetParm(const T* name) const;
  /// True exactly for a value that begins with `1`, so not for the word; `defaultValue` for an absent or
  /// empty value.
  bool GetBool(const T* name, bool defaultValue) const;

  /// Adds the pairs of a URL's query text. A repeated name is kept, a name without a sign of equality has an
  /// empty value, and a pair with an empty name is dropped.
  void LoadHTTPString(const T* text);
  /// The same: the decoder works on bytes, so that both give UTF-8.
  void LoadHTTPStringUTF8(const T* text) { LoadHTTPString(text); }
};
