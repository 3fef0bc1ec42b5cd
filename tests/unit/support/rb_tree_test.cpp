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

TEST(Table, SetsAndGivesTheFirstOfItsName) {
  Table table;
  table.SetParmBottom(nullptr, "ignored");
  EXPECT_TRUE(table.IsEmpty());
  EXPECT_EQ(table.GetParm("n"), nullptr);
  table.LoadHTTPString("z=0&n=1&n=2&n=3&o=4");
  EXPECT_STREQ(table.GetParm("n"), "1");
  table.SetParmBottom("n", "set");
  table.SetParmBottom("N", "new");
  EXPECT_EQ(Pairs(table), (std::vector<std::string>{"N=new", "n=set", "n=2", "n=3", "o=4", "z=0"}));
}

TEST(Table, ReadsABoolByItsFirstByte) {
  Table table;
  table.LoadHTTPString("empty=&one=10&two=2");
  for (const bool otherwise : {false, true}) {
    EXPECT_EQ(table.GetBool("absent", otherwise), otherwise);
    EXPECT_EQ(table.GetBool("empty", otherwise), otherwise);
    EXPECT_TRUE(table.GetBool("one", otherwise));
    EXPECT_FALSE(table.GetBool("two", otherwise));
  }
}

TEST(Table, LoadsAQueryText) {
  const std::string much(9000, 'n');
  struct {
    std::string text;
    std::vector<std::string> pairs;
  } rows[] = {
      {"", {}},
      {"name&other=&third", {"name=", "other=", "third="}},
      {"=dropped&&&=&a=1&", {"a=1"}},
      {"a=1=2&b==", {"a=1=2", "b=="}},
      {"a%3Db=c%26d&%E6%97%A5+x=%2B", {"a=b=c&d", "日 x=+"}},
      {"a=1&b=%4", {"a=1", "b="}},
      {much + "=" + much, {much + "=" + much}},
  };
  for (const auto& row : rows) {
    Table table;
    table.LoadHTTPString(row.text.c_str());
    EXPECT_EQ(Pairs(table), row.pairs) << row.text;
    Table utf8;
    utf8.LoadHTTPStringUTF8(row.text.c_str());
    EXPECT_EQ(Pairs(utf8), row.pairs) << row.text;
  }
}

}  // namespace
