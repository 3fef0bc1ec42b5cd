// Whole folders down and up through the buttons of the window: what arrives, in which order the commands go, the
// questions on the way, and what links, crafted names and lost connections do to a run.
#include <map>

#include "support/environment.h"
#include "ui/transfer_fixture.h"
#include "ui/tree_files.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Relative paths and contents; a folder has a "/" at its end and no content.
std::map<std::string, std::string> TreeOf(const std::string& folder) {
  std::map<std::string, std::string> tree;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const std::string path = entry.path().lexically_relative(folder).string();
    if (entry.is_directory()) {
      tree[path + "/"];
    } else {
      std::ifstream stream(entry.path(), std::ios::binary);
      tree[path].assign(std::istreambuf_iterator<char>(stream), {});
    }
  }
  return tree;
}

class Trees : public TransferTest {};

TEST_F(Trees, AFolderComesAndGoesWholeAndAlone) {
  constexpr TreeSize kSize = {42, 12, 70000};
  MakeTreeOfFiles(Remote("下り"), kSize);
  MakeTreeOfFiles(Local("上り"), kSize);
  StartConnected({"beside there.txt"}, {"beside here.txt"});
  Download({"下り"});
  EXPECT_THAT(TreeDifferences(Remote("下り"), Local("下り"), Times::kCompared), IsEmpty());
  EXPECT_THAT(Names(kLocalList), ElementsAre("上り", "下り", "beside here.txt"));
  Upload({"上り"});
  EXPECT_THAT(TreeDifferences(Local("上り"), Remote("上り"), Times::kCompared), IsEmpty());
  EXPECT_THAT(Messages(), Contains("アップロード完了"));
  EXPECT_THAT(Names(kRemoteList), ElementsAre("上り", "下り", "beside there.txt"));
}

/// All that a job shows, in order: each text behind its level, and after it what the bar does until the next one.
struct Shown : LProcessInterfaceVoid {
  void SetStatus(const char* text, int level) override { all.push_back(std::to_string(level) + " " + text); }
  void SetProgress(double fraction) override {
    char text[kTextSize];
    TextFormat(text, " [%.3f]", fraction);
    all.back() += text;
  }
  void SetProgressIndeterminateOn() override { all.back() += " [on]"; }
  void SetProgressIndeterminateOff() override { all.back() += " [off]"; }
  Texts all;
};

/// Of two blocks, one and none. The list owns the upper line, so that the query for the right to a file shows less when
/// it is made for one of the list. What was collected last is moved first.
TEST_F(Trees, WhatARunOfThreeFilesShows) {
  const std::string local = root + "/local";
  StartConnected();
  LFtpList& pane = Main().remotePane;
  TextCopy(pane.szBaseRemoteDirectory, "/");
  TextCopy(pane.szBaseLocalDirectory, local.c_str());
  FtpDownloadFileList down = {};
  FtpUploadFileList up = {};
  LVector<LStringLongTemplate<char>> paths;
  up.source = &paths;
  down.owner = up.owner = &pane;
  down.protocol = up.protocol = &pane.Ftp;
  down.localFolder = up.localFolder = local.c_str();
  for (const auto& [name, size] : {std::pair("1.txt", 0), std::pair("2.txt", 1024), std::pair("3.txt", 2048)}) {
    MakeRemote(name, std::string(static_cast<size_t>(size), 'x'));
    down.names.Add(LStringLongTemplate<char>(name));
    paths.Add(LStringLongTemplate<char>(Local(name).c_str()));
  }
  Shown ofDownload, ofUpload;
  EXPECT_EQ(Process(ofDownload, down), LProcessResultOk);
  for (const char* name : {"1.txt", "2.txt", "3.txt"}) std::filesystem::remove(Remote(name));
  EXPECT_EQ(Process(ofUpload, up), LProcessResultOk);
  const Texts downwards = {"0 ファイルをダウンロード中...",
                           "0 1個（全3個中）のファイル/フォルダを追加中 [0.000]",
                           "0 2個（全3個中）のファイル/フォルダを追加中 [0.333]",
                           "0 3個（全3個中）のファイル/フォルダを追加中 [0.667]",
                           "0 アクセス許可の取得中 ",
                           "1 データを設定中",
                           "1 コマンドを送信中 [on] [off]",
                           "0 1個（全3個中）のファイルをダウンロード中",
                           "1 リモートファイルをダウンロード中： /3.txt [0.000]",
                           "1 データを設定中",
                           "1 コマンドを送信中",
                           "1 /3.txt",
                           "1 /3.txt:  0% [0.000]",
                           "1 /3.txt: 50% [0.167]",
                           "1 /3.txt: 100% [0.333]",
                           "0 2個（全3個中）のファイルをダウンロード中",
                           "1 リモートファイルをダウンロード中： /2.txt [0.444]",
                           "1 データを設定中",
                           "1 コマンドを送信中",
                           "1 /2.txt",
                           "1 /2.txt:  0% [0.333]",
                           "1 /2.txt: 100% [0.667]",
                           "0 3個（全3個中）のファイルをダウンロード中",
                           "1 リモートファイルをダウンロード中： /1.txt [0.889]",
                           "1 データを設定中",
                           "1 コマンドを送信中",
                           "1 /1.txt",
                           "1 /1.txt:  0% [0.667]"};
  EXPECT_THAT(ofDownload.all, testing::ElementsAreArray(downwards));
  const Texts upwards = {"0 ファイルをアップロード中... [off]",
                         "0 フォルダ/ファイルを追加中 [0.000]",
                         "1 " + Local("1.txt"),
                         "0 フォルダ/ファイルを追加中 [0.333]",
                         "1 " + Local("2.txt"),
                         "0 フォルダ/ファイルを追加中 [0.667]",
                         "1 " + Local("3.txt") + " [off] [0.000]",
                         "0 1個（全3個中）のファイルをアップロード中",
                         "1 " + Local("3.txt") + " [0.000]",
                         "1 3.txt",
                         "1 3.txt [0.000]",
                         "1 3.txt: 50% [0.167]",
                         "1 3.txt: 100% [0.333]",
                         "0 2個（全3個中）のファイルをアップロード中",
                         "1 " + Local("2.txt") + " [0.333]",
                         "1 2.txt",
                         "1 2.txt [0.333]",
                         "1 2.txt: 100% [0.667]",
                         "0 3個（全3個中）のファイルをアップロード中",
                         "1 " + Local("1.txt") + " [0.667]",
                         "1 1.txt",
                         "1 1.txt [0.667]"};
  EXPECT_THAT(ofUpload.all, testing::ElementsAreArray(upwards));
}

struct Entry {
  const char* name;
  const char* file;                            ///< Before "real" in the listing; the server shows "%2F" as "/".
  const char* target;                          ///< Of a link; null for a file.
  std::map<std::string, std::string> arrives;  ///< Of the folder.
  const char* told;
};
void PrintTo(const Entry& entry, std::ostream* out) { *out << entry.name; }

class Entries : public Trees, public testing::WithParamInterface<Entry> {};

TEST_P(Entries, ThatAreNoPlainFiles) {
  const Entry& entry = GetParam();
  MakeRemote("d/a.txt", "a");
  MakeRemote("d/real/x.txt", "x");
  MakeRemote("d/zz.txt", "z");
  if (entry.target) {
    std::filesystem::create_symlink(entry.target, Remote("d/") + entry.file);
  } else {
    MakeRemote(std::string("d/") + entry.file, "evil");
  }
  StartConnected();
  Download({"d"});
  std::map<std::string, std::string> arrives = entry.arrives;
  arrives["d/"];
  EXPECT_EQ(TreeOf(Local()), arrives);
  EXPECT_THAT(Messages(), Contains(HasSubstr(entry.told)));
}

const std::map<std::string, std::string> kBefore = {{"d/a.txt", "a"}};
const std::map<std::string, std::string> kTheRest = {
    {"d/a.txt", "a"}, {"d/real/", ""}, {"d/real/x.txt", "x"}, {"d/zz.txt", "z"}};

std::map<std::string, std::string> WithTheRest(std::map<std::string, std::string> arrives) {
  arrives.insert(kTheRest.begin(), kTheRest.end());
  return arrives;
}

/// A link leads where the server goes; a name that could lead out of the folder ends the collecting.
INSTANTIATE_TEST_SUITE_P(
    Trees, Entries,
    testing::Values(Entry{"LinkToAFolder", "link", "real", WithTheRest({{"d/link/", ""}, {"d/link/x.txt", "x"}}),
                          "順番待ち中のファイル： x.txt"},
                    Entry{"LinkToAFile", "link", "a.txt", WithTheRest({{"d/link", "a"}}),
                          "順番待ち中のファイル： link"},
                    Entry{"FolderWithAnArrow", "a -> b/x.txt", nullptr,
                          WithTheRest({{"d/a -> b/", ""}, {"d/a -> b/x.txt", "evil"}}), "順番待ち中のファイル： x.txt"},
                    Entry{"LinkToNowhere", "link", "nowhere", WithTheRest({}), "中：/d/link"},
                    // Its name ends where the first minus sign is.
                    Entry{"LinkWithoutAName", "-x", "real", WithTheRest({}),
                          "疑わしい名前のファイル（-x -> real）のダウンロードをスキップします"},
                    Entry{"LinkNamedLikeTheFolderAbove",
                          "..-x",
                          "real",
                          {},
                          "疑わしい名前のファイル（..-x -> real）のダウンロードをスキップします"},
                    Entry{"LinkToAnAbsolutePath", "link", "/etc/hosts", kBefore,
                          "疑わしい名前のファイル（link -> /etc/hosts）のダウンロードをスキップします"},
                    Entry{"NameOfTheFolderAbove", "b%2F..%2F..%2Fx.txt", nullptr, kBefore,
                          "疑わしい名前のファイル（b/../../x.txt）のダウンロードをスキップします"},
                    Entry{"NameInAFolder", "b%2Fx.txt", nullptr, kBefore,
                          "疑わしい名前のファイル（b/x.txt）のダウンロードをスキップします"},
                    Entry{"NameWithTheOtherSeparator", "b\\..\\x.txt", nullptr, kBefore,
                          "疑わしい名前のファイル（b\\..\\x.txt）のダウンロードをスキップします"}),
    [](const auto& row) { return std::string(row.param.name); });

/// The walk through a folder ends in it: the file behind it is looked for where it would go.
TEST_F(Trees, AFileBehindAFolderIsAskedAboutToo) {
  MakeLocal("e.txt", "new");
  MakeRemote("e.txt", "old");
  StartConnected({}, {"d/x.txt"});
  alerts.Expect("e.txt\" 既にリモートフォルダに存在します。", "スキップ");
  Upload({"d", "e.txt"});
  EXPECT_EQ(ContentOf(Remote("d/x.txt")), "x");
  EXPECT_EQ(ContentOf(Remote("e.txt")), "old");
}

struct Answer {
  const char* button;
  int check;
  size_t replaced;  ///< Of three files, which are not asked about one by one when the box is set.
  size_t queries;   ///< Of sizes on the server, before anything is sent.
};

class Answers : public Trees, public testing::WithParamInterface<Answer> {};

TEST_P(Answers, ToTheQuestionAboutWhatIsThere) {
  const auto& [button, check, replaced, queries] = GetParam();
  const std::vector<const char*> names = {"a.txt", "b.txt", "c.txt"};
  // The answer holds for one batch: the second download asks again.
  for (const bool down : {true, false, true}) {
    for (const char* name : names) {
      WriteFile(Remote("d/") + name, down ? "new" : "old");
      WriteFile(Local("d/") + name, down ? "old" : "new");
    }
    if (!delegate) StartConnected();
    Press(kLocalGo);
    ExpectUsable();
    for (size_t i = 0; i < (check == 1 ? 1 : names.size()); ++i) {
      const std::string question = "このファイルのコピー \"" + Local("d/") + names[i] +
                                   "\" が既にローカルフォルダ内に存在します。上書きしますか？";
      alerts.Expect(down ? question : "上書きしますか？", button, check);
    }
    NewCommands();
    Transfer(down, {"d"});
    if (!down) {
      EXPECT_EQ(NewCommands({"MLST "}).size(), queries);
    }
    size_t count = 0;
    for (const char* name : names) count += ContentOf((down ? Local("d/") : Remote("d/")) + name) == "new";
    EXPECT_EQ(count, replaced) << (down ? "down" : "up");
  }
}

INSTANTIATE_TEST_SUITE_P(Trees, Answers,
                         testing::Values(Answer{"上書きする", 0, 3, 3}, Answer{"上書きする", 1, 3, 1},
                                         Answer{"スキップ", 0, 0, 3}, Answer{"スキップ", 1, 0, 3}));

/// A server tells its system when a date is looked for.
TEST_F(Trees, FoldersGoUpWithTheSeparatorOfTheServer) {
  const Environment windows("ORVANE_SYSTEM", "Windows_NT"), lacking("ORVANE_LACKING_COMMANDS", "MDTM MLST MLSD");
  StartConnected({"a.txt"}, {"d/low/x.txt"});
  Download({"a.txt"});
  NewCommands();
  Upload({"d"});
  EXPECT_THAT(NewCommands({"MKD "}), ElementsAre("MKD \\d", "MKD \\d\\low"));
  EXPECT_TRUE(Exists(Remote("d/low/x.txt")));
}

struct Naming {
  const char* name;
  const char* noSpaces;
  const char* lowerCase;
  std::string inFolder, beside;  ///< As the two files are called on the server.
};
void PrintTo(const Naming& row, std::ostream* out) { *out << row.name; }

class Namings : public Trees, public testing::WithParamInterface<Naming> {};

TEST_P(Namings, OfFilesAndNotOfFolders) {
  const auto& [name, noSpaces, lowerCase, inFolder, beside] = GetParam();
  Put("Settings/FtpNoSpaces", noSpaces);
  Put("Settings/FtpLowerCase", lowerCase);
  MakeLocal("My Folder/A File.TXT", "new");
  MakeLocal("B File.TXT", "new");
  for (const std::string& old : {"My Folder/" + inFolder, beside}) MakeRemote(old, "old");
  StartConnected({"Comes Down.TXT"});
  alerts.Expect("このファイルのコピー \"" + inFolder + "\" 既に", "上書きする");
  alerts.Expect("このファイルのコピー \"" + beside + "\" 既に", "スキップ");
  Upload({"My Folder", "B File.TXT"});
  Download({"Comes Down.TXT"});
  const std::map<std::string, std::string> arrived = {
      {"My Folder/", ""}, {"My Folder/" + inFolder, "new"}, {beside, "old"}, {"Comes Down.TXT", "x"}};
  EXPECT_EQ(TreeOf(Remote()), arrived);
  EXPECT_TRUE(Exists(Local("Comes Down.TXT")));
}

INSTANTIATE_TEST_SUITE_P(Trees, Namings,
                         testing::Values(Naming{"AsTheyAre", "0", "0", "A File.TXT", "B File.TXT"},
                                         Naming{"NoSpaces", "1", "0", "A_File.TXT", "B_File.TXT"},
                                         Naming{"LowerCase", "0", "1", "a file.txt", "b file.txt"},
                                         Naming{"Both", "1", "1", "a_file.txt", "b_file.txt"}),
                         [](const auto& row) { return std::string(row.param.name); });

/// A link goes up as what it leads to; one that leads nowhere is a file that cannot be read.
TEST_F(Trees, LinksOnTheirWayUp) {
  MakeLocal("folder/x.txt", "x");
  MakeLocal("file.txt", "f");
  std::filesystem::create_symlink("file.txt", Local("to file"));
  std::filesystem::create_directory_symlink("folder", Local("to folder"));
  std::filesystem::create_symlink("nowhere", Local("to nowhere"));
  StartConnected();
  Upload({"to file", "to folder"});
  const std::map<std::string, std::string> arrived = {{"to file", "f"}, {"to folder/", ""}, {"to folder/x.txt", "x"}};
  EXPECT_EQ(TreeOf(Remote()), arrived);
  Upload({"file.txt", "to nowhere"});
  EXPECT_EQ(TreeOf(Remote()), arrived);
  EXPECT_THAT(Messages(), Contains("ファイル一覧をアップロードできません"));
}

struct Cycle {
  const char* name;
  bool isDown;
  size_t length;  ///< Of the link's name.
  long depth;     ///< How often it is followed; -1 for as often as the local path has room for it.
  const char* told;
};
void PrintTo(const Cycle& row, std::ostream* out) { *out << row.name; }

class Cycles : public Trees, public testing::WithParamInterface<Cycle> {};

/// A folder in itself. No path is cut on the way, neither that of a folder nor that of a file.
TEST_P(Cycles, EndWhereAPathDoes) {
  const auto& [name, isDown, length, depth, told] = GetParam();
  const std::string link(length, 'l'), tooLong(240, 'n');
  const std::string from = isDown ? Remote("d/") : Local("d/"), to = isDown ? Local("d") : Remote("d");
  for (const std::string& file : {std::string("a.txt"), tooLong}) WriteFile(from + file, "a");
  std::filesystem::create_directory_symlink(".", from + link);
  StartConnected();
  Transfer(isDown, {"d"});
  long deepest = 0;
  for (const auto& [path, content] : TreeOf(to)) {
    EXPECT_THAT(path, testing::MatchesRegex("(l+/)*(a.txt)?"));
    deepest = std::max<long>(deepest, std::count(path.begin(), path.end(), '/'));
  }
  EXPECT_EQ(deepest, depth >= 0 ? depth : (kTextSize - 1 - Local("d").size()) / (length + 1));
  EXPECT_THAT(Messages(), Contains(HasSubstr(told)));
}

constexpr const char* kTooLong = "パスが長すぎるためスキップします：l";
/// So many links the system follows in one path.
constexpr long kLinks = 40;
INSTANTIATE_TEST_SUITE_P(Trees, Cycles,
                         testing::Values(Cycle{"DownTooLong", true, 60, -1, kTooLong},
                                         Cycle{"UpTooLong", false, 60, -1, kTooLong},
                                         Cycle{"DownTooDeep", true, 1, kLinks, "ディレクトリを変更できません： l"},
                                         Cycle{"UpTooDeep", false, 1, kLinks, "ファイル一覧をアップロードできません"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Trees, AConnectionLostInAFileCostsNoFile) {
  MakeRemote("d/once.bin", RandomBytes(2 * 1024 * 1024));
  MakeRemote("d/a.txt", "a");
  StartConnected();
  Download({"d"});
  EXPECT_EQ(TreeOf(Local("d")), TreeOf(Remote("d")));
}

}  // namespace
