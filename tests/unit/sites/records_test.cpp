#include "sites/store/records.h"

#include "support/settings_fixture.h"

namespace {

using List = LUserSettingsListTemplate<LSharedSettingsRecord>;

class Records : public SettingsFixture {};

TEST_F(Records, TestAndDeleteFieldsUnderTheirPrimaryKey) {
  LSharedSettingsRecord record = Open("a/b/");
  record.SetString("Field", "");
  Put("b/Field", "x");
  EXPECT_TRUE(record.TestFieldExists("Field"));
  record.DeleteField("Field");
  EXPECT_FALSE(record.TestFieldExists("Field"));
  EXPECT_EQ(Field(record, "Field"), "");

  TextCopy(record.szPrimaryKey, record.szKeyPath);
  EXPECT_TRUE(record.TestFieldExists("Field")) << "an empty value counts";
  record.DeleteField("Field");
  EXPECT_FALSE(record.TestFieldExists("Field"));
  EXPECT_EQ(Field(record, "Field"), kAbsent);
}

TEST_F(Records, ExistByAFieldOrAChildMarker) {
  const LSharedSettingsRecord list = List("L");
  Put("L/marked/", "marked");
  Put("L/field/f", "");
  Put("L/child/c/", "c");
  Put("L/deep/c/f", "");
  EXPECT_FALSE(list.TestSubRecordExists("marked"));
  EXPECT_TRUE(list.TestSubRecordExists("field"));
  EXPECT_TRUE(list.TestSubRecordExists("FIELD"));
  EXPECT_TRUE(list.TestSubRecordExists("child"));
  EXPECT_FALSE(list.TestSubRecordExists("deep"));
  EXPECT_FALSE(list.TestSubRecordExists("fiel"));
  Put("L/twice//", "");
  EXPECT_TRUE(list.TestSubRecordExists("twice")) << "a child without a name";
}

TEST_F(Records, DeleteThemselvesAndSubRecords) {
  for (const char* path : {"L/a/", "L/a/x/", "L/a/x/y/", "L/a b/", "L/b/"}) Open(path).SetString("f", "1");
  EXPECT_TRUE(Open("L/a/").DeleteSubRecord("x"));
  EXPECT_EQ(Walk(List("L")), (Texts{"a", "a b", "b"}));
  EXPECT_EQ(Walk(List("L/a")), (Texts{"f"}));
  EXPECT_TRUE(Open("L/a/").DeleteRecord());
  EXPECT_EQ(Walk(List("L")), (Texts{"a b", "b"}));
}

TEST_F(Records, MoveToAnotherPrimaryKey) {
  LSharedSettingsRecord record = Open("L/a/");
  record.SetString("f", "1");
  record.SetPrimaryKey("b");
  EXPECT_STREQ(record.szKeyPath, "L/b");
  record.SetString("g", "2");
  record.SetPrimaryKey("c");
  EXPECT_EQ(All(), (Texts{"L/=L", "L/c/=c", "L/c/f=1", "L/c/g=2"}));

  LSharedSettingsRecord unmarked = Open("L/u/");
  Put("L/u/f", "1");
  unmarked.SetPrimaryKey("v");
  EXPECT_STREQ(unmarked.szPrimaryKey, "v");
  EXPECT_STREQ(unmarked.szKeyPath, "L/u/");
  EXPECT_EQ(Raw("L/u/f"), "1");
}

TEST_F(Records, TakeTheFirstNumberWithoutAMarker) {
  for (const char* key : {"L/1/", "L/2/f", "L/3/"}) Put(key, "x");
  LSharedSettingsRecord record;
  List("L").CreateNewRecord(record);
  EXPECT_STREQ(record.szKeyPath, "L/2/");
  Put("L/2/", "2");
  List("L").CreateNewRecord(record);
  EXPECT_STREQ(record.szPrimaryKey, "4");
}

TEST_F(Records, WalkInOrderWithoutRegardToCase) {
  for (const char* key :
       {"L/", "L/b/x", "L/b/", "L/a", "L/aB/y/z", "L/aB", "L/10/", "L/2/", "L//skipped", "l/c", "LL/d"}) {
    Put(key, "");
  }
  EXPECT_EQ(Walk(List("L")), (Texts{"10", "2", "a", "aB", "b", "c"}));
  Put("L/AB/other case", "");
  AccountIterator it{List("L")};
  for (int i = 0; i < 6; ++i) it.Advance();
  EXPECT_TRUE(it.IsAtEnd()) << "names that differ by case are one";
  it.Advance();
  EXPECT_TRUE(it.IsAtEnd()) << "an empty name must not begin the walk again";
  EXPECT_STREQ(it.record.szKeyPath, "");
  char next[kTextSize];
  EXPECT_TRUE(_LSettingPlistGetNextKey(kCFPreferencesCurrentUser, "L/", "AA", next));
  EXPECT_STRCASEEQ(next, "ab");
  EXPECT_FALSE(_LSettingPlistGetNextKey(kCFPreferencesCurrentUser, "L/", "c", next));
  EXPECT_STREQ(next, "");
}

TEST_F(Records, MayGoAndComeDuringTheWalk) {
  for (const char* name : {"a", "b", "c", "d"}) Open(std::string("L/") + name + "/").SetString("f", name);
  Texts seen;
  for (AccountIterator it{List("L")}; !it.IsAtEnd(); it.Advance()) {
    seen.emplace_back(it.szName);
    it.record.DeleteRecord();
    if (seen.back() == "b") Open("L/c/").DeleteRecord();
    if (seen.back() == "b") Open("L/bb/").SetString("f", "new");
  }
  EXPECT_EQ(seen, (Texts{"a", "b", "bb", "d"}));
  EXPECT_EQ(All(), (Texts{"L/=L"}));
}

}  // namespace
