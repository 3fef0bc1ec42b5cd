// Two folders compared through the command of the window.
#include <sstream>

#include "platform/event_loop.h"
#include "ui/two_folders_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Comparison : public TwoFoldersTest {
 protected:
  ~Comparison() override { platform::gEventLoopOftenUs = 1000; }

  /// "a.txt<" is newer here, "a.txt>" there and "a.txt=" level; "a.txt+" is only here, "a.txt-" only there.
  void Make(const std::string& files) {
    std::istringstream stream(files);
    for (std::string name; stream >> name;) {
      const char side = name.back();
      name.pop_back();
      if (side != '-') MakeLocal(name, "x");
      if (side != '-') SetTime(Local(name), side == '<' ? kNew : kOld);
      if (side != '+') MakeRemote(name, "x");
      if (side != '+') SetTime(Remote(name), side == '>' ? kNew : kOld);
    }
  }
  /// Without the dialog: the local names, also of files that the pane does not show.
  Texts CompareWith(LProcessInterface& process) {
    LStringListTemplate<char> found;
    Main().remotePane.CmDirectoryCompare(process, Main().localPane.Folder(), found, true);
    Texts names(found.strings, found.strings + found.count);
    std::erase_if(names, [](const std::string& name) { return name == "." || name == ".."; });
    return names;
  }
};

struct Difference {
  const char* name;
  const char* files;
  Texts here, there;  ///< What is found on the two sides.
};
void PrintTo(const Difference& row, std::ostream* out) { *out << row.name; }

class Differences : public Comparison, public testing::WithParamInterface<Difference> {};

TEST_P(Differences, AreFoundOnBothSides) {
  Make(GetParam().files);
  StartConnected();
  RecordingInterface process;
  EXPECT_EQ(CompareWith(process), GetParam().here);
  EXPECT_EQ(Selected(kRemoteList), GetParam().there);
}

INSTANTIATE_TEST_SUITE_P(
    Comparison, Differences,
    testing::Values(Difference{"Top", "a.txt< b.txt> c.txt= d.txt+ e.txt-", {"a.txt", "d.txt"}, {"b.txt", "e.txt"}},
                    Difference{"NamesByTheByte", "a.txt- A.txt+", {"A.txt"}, {"a.txt"}},
                    Difference{"HiddenAtTheTop", ".b+ .c- a.txt=", {".b"}, {".c"}},
                    Difference{"HiddenInAFolder", "in/.b+ in/a.txt=", {}, {}},
                    Difference{"HiddenInAFolderThere", "in/.c- in/a.txt=", {}, {"in"}},
                    Difference{"LevelInAFolder", "in/a.txt=", {}, {}},
                    Difference{"NewerHereInAFolder", "in/a.txt<", {"in"}, {}},
                    Difference{"OnlyHereInAFolder", "in/a.txt= in/b/c.txt+ in/b/d.txt-", {"in"}, {"in"}},
                    Difference{"NewerThereInAFolder", "in/a.txt>", {}, {"in"}},
                    Difference{"OnlyThereInAFolder", "in/a.txt= in/b.txt-", {}, {"in"}},
                    Difference{"BothInAFolder", "in/a.txt> in/b.txt<", {"in"}, {"in"}},
                    Difference{"BothInAFolderByAbsence", "in/a.txt- in/b.txt+", {"in"}, {"in"}},
                    Difference{"FolderOnlyThere", "there/a.txt- other/a.txt=", {}, {"there"}},
                    Difference{"FileHereFolderThere", "x/a.txt- x+", {"x"}, {"x"}},
                    // What is found in a folder replaces what was found in the one before it.
                    Difference{"TheLastFolderCounts", "in/a/a.txt> in/b/a.txt=", {}, {}},
                    Difference{"FilesComeBehindFolders", "in/a.txt> in/b/a.txt=", {}, {"in"}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(Comparison, SelectsWhatIsFoundAndMovesNothing) {
  Make("in/a.txt> level/a.txt= there/a.txt- a.txt< b.txt> c.txt+");
  StartConnected();
  const auto before = static_cast<std::ptrdiff_t>(Told().size());
  const std::string here = Found(Local()), there = Found(Remote());
  Select(kLocalList, {"level"});
  Main().Command(kCommandCompare, 0);
  EXPECT_THAT(Selected(kLocalList), ElementsAre("a.txt", "c.txt"));
  EXPECT_THAT(Selected(kRemoteList), ElementsAre("in", "there", "b.txt"));
  EXPECT_TRUE(IsEnabled(kUploadButton));
  EXPECT_EQ(PathOf(kRemotePath), "/");
  Texts told = Told();
  told.erase(told.begin(), told.begin() + before);
  EXPECT_THAT(told, ElementsAre("更新中...", "更新終了。", "/inへディレクトリを変更しています",
                                "ディレクトリの変更が完了しました： /in", "更新中...", "更新終了。",
                                "/へディレクトリを変更しています", "/levelへディレクトリを変更しています",
                                "ディレクトリの変更が完了しました： /level", "更新中...", "更新終了。",
                                "/へディレクトリを変更しています"));
  EXPECT_EQ(Found(Local()), here);
  EXPECT_EQ(Found(Remote()), there);
  ExpectUsable();
}

/// Cut, the path of the inner folder would be that of the outer one.
TEST_F(Comparison, AFolderTooDeepForAPathIsNotCompared) {
  Make(std::string(200, 'o') + "/" + std::string(60, 'i') + "/a.txt=");
  StartConnected();
  Main().Command(kCommandCompare, 0);
  EXPECT_EQ(PathOf(kRemotePath), "/");
  EXPECT_THAT(Messages(), Contains(HasSubstr("パスが長すぎるためスキップします")));
  ExpectUsable();
}

/// At whatever step the stop comes.
TEST_F(Comparison, AStopKeepsTheNamesFoundSoFarAndSelectsNothingThere) {
  Make("1/a.txt< 1/b.txt> b.txt> c.txt< d.txt+");
  StartConnected();
  RecordingInterface whole;
  const Texts all = CompareWith(whole);
  EXPECT_THAT(all, ElementsAre("1", "c.txt", "d.txt"));
  EXPECT_THAT(Selected(kRemoteList), ElementsAre("1", "b.txt"));
  size_t most = 0;
  for (int i = 1; i <= whole.Questions(); ++i) {
    SCOPED_TRACE(i);
    Main().LVSelectNone(kRemoteList);
    RecordingInterface process(i);
    const Texts names = CompareWith(process);
    EXPECT_GE(names.size(), most);
    most = std::max(most, names.size());
    EXPECT_EQ(names, Texts(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(names.size())));
    EXPECT_THAT(Selected(kRemoteList), IsEmpty());
    EXPECT_STREQ(Main().remotePane.szCurrentDirectory, "/");
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_GE(most, 2u);
}

TEST_F(Comparison, CancelSelectsTheLocalNamesFoundSoFar) {
  Make("1/a.txt< 1/b.txt>");
  for (int i = 0; i < 100; ++i) Make("2/" + std::to_string(i) + "=");
  StartConnected();
  platform::gEventLoopOftenUs = 0;
  CancelDuring(
      "ディレクトリを比較中", [&] { Main().Command(kCommandCompare, 0); },
      [&](platform::Window*) {
        return strcmp(Main().remotePane.szCurrentDirectory, "/2") == 0 && history.LastCommand().starts_with("MDTM ");
      });
  EXPECT_THAT(Selected(kLocalList), ElementsAre("1"));
  EXPECT_THAT(Selected(kRemoteList), IsEmpty());
  ExpectUsable();
}

/// The pane stays where it is, and then goes up all the same: what follows is compared, and selected, one level above.
TEST_F(Comparison, AFolderThatCannotBeEnteredTakesThePaneUp) {
  MakeLocal("refuse/b.txt", "b");
  StartConnected({"sub/refuse/a.txt", "sub/y.txt", "y.txt", "z.txt"}, {"y.txt"});
  for (const char* name : {"y.txt", "z.txt"}) SetTime(Remote(name), kOld);
  Open(kRemoteList, "sub");
  Main().Command(kCommandCompare, 0);
  EXPECT_STREQ(Main().remotePane.szCurrentDirectory, "/");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("sub", "y.txt", "z.txt"));
  EXPECT_THAT(Selected(kRemoteList), ElementsAre("sub", "z.txt"));
  EXPECT_THAT(Selected(kLocalList), ElementsAre("refuse", "y.txt"));
  EXPECT_THAT(
      Messages(),
      Contains("ディレクトリを「/sub/refuse」に変更できません。ディレクトリ上で許可があるか確認してください。"));
  ExpectUsable();
}

}  // namespace
