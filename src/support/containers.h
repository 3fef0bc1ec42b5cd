// The containers: a growing array, a block of bytes, a chain that owns its nodes, and a linear map.
//
// Each owns what it holds and frees it with itself. None checks an index and none locks: a container belongs
// to one thread at a time, or to the lock of its owner. Running out of memory ends the process, except in the
// operations named Large, which leave the container empty instead.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>

#include "support/memory.h"
#include "support/text.h"

/// A growing array. `T` needs a default constructor and an assignment: all of the capacity is constructed.
template <typename T>
class LVector {
 public:
  LVector() = default;
  LVector(const LVector&) = delete;
  LVector& operator=(const LVector&) = delete;
  LVector(LVector&& other) noexcept { Swap(other); }
  LVector& operator=(LVector&& other) noexcept {
    Swap(other);
    return *this;
  }
  ~LVector() { delete[] data; }

  /// Exactly `n` elements of room. Keeps the first `n` elements and drops the others; 0 frees the array.
  void SetArrayCapacity(size_t n) {
    if (capacity == n) return;
    T* fresh = n != 0 ? new T[n] : nullptr;
    const size_t kept = std::min(size, n);
    std::move(data, data + kept, fresh);
    Take(fresh, kept, n);
  }
  /// Exactly `n` zeroed elements of room and none in use. No effect if the capacity is `n` already.
  void SetArrayCapacityNoCopy(size_t n) {
    if (capacity == n) return;
    Take(n != 0 ? new T[n]() : nullptr, 0, n);
  }
  /// By value, so that an element of this vector may be added to it.
  void Add(T value) {
    if (capacity < size + 1) SetArrayCapacity(std::max(size + 1, capacity * 2));
    data[size++] = std::move(value);
  }

  /// SetArrayCapacity for bytes that may be many. On failure the vector is empty with no capacity.
  void SetArrayCapacityLarge(size_t n) {
    static_assert(sizeof(T) == 1 && std::is_trivial_v<T>, "for vectors of bytes");
    if (capacity == n) return;
    T* fresh = n != 0 ? reinterpret_cast<T*>(LMemoryLargeArrayNew(n)) : nullptr;
    if (!fresh) return Take(nullptr, 0, 0);
    const size_t kept = std::min(size, n);
    std::copy_n(data, kept, fresh);
    Take(fresh, kept, n);
  }
  /// Makes `n` bytes the size; added bytes are not initialised. On failure as SetArrayCapacityLarge.
  void SetSizeLarge(size_t n) {
    if (n > capacity) SetArrayCapacityLarge(std::max(capacity * 2, n));
    if (n <= capacity) size = n;
  }

  T& operator[](size_t index) { return data[index]; }
  const T& operator[](size_t index) const { return data[index]; }
  T* begin() { return data; }
  T* end() { return data + size; }
  const T* begin() const { return data; }
  const T* end() const { return data + size; }

  T* data = nullptr;    ///< Owned, from array new; null exactly while the capacity is 0.
  size_t size = 0;      ///< Elements in use.
  size_t capacity = 0;  ///< Elements allocated.

 private:
  void Take(T* fresh, size_t newSize, size_t newCapacity) {
    delete[] data;
    data = fresh;
    size = newSize;
    capacity = newCapacity;
  }
  void Swap(LVector& other) {
    std::swap(data, other.data);
    std::swap(size, other.size);
    std::swap(capacity, other.capacity);
  }
};

template <typename T>
void LAddToVector(LVector<T>& vector, std::type_identity_t<T> value) {
  vector.Add(std::move(value));
}

/// A block of bytes that is handed around whole.
template <typename T>
class LSizedArray {
  static_assert(sizeof(T) == 1 && std::is_trivial_v<T>, "a block of bytes");

 public:
  LSizedArray() = default;
  LSizedArray(const LSizedArray&) = delete;
  LSizedArray& operator=(const LSizedArray&) = delete;
  ~LSizedArray() { delete[] data; }

  /// Replaces the block by one of `n` bytes, not initialised. The block is empty afterwards if there is no
  /// memory.
  void SetArrayCapacityLarge(size_t n) {
    delete[] data;
    data = n != 0 ? reinterpret_cast<T*>(LMemoryLargeArrayNew(n)) : nullptr;
    size = data ? n : 0;
  }

  T* data = nullptr;  ///< Owned, from array new; null when empty.
  size_t size = 0;
};

/// How two items of a list stand: below 0 if `a` goes before `b`, above 0 if behind it, never 0. The owner of
/// an item type that is sorted specialises this beside the type.
template <typename T>
int LListArrayComparePtr(const T* a, const T* b);

/// A chain of nodes. A node is the item itself: `T` has a pointer `next` to `T`, which the list sets. The
/// list owns its nodes, which come from new.
template <typename T>
class LList {
 public:
  LList() = default;
  LList(const LList&) = delete;
  LList& operator=(const LList&) = delete;
  ~LList() { Clear(); }

  void Clear() {
    while (first) {
      T* item = first;
      first = item->next;
      delete item;
    }
  }
  void AddHead(T* item) {
    item->next = first;
    first = item;
  }
  /// Walks the whole chain: whoever adds many keeps to AddHead.
  void AddTail(T* item) { InsertAt(End(), item); }
  /// Puts the item before the first one behind which it must not stand.
  void AddOrdered(T* item) {
    T** link = &first;
    while (*link && LListArrayComparePtr<T>(item, *link) > 0) link = &(*link)->next;
    InsertAt(link, item);
  }
  void Sort() {
    const size_t count = Count();
    if (count < 2) return;
    const std::unique_ptr<T*[]> items(new T*[count]);
    size_t filled = 0;
    for (T* item = first; item; item = item->next) items[filled++] = item;
    // Asked this way round, a comparison that never answers "equal" is a strict order, and equal items stay
    // as they stood.
    std::stable_sort(items.get(), items.get() + count,
                     [](const T* a, const T* b) { return LListArrayComparePtr<T>(b, a) > 0; });
    T** link = &first;
    for (size_t i = 0; i < count; ++i) {
      *link = items[i];
      link = &items[i]->next;
    }
    *link = nullptr;
  }
  /// Takes the first node off; null if there is none. The caller owns it.
  [[nodiscard]] T* RemoveHead() {
    T* item = first;
    if (item) first = item->next;
    return item;
  }
  size_t Count() const {
    size_t count = 0;
    for (const T* item = first; item; item = item->next) ++count;
    return count;
  }
  bool IsEmpty() const { return !first; }

  T* first = nullptr;

 private:
  T** End() {
    T** link = &first;
    while (*link) link = &(*link)->next;
    return link;
  }
  static void InsertAt(T** link, T* item) {
    item->next = *link;
    *link = item;
  }
};

/// The key of a map by text: case sensitive, cut to 259 bytes, so that longer keys with the same beginning
/// are one.
template <typename T>
struct LMapStringKeyTemplate {
  LMapStringKeyTemplate(const T* key) { TextCopy(text, key); }
  bool operator==(const LMapStringKeyTemplate& other) const { return strcmp(text, other.text) == 0; }

  T text[kTextSize];
};

template <typename K, typename V>
struct LMapNode {
  LMapNode* next = nullptr;
  K key;
  V value;
};

/// A linear map: iteration from `first` yields the latest key first. `K` is int, long or
/// LMapStringKeyTemplate.
template <typename K, typename V>
class LMap : public LList<LMapNode<K, V>> {
 public:
  using Node = LMapNode<K, V>;

  /// The node with this key; null if there is none.
  Node* FindNode(const K& key) {
    Node* node = this->first;
    while (node && !(node->key == key)) node = node->next;
    return node;
  }
  const Node* FindNode(const K& key) const { return const_cast<LMap*>(this)->FindNode(key); }
  void SetValue(const K& key, V value) {
    if (Node* node = FindNode(key)) {
      node->value = std::move(value);
    } else {
      this->AddHead(new Node{nullptr, key, std::move(value)});
    }
  }
  /// False if there is no such key.
  bool Remove(const K& key) {
    for (Node** link = &this->first; *link; link = &(*link)->next) {
      if (!((*link)->key == key)) continue;
      Node* node = *link;
      *link = node->next;
      delete node;
      return true;
    }
    return false;
  }
};
