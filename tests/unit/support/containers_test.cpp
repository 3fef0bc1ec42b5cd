#include "support/containers.h"

#include <gtest/gtest.h>
#include <string>

#include "support/strings.h"

namespace {

struct Name {
  Name* next = nullptr;
  LStringLongTemplate<char> text;
  int arrival = 0;
  int* alive = nullptr;  ///< Counts the names that are not yet destroyed.

  ~Name() {
    if (alive) --*alive;
  }
};

Name* MakeName(const char* text, int arrival = 0, int* alive = nullptr) {
  Name* name = new Name;
  name->text = text;
  name->arrival = arrival;
  name->alive = alive;
  if (alive) ++*alive;
  return name;
}

std::string Joined(const LList<Name>& list) {
  std::string joined;
  for (const Name* name = list.first; name; name = name->next) {
    joined += name->text.Text();
    if (name->arrival != 0) joined += std::to_string(name->arrival);
    joined += ' ';
  }
  return joined;
}

}  // namespace

template <>
int LListArrayComparePtr(const Name* a, const Name* b) {
  return strcmp(a->text, b->text) <= 0 ? -1 : 1;
}

namespace {

TEST(Vector, GrowsToTheDoubleWhenAnElementIsAdded) {
  LVector<int> vector;
  EXPECT_EQ(vector.data, nullptr);
  const size_t capacities[] = {1, 2, 4, 4, 8, 8, 8, 8, 16};
  int value = 0;
  for (const size_t capacity : capacities) {
    LAddToVector(vector, value++);
    EXPECT_EQ(vector.capacity, capacity) << value;
  }
  EXPECT_EQ(vector.size, 9u);
  for (int i = 0; i < 9; ++i) EXPECT_EQ(vector[static_cast<size_t>(i)], i);
}

TEST(Vector, SetArrayCapacityCutsAndFrees) {
  LVector<LStringLongTemplate<char>> vector;
  for (const char* text : {"a", "b", "c"}) LAddToVector(vector, LStringLongTemplate<char>(text));
  vector.SetArrayCapacity(7);
  EXPECT_EQ(vector.size, 3u);
  vector.SetArrayCapacity(2);
  EXPECT_EQ(vector.size, 2u);
  EXPECT_EQ(vector.capacity, 2u);
  EXPECT_STREQ(vector[1].Text(), "b");
  vector.Add(vector[0]);
  EXPECT_STREQ(vector[2].Text(), "a") << "an element of its own, added as the array grows";
  EXPECT_STREQ(vector[0].Text(), "a");
  vector.SetArrayCapacity(0);
  EXPECT_EQ(vector.data, nullptr);
  EXPECT_EQ(vector.size, 0u);
  EXPECT_EQ(vector.capacity, 0u);
}

TEST(Vector, SetArrayCapacityNoCopyZeroesAndForgets) {
  LVector<int> vector;
  LAddToVector(vector, 7);
  vector.SetArrayCapacityNoCopy(1);
  EXPECT_EQ(vector.size, 1u) << "the capacity is there already: nothing happens";
  vector.SetArrayCapacityNoCopy(3);
  EXPECT_EQ(vector.size, 0u);
  for (size_t i = 0; i < 3; ++i) EXPECT_EQ(vector.data[i], 0);
  vector.SetArrayCapacityNoCopy(0);
  EXPECT_EQ(vector.data, nullptr);
}

TEST(Vector, SetSizeLargeDoublesAndKeepsTheBytes) {
  LVector<unsigned char> bytes;
  struct {
    size_t size;
    size_t capacity;
  } rows[] = {{10, 10}, {11, 20}, {20, 20}, {21, 40}, {100, 100}, {5, 100}};
  for (const auto& row : rows) {
    bytes.SetSizeLarge(row.size);
    EXPECT_EQ(bytes.size, row.size);
    EXPECT_EQ(bytes.capacity, row.capacity);
    bytes[row.size - 1] = static_cast<unsigned char>(row.size);
  }
  EXPECT_EQ(bytes[9], 10);
  EXPECT_EQ(bytes[19], 20);
  EXPECT_EQ(bytes[20], 21);
  bytes.SetArrayCapacityLarge(10);
  EXPECT_EQ(bytes.size, 5u);
  EXPECT_EQ(bytes[4], 5);
  bytes.SetArrayCapacityLarge(0);
  EXPECT_EQ(bytes.data, nullptr);
}

TEST(List, OwnsItsNodes) {
  int alive = 0;
  {
    LList<Name> list;
    for (const char* text : {"a", "b", "c"}) list.AddHead(MakeName(text, 0, &alive));
    list.AddTail(MakeName("z", 0, &alive));
    EXPECT_EQ(Joined(list), "c b a z ");
    EXPECT_EQ(list.Count(), 4u);
    delete list.RemoveHead();
    EXPECT_EQ(Joined(list), "b a z ");
    EXPECT_EQ(alive, 3);
    list.Clear();
    EXPECT_EQ(alive, 0);
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.RemoveHead(), nullptr);
    list.AddTail(MakeName("last", 0, &alive));
  }
  EXPECT_EQ(alive, 0);
}

TEST(List, SortsByTheRuleOfItsItems) {
  struct {
    const char* name;
    std::vector<const char*> texts;
    const char* sorted;
  } rows[] = {
      {"empty", {}, ""},
      {"one", {"a"}, "a1 "},
      {"by bytes", {"b", "B", "あ", "a", "10", "9"}, "105 96 B2 a4 b1 あ3 "},
      {"equal ones as they stood", {"x", "a", "x", "a", "x"}, "a2 a4 x1 x3 x5 "},
  };
  for (const auto& row : rows) {
    LList<Name> list;
    int arrival = 0;
    for (const char* text : row.texts) list.AddTail(MakeName(text, ++arrival));
    list.Sort();
    EXPECT_EQ(Joined(list), row.sorted) << row.name;
  }
}

TEST(List, AddOrderedGoesBeforeTheFirstItMustNotFollow) {
  LList<Name> list;
  int arrival = 0;
  for (const char* text : {"m", "z", "a", "m", "q"}) list.AddOrdered(MakeName(text, ++arrival));
  // An equal item must not stand behind: the later comes first.
  EXPECT_EQ(Joined(list), "a3 m4 m1 q5 z2 ");
  // A chain that is not in order is not mended.
  LList<Name> loose;
  for (const char* text : {"b", "z", "c"}) loose.AddTail(MakeName(text));
  loose.AddOrdered(MakeName("d"));
  EXPECT_EQ(Joined(loose), "b d z c ");
}

TEST(Map, UpdatesInPlaceAndAddsAtTheHead) {
  LMap<int, LStringLongTemplate<char>> map;
  EXPECT_EQ(map.FindNode(1), nullptr);
  map.SetValue(1, LStringLongTemplate<char>("one"));
  map.SetValue(2, LStringLongTemplate<char>("two"));
  map.SetValue(1, LStringLongTemplate<char>("uno"));
  ASSERT_EQ(map.Count(), 2u);
  EXPECT_EQ(map.first->key, 2);
  EXPECT_STREQ(map.first->next->value.Text(), "uno");
  EXPECT_TRUE(map.Remove(1));
  EXPECT_FALSE(map.Remove(1));
  EXPECT_EQ(map.Count(), 1u);
}

TEST(Map, CutsATextKeyAt259Bytes) {
  LMap<LMapStringKeyTemplate<char>, long> map;
  const std::string common(259, 'k');
  map.SetValue("Key", 1);
  map.SetValue("key", 2);
  map.SetValue((common + "A").c_str(), 3);
  map.SetValue((common + "B").c_str(), 4);
  ASSERT_EQ(map.Count(), 3u);
  EXPECT_EQ(map.FindNode("Key")->value, 1);
  EXPECT_EQ(map.FindNode(common.c_str())->value, 4);
  EXPECT_EQ(map.FindNode(common.substr(1).c_str()), nullptr);
}

}  // namespace
