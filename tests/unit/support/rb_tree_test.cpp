#include "support/rb_tree.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

using Table = LHashTableTemplate<char>;
using Key = LStringLongKeyTemplate<char>;
using Value = LStringLongTemplate<char>;
using Node = Table::Node;

void Add(Table& table, const std::string& key, const std::string& value) {
  table.Add(Key(key.c_str()), new Value(value.c_str()));
}

std::vector<std::string> Pairs(const Table& table) {
  std::vector<std::string> pairs;
  for (const Node* node = table.First(); node; node = Table::Next(node)) {
    pairs.push_back(std::string(node->key.Text()) + "=" + node->value->Text());
  }
  return pairs;
}

/// The number of black nodes on every way down from `node`; a failure if the ways or the colours are wrong.
int BlackHeight(const Node* node) {
  if (!node) return 1;
  for (const Node* child : {node->left, node->right}) {
    if (!child) continue;
    EXPECT_EQ(child->parent, node);
    EXPECT_FALSE(node->color == Node::kRed && child->color == Node::kRed) << "a red child of a red node";
  }
  const int left = BlackHeight(node->left);
  EXPECT_EQ(left, BlackHeight(node->right)) << "at " << node->key.Text();
  return left + (node->color == Node::kBlack ? 1 : 0);
}

void ExpectSound(const Table& table) {
  if (!table.root) return;
  EXPECT_EQ(table.root->parent, nullptr);
  EXPECT_EQ(table.root->color, Node::kBlack);
  BlackHeight(table.root);
}

TEST(Tree, StaysBalancedAndOrderedWhateverTheOrderOfAdding) {
  enum Order { kRising, kFalling, kShuffled, kManyEqual };
  for (const Order order : {kRising, kFalling, kShuffled, kManyEqual}) {
    SCOPED_TRACE(order);
    std::vector<std::string> keys;
    for (int i = 0; i < 2000; ++i) keys.push_back(std::to_string(10000 + (order == kManyEqual ? i % 7 : i)));
    if (order == kFalling) std::reverse(keys.begin(), keys.end());
    if (order == kShuffled) std::shuffle(keys.begin(), keys.end(), std::mt19937(7));
    Table table;
    std::vector<std::string> expected;
    for (size_t i = 0; i < keys.size(); ++i) {
      Add(table, keys[i], std::to_string(i));
      if (i < 40) ExpectSound(table);
    }
    ExpectSound(table);
    // Equal keys stay in the order of their adding.
    std::vector<size_t> positions(keys.size());
    for (size_t i = 0; i < positions.size(); ++i) positions[i] = i;
    std::stable_sort(positions.begin(), positions.end(), [&](size_t a, size_t b) { return keys[a] < keys[b]; });
    for (const size_t at : positions) expected.push_back(keys[at] + "=" + std::to_string(at));
    EXPECT_EQ(Pairs(table), expected);
    for (const size_t at : {size_t{0}, size_t{5}, size_t{6}, size_t{1999}}) {
      const Node* found = table.FindNode(Key(keys[at].c_str()));
      ASSERT_NE(found, nullptr);
      const size_t first = static_cast<size_t>(std::find(keys.begin(), keys.end(), keys[at]) - keys.begin());
      EXPECT_STREQ(found->value->Text(), std::to_string(first).c_str()) << "the first of its key";
    }
    EXPECT_EQ(table.FindNode(Key("nothing")), nullptr);
  }
}

TEST(Tree, ComparesANullKeyAsTheEmptyText) {
  Table table;
  table.Add(Key(), new Value("null"));
  Add(table, "", "empty");
  EXPECT_EQ(Pairs(table), (std::vector<std::string>{"=null", "=empty"}));
  EXPECT_STREQ(table.FindNode(Key(""))->value->Text(), "null");
}

TEST(Table, SetsTheFirstOfItsName) {
  Table table;
  table.SetParmBottom(nullptr, "ignored");
  EXPECT_TRUE(table.IsEmpty());
  EXPECT_EQ(table.GetParm("a"), nullptr);
  table.SetParmBottom("b", "1");
  table.SetParmBottom("a", "2");
  table.SetParmBottom("B", "3");
  table.SetParmBottom("b", "4");
  EXPECT_EQ(Pairs(table), (std::vector<std::string>{"B=3", "a=2", "b=4"}));
  EXPECT_STREQ(table.GetParm("b"), "4");
}

TEST(Table, ReadsABoolByItsFirstByte) {
  struct {
    const char* value;  ///< Null for an absent one.
    bool whenTrue;      ///< The answer with the default true.
    bool whenFalse;
  } rows[] = {
      {nullptr, true, false}, {"", true, false},   {"1", true, true},      {"10", true, true},
      {"0", false, false},    {"2", false, false}, {"true", false, false}, {" 1", false, false},
  };
  for (const auto& row : rows) {
    Table table;
    if (row.value) table.SetParmBottom("key", row.value);
    EXPECT_EQ(table.GetBool("key", true), row.whenTrue) << (row.value ? row.value : "absent");
    EXPECT_EQ(table.GetBool("key", false), row.whenFalse) << (row.value ? row.value : "absent");
  }
}

TEST(Table, LoadsAQueryText) {
  struct {
    const char* text;
    std::vector<std::string> pairs;
  } rows[] = {
      {"", {}},
      {"b=2&a=1", {"a=1", "b=2"}},
      {"name&other=&third", {"name=", "other=", "third="}},
      {"=dropped&&&=&a=1&", {"a=1"}},
      {"a=1=2&b==", {"a=1=2", "b=="}},
      {"a%3Db=c%26d&%E6%97%A5+x=%2B", {"a=b=c&d", "日 x=+"}},
      {"a=1&a=2&a=3", {"a=1", "a=2", "a=3"}},
      {"a=1&b=%4", {"a=1", "b="}},
  };
  for (const auto& row : rows) {
    Table table;
    table.LoadHTTPString(row.text);
    EXPECT_EQ(Pairs(table), row.pairs) << row.text;
    Table utf8;
    utf8.LoadHTTPStringUTF8(row.text);
    EXPECT_EQ(Pairs(utf8), row.pairs) << row.text;
  }
}

TEST(Table, KeepsARepeatedNameAndGivesItsFirstValue) {
  Table table;
  table.LoadHTTPString("z=0&n=1&n=2&n=3&o=4&p=5");
  EXPECT_STREQ(table.GetParm("n"), "1");
  table.SetParmBottom("n", "set");
  EXPECT_EQ(Pairs(table), (std::vector<std::string>{"n=set", "n=2", "n=3", "o=4", "p=5", "z=0"}));
}

TEST(Table, LoadsNamesAndValuesOfAnyLength) {
  const std::string name(9000, 'n');
  const std::string value(40000, 'v');
  Table table;
  table.LoadHTTPString((name + "=" + value).c_str());
  EXPECT_STREQ(table.GetParm(name.c_str()), value.c_str());
}

}  // namespace
