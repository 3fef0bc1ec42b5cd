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

TEST(Vector, GrowsIsCutAndFreed) {
  LVector<LStringLongTemplate<char>> vector;
  for (int i = 0; i < 9; ++i) LAddToVector(vector, LStringLongTemplate<char>(std::to_string(i).c_str()));
  ASSERT_EQ(vector.size, 9u);
  for (size_t i = 0; i < 9; ++i) EXPECT_STREQ(vector[i].Text(), std::to_string(i).c_str());
  vector.SetArrayCapacity(2);
  EXPECT_EQ(vector.size, 2u);
  vector.Add(vector[1]);
  EXPECT_STREQ(vector[2].Text(), "1") << "an element of its own, added as the array grows";
  vector.SetArrayCapacity(0);
  EXPECT_EQ(vector.data, nullptr);
  EXPECT_EQ(vector.size, 0u);
}

TEST(Vector, OfBytesGrowsToTheDoubleOrForgets) {
  LVector<unsigned char> bytes;
  for (const size_t size : {10u, 11u, 20u, 21u, 5u}) {
    bytes.SetSizeLarge(size);
    EXPECT_EQ(bytes.size, size);
    bytes[size - 1] = static_cast<unsigned char>(size);
  }
  EXPECT_EQ(bytes.capacity, 40u);
  EXPECT_EQ(std::string(bytes.data + 9, bytes.data + 11), "\x0A\x0B");
  bytes.SetArrayCapacityNoCopy(40);
  EXPECT_EQ(bytes.size, 5u) << "the capacity is there already: nothing happens";
  bytes.SetArrayCapacityNoCopy(41);
  EXPECT_EQ(bytes.size, 0u);
  EXPECT_EQ(bytes.data[9], 0);
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
  EXPECT_EQ(Joined(list), "a3 m4 m1 q5 z2 ") << "an equal item must not stand behind: the later comes first";
}

TEST(Map, UpdatesInPlaceAndAddsAtTheHead) {
  LMap<LMapStringKeyTemplate<char>, long> map;
  const std::string common(259, 'k');
  map.SetValue("Key", 1);
  map.SetValue((common + "A").c_str(), 2);
  map.SetValue("key", 3);
  map.SetValue((common + "B").c_str(), 4);
  ASSERT_EQ(map.Count(), 3u);
  EXPECT_STREQ(map.first->key.text, "key");
  EXPECT_EQ(map.FindNode("Key")->value, 1);
  EXPECT_EQ(map.FindNode(common.c_str())->value, 4) << "a key is cut at 259 bytes";
  EXPECT_TRUE(map.Remove("Key"));
  EXPECT_FALSE(map.Remove("Key"));
  EXPECT_EQ(map.FindNode("Key"), nullptr);
}

}  // namespace
