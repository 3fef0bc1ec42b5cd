// Two folders brought level through the command of the window.
#include <optional>

#include "support/environment.h"
#include "support/settable_clock.h"
#include "ui/two_folders_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

constexpr const char* kQuestion = "同期します。よろしいですか？";
constexpr const char* kBegins = "同期中...作業には数分かかる場合があります。";
constexpr const char* kLevel = "同期が完了しました。";

class TwoFolders : public TwoFoldersTest {
 protected:
  void Synchronise() {
    alerts.Expect(kQuestion, "同期する");
    Press(kSynchroniseButton);
  }
  /// The same without dialog and questions: a test sees what the dialog is told, and stops at a step of its choice.
  void SynchroniseWith(LProcessInterface& process) {
    LFtpList& pane = Main().remotePane;
    pane.bSyncNoPrompt = pane.bOverwriteYes = pane.bOverwriteForAll = true;
    LVector<LStringLongTemplate<char>> files;
    Main().localPane.GetFiles(files);
    pane.CmSynchronize(process, Main().localPane.Folder(), files);
    EXPECT_FALSE(gbSynchronizing);
  }
  static bool HasCome(const std::string& path, uintmax_t bytes) {
    std::error_code none;
    const auto there = std::filesystem::file_size(path, none);
    return !none && there >= bytes;
  }
};

/// A server must not get a file that lies beside the folder by telling its name.
TEST_F(TwoFolders, ANameThatLeadsOutOfTheFolderEndsARunBeforeAnythingMoves) {
  WriteFile(root + "/secret.txt", "secret");
  MakeRemote("..%2Fsecret.txt", "");
  MakeRemote("secret.txt", "");
  SetTime(Remote("secret.txt"), kOld);
  StartConnected({"z.txt"}, {"a.txt"});
  Synchronise();
  EXPECT_THAT(Messages(), Contains("疑わしい名前のファイル（../secret.txt）のダウンロードをスキップします"));
  EXPECT_EQ(ContentOf(Remote("secret.txt")), "");
  EXPECT_EQ(history.Count("STOR "), 0u);
  EXPECT_EQ(history.Count("RETR "), 0u);
  ExpectUsable();
}

TEST_F(TwoFolders, AFolderThatTheServerMarksByASlashDoesNotEndARun) {
  MakeBoth("marked/same.txt", kOld, kOld);
  MakeRemote("marked%2F", "");
  for (const std::string& folder : {Local("marked"), Remote("marked")}) SetTime(folder, kOld);
  StartConnected({}, {"mine.txt"});
  Synchronise();
  EXPECT_EQ(ContentOf(Remote("mine.txt")), "x");
  EXPECT_THAT(Messages(), Not(Contains(HasSubstr("疑わしい名前"))));
}

TEST_F(TwoFolders, TheNewerSideWinsAndWhatIsMissingIsCopied) {
  MakeBoth("remote-newer.txt", kOld, kNew);
  MakeBoth("local-newer.txt", kNew, kOld);
  MakeBoth("same.txt", kOld, kOld);
  MakeRemote("remote-only.txt", "r");
  MakeLocal("local-only.txt", "l");
  StartConnected({}, {"folder/deep/x.txt"});
  alerts.Expect(kQuestion, "同期する", 1);
  alerts.Expect("\"local-newer.txt\" 既にリモートフォルダに存在します。上書きしますか？", "上書きする");
  alerts.Expect("remote-newer.txt\" が既にローカルフォルダ内に存在します。上書きしますか？", "上書きする");
  Press(kSynchroniseButton);
  EXPECT_EQ(Found(Local()),
            "folder/deep/x.txt=x local-newer.txt=local local-only.txt=l remote-newer.txt=remote remote-only.txt=r "
            "same.txt=local");
  EXPECT_EQ(Found(Remote()),
            "folder/deep/x.txt=x local-newer.txt=local local-only.txt=l remote-newer.txt=remote remote-only.txt=r "
            "same.txt=remote");
  for (const int list : {kLocalList, kRemoteList}) {
    EXPECT_THAT(Names(list), ElementsAre("folder", "local-newer.txt", "local-only.txt", "remote-newer.txt",
                                         "remote-only.txt", "same.txt"));
  }
  EXPECT_FALSE(gbSynchronizing);
  ExpectUsable();
}

TEST_F(TwoFolders, ARunTellsWhatItDoes) {
  MakeBoth("old.txt", kOld, kNew);
  MakeRemote("new/a.txt", "a");
  MakeLocal("own/b.txt", "b");
  MakeLocal("mine.txt", "m");
  StartConnected();
  const auto before = static_cast<std::ptrdiff_t>(Told().size());
  RecordingInterface process;
  SynchroniseWith(process);
  Texts actions, items;
  for (const auto& [level, text] : process.Statuses()) (level == 0 ? actions : items).push_back(text);
  EXPECT_THAT(actions,
              ElementsAre("ダウンロード一覧を作成中", "ファイル一覧をダウンロード中", "アクセス許可の取得中 ",
                          "1個（全2個中）のファイルをダウンロード中", "2個（全2個中）のファイルをダウンロード中",
                          "アップロード一覧を作成中", "ファイルをアップロード中...",
                          "1個（全2個中）のファイルをアップロード中", "2個（全2個中）のファイルをアップロード中"));
  EXPECT_THAT(items, Contains("エラーを確認中"));
  Texts told = Told();
  told.erase(told.begin(), told.begin() + before);
  EXPECT_THAT(told,
              ElementsAre(kBegins, "順番待ち中のファイル： a.txt", "順番待ち中のファイル： old.txt",
                          "ファイルのダウンロード完了。", "ファイルのダウンロード完了。",
                          "以下のディレクトリをアップロード中：" + Local("own"),
                          "順番待ち中のファイル： " + Local("own/b.txt"), "順番待ち中のファイル： " + Local("mine.txt"),
                          "更新中...", "更新終了。", kLevel, "/へディレクトリを変更しています"));
}

// A stop

struct StoppedRun {
  const char* name;
  const char* status;          ///< Part of what is shown when the stop comes,
  const char* arrives;         ///< with this there,
  uintmax_t bytes;             ///< and as much of it; 0 for a folder.
  const char* answer;          ///< To what is to become of the downloaded files; null where that is not asked.
  const char *local, *remote;  ///< What is there afterwards.
  const char* told;            ///< The last words.
};
void PrintTo(const StoppedRun& row, std::ostream* out) { *out << row.name; }

class Stopped : public TwoFolders, public testing::WithParamInterface<StoppedRun> {
 protected:
  /// "stall" takes so long that it is under way when the stop comes.
  void MakeFiles() {
    const std::string arrives = GetParam().arrives;
    MakeBoth("old.txt", kOld, kNew);
    MakeRemote("new/a.txt", "a");
    MakeLocal("own/b.txt", "b");
    MakeLocal("mine.txt", "m");
    if (arrives == "local/new/stall") MakeRemote("new/stall", RandomBytes(2 * 1024 * 1024));
    if (arrives != "server/own/stall") return;
    MakeLocal("own/stall", "");
    std::filesystem::resize_file(Local("own/stall"), 20ull << 30);  // Sparse.
  }
  bool IsTime(const RecordingInterface& process) const {
    std::string shown;
    for (auto last = process.Statuses().rbegin(); last != process.Statuses().rend(); ++last) {
      shown += last->second + "\n";
      if (last->first == 0) break;
    }
    if (shown.find(GetParam().status) == std::string::npos) return false;
    const std::string arrives = root + "/" + GetParam().arrives;
    if (GetParam().bytes == 0) return Exists(arrives);
    return HasCome(arrives, GetParam().bytes);
  }
};

TEST_P(Stopped, EndsWhereItIs) {
  const StoppedRun& row = GetParam();
  MakeFiles();
  StartConnected();
  RecordingInterface process;
  process.OnQuestion([&] {
    if (IsTime(process)) process.StopNow();
  });
  if (row.answer) alerts.Expect("ダウンロードされたローカルファイルまたはフォルダを削除しますか？", row.answer);
  SynchroniseWith(process);
  EXPECT_TRUE(process.IsToStop());
  EXPECT_EQ(Found(Local()), row.local);
  EXPECT_EQ(Found(Remote()), row.remote);
  Texts told = Told();
  std::erase(told, "/へディレクトリを変更しています");  // The pane, which is filled behind a whole run.
  EXPECT_THAT(told.back(), HasSubstr(row.told));
  ExpectUsable();
}

constexpr const char* kStoppedDownload = "ファイルのダウンロードがユーザーにより中止されました。 ";
constexpr const char* kFetching = "のファイルをダウンロード中";
constexpr const char* kHere = "mine.txt=m old.txt=local own/b.txt=b";
constexpr const char* kHereAfterwards = "mine.txt=m new/a.txt=a old.txt=remote own/b.txt=b";
constexpr const char* kThere = "new/a.txt=a old.txt=remote";

INSTANTIATE_TEST_SUITE_P(
    TwoFolders, Stopped,
    testing::Values(StoppedRun{"Comparing", "ダウンロード一覧を作成中", "", 0, nullptr, kHere, kThere, kBegins},
                    StoppedRun{"CollectingDown", "ダウンロード一覧を作成中", "local/new", 0, nullptr,
                               "mine.txt=m new/ old.txt=local own/b.txt=b", kThere, kBegins},
                    // What was to be overwritten goes too.
                    StoppedRun{"FetchingBack", kFetching, "local/new/stall", 100000, "削除", "mine.txt=m own/b.txt=b",
                               "new/a.txt=a new/stall old.txt=remote", kStoppedDownload},
                    StoppedRun{"FetchingStay", kFetching, "local/new/stall", 100000, "削除しない",
                               "mine.txt=m new/stall old.txt=remote own/b.txt=b",
                               "new/a.txt=a new/stall old.txt=remote", kStoppedDownload},
                    StoppedRun{"AllThere", kFetching, "local/new/a.txt", 1, "削除しない", kHereAfterwards, kThere,
                               kStoppedDownload},
                    StoppedRun{"Dating", "エラーを確認中", "", 0, nullptr, kHereAfterwards, kThere,
                               "順番待ち中のファイル： old.txt"},
                    StoppedRun{"LookingForTheMissing", "アップロード一覧を作成中", "", 0, nullptr, kHereAfterwards,
                               kThere, "ファイルのダウンロード完了。"},
                    StoppedRun{"CollectingUp", "アップロード一覧を作成中", "server/own", 0, nullptr, kHereAfterwards,
                               "new/a.txt=a old.txt=remote own/", "以下のディレクトリをアップロード中："},
                    StoppedRun{"Sending", "のファイルをアップロード中", "server/own/stall", 100000, nullptr,
                               "mine.txt=m new/a.txt=a old.txt=remote own/b.txt=b own/stall",
                               "mine.txt=m new/a.txt=a old.txt=remote own/stall", kLevel}),
    [](const auto& row) { return std::string(row.param.name); });

/// By a person: the dialog's button, and what the panes show then.
TEST_F(TwoFolders, CancelEndsARunAndTheLocalPaneShowsWhatHasCome) {
  MakeRemote("b.txt", "b");
  MakeRemote("a stall", RandomBytes(2 * 1024 * 1024));
  StartConnected({}, {"mine.txt"});
  alerts.Expect(kQuestion, "同期する");
  alerts.Expect("ダウンロードされたローカルファイルまたはフォルダを削除しますか？", "削除しない");
  const qint64 took = CancelDuring(
      "同期中", [&] { Press(kSynchroniseButton); },
      [&](platform::Window*) { return HasCome(Local("a stall"), 100000); });
  EXPECT_LT(took, kCancelLimitMs);
  EXPECT_THAT(Names(kLocalList), ElementsAre("a stall", "b.txt", "mine.txt"));
  EXPECT_THAT(Names(kRemoteList), ElementsAre("a stall", "b.txt"));
  EXPECT_THAT(Messages(), Not(Contains(kLevel)));
  ExpectUsable();
}

// Questions and filters

TEST_F(TwoFolders, AFolderThatIsNewerGoesWhole) {
  MakeBoth("down/a.txt", kNew, kOld);  // The dates of what is in it do not count.
  MakeBoth("down/b.txt", kOld, kNew);
  MakeBoth("up/a.txt", kOld, kNew);
  MakeLocal("up/new.txt", "new");
  for (const auto& [folder, local, remote] : {std::tuple("down", kOld, kNew), {"up", kNew, kOld}}) {
    SetTime(Local(folder), local);
    SetTime(Remote(folder), remote);
  }
  StartConnected();
  alerts.Expect(kQuestion, "同期する");
  alerts.Expect("/down/a.txt\" が既にローカルフォルダ内に存在します。", "上書きする");
  alerts.Expect("/down/b.txt\" が既にローカルフォルダ内に存在します。", "スキップ");
  alerts.Expect("\"a.txt\" 既にリモートフォルダに存在します。", "スキップ");
  Press(kSynchroniseButton);
  EXPECT_EQ(Found(Local()), "down/a.txt=remote down/b.txt=local up/a.txt=local up/new.txt=new");
  EXPECT_EQ(Found(Remote()), "down/a.txt=remote down/b.txt=remote up/a.txt=remote up/new.txt=new");
}

/// A run of its own does not forget it.
TEST_F(TwoFolders, AnAnswerForAllHoldsUntilTheNextDownload) {
  MakeBoth("a.txt", kOld, kNew);
  MakeBoth("b.txt", kOld, kNew);
  StartConnected({"other.txt"});
  alerts.Expect(kQuestion, "同期する", 1);
  alerts.Expect("a.txt", "スキップ", 1);
  Press(kSynchroniseButton);
  Press(kSynchroniseButton);
  EXPECT_EQ(Found(Local()), "a.txt=local b.txt=local other.txt=x");
  alerts.Expect("other.txt", "スキップ");
  TransferTest::Download({"other.txt"});
  alerts.Expect("a.txt", "スキップ", 0);
  alerts.Expect("b.txt", "上書きする", 1);
  Press(kSynchroniseButton);
  Press(kSynchroniseButton);
  EXPECT_EQ(Found(Local()), "a.txt=remote b.txt=remote other.txt=x");
}

TEST_F(TwoFolders, ALocalFilterHoldsBackWhatOnlyIsHereAndARemoteOneNothing) {
  Put("Settings/FiltersOn", "1");
  MakeBoth("both.txt", kNew, kOld);
  StartConnected({"there.txt"}, {"here.txt", "folder/here.txt", "here.jpg"});
  for (const int filter : {kLocalFilter, kRemoteFilter}) EXPECT_TRUE(ui::TypeAndReturn(Window(), filter, "jpg"));
  ASSERT_THAT(Names(kLocalList), ElementsAre("folder", "here.jpg"));
  ASSERT_THAT(Names(kRemoteList), ElementsAre());
  alerts.Expect(kQuestion, "同期する");
  alerts.Expect("\"both.txt\" 既にリモートフォルダに存在します。", "上書きする");
  Press(kSynchroniseButton);
  EXPECT_TRUE(Exists(Local("there.txt")));
  EXPECT_EQ(Found(Remote()), "both.txt=local folder/here.txt=x here.jpg=x there.txt=x");
}

// Trouble

/// The older file that was to be overwritten goes with the one that failed.
TEST_F(TwoFolders, AFileThatFailsIsToldInTheServersWordsAndTheRunGoesOn) {
  MakeBoth("refuse.txt", kOld, kNew);
  MakeRemote("cut.bin", RandomBytes(1024 * 1024));
  StartConnected({"a.txt"}, {"b.txt", "refuse too", "z.txt"});
  RecordingInterface process;
  SynchroniseWith(process);
  EXPECT_EQ(Found(Local()), "a.txt=x b.txt=x refuse too=x z.txt=x");
  // The last to be collected goes first, and what fails in that direction ends it.
  EXPECT_EQ(Found(Remote()), "a.txt=x cut.bin refuse.txt=remote z.txt=x");
  Texts told = Messages();
  std::erase_if(told, [](const std::string& line) {
    return line != "Not this one." && line != "失敗" && line.find("でき") == std::string::npos &&
           line.find("完了") == std::string::npos;
  });
  EXPECT_THAT(told, ElementsAre("Not this one.", "失敗", "ファイルのダウンロード完了。",
                                "ファイル一覧をアップロードできません", kLevel));
  ExpectUsable();
}

/// The older file has the date of the newer one from then on, and the next run leaves both alone.
TEST_F(TwoFolders, WhereTheFirstFileMayNotBeReadNothingComesAndTheDatesAreGivenAllTheSame) {
  MakeBoth("secret.txt", kOld, kNew);  // Its rights are found where it is the only one.
  chmod(Remote("secret.txt").c_str(), 0);
  StartConnected({}, {"mine.txt"});
  RecordingInterface process;
  SynchroniseWith(process);
  EXPECT_EQ(Found(Local()), "mine.txt=x secret.txt=local");
  EXPECT_EQ(std::filesystem::last_write_time(Local("secret.txt")),
            std::filesystem::last_write_time(Remote("secret.txt")));
  EXPECT_THAT(Messages(),
              IsSupersetOf({"ファイル一覧をダウンロードできません", "ファイルのダウンロード完了。", kLevel}));
  EXPECT_EQ(ContentOf(Remote("mine.txt")), "x");
}

struct CutRun {
  const char* name;
  const char* cut;  ///< At which command, and whose number among those of its name.
  const char *local, *remote;
};
void PrintTo(const CutRun& row, std::ostream* out) { *out << row.name; }

class Cut : public TwoFolders, public testing::WithParamInterface<CutRun> {};

TEST_P(Cut, IsMadeUpForByTheNextStep) {
  MakeBoth("newer.txt", kNew, kOld);
  MakeBoth("same.txt", kOld, kOld);
  StartConnected({"there.txt"}, {"here.txt"});
  WriteFile(root + "/server.cut", GetParam().cut);
  RecordingInterface process;
  SynchroniseWith(process);
  EXPECT_FALSE(Exists(root + "/server.cut")) << "nothing was cut";
  EXPECT_EQ(Found(Local()), GetParam().local);
  EXPECT_EQ(Found(Remote()), GetParam().remote);
  EXPECT_THAT(Messages(), Contains(kLevel));
  ExpectUsable();
}

constexpr const char* kAllHere = "here.txt=x newer.txt=local same.txt=local there.txt=x";

INSTANTIATE_TEST_SUITE_P(
    TwoFolders, Cut,
    testing::Values(CutRun{"AtADownload", "1 RETR", kAllHere, "here.txt=x newer.txt=local same.txt=remote there.txt=x"},
                    CutRun{"AtAnUpload", "1 STOR", kAllHere, "here.txt=x newer.txt=local same.txt=remote there.txt=x"},
                    // Nothing is known of what is there.
                    CutRun{"AtTheListing", "1 LIST", "here.txt=x newer.txt=local same.txt=local",
                           "here.txt=x newer.txt=remote same.txt=remote there.txt=x"},
                    // A file without a date is as new as can be.
                    CutRun{"AtADate", "1 MDTM", "here.txt=x newer.txt=remote same.txt=local there.txt=x",
                           "here.txt=x newer.txt=remote same.txt=remote there.txt=x"},
                    // A name that is not found is sent, and its size is not known either.
                    CutRun{"AtALookForAName", "6 LIST", kAllHere,
                           "here.txt=x newer.txt=local same.txt=local there.txt=x"}),
    [](const auto& row) { return std::string(row.param.name); });

/// The file that is under way when the machine goes to sleep; empty for before all files.
class Asleep : public TwoFolders, public testing::WithParamInterface<std::string> {
 protected:
  ~Asleep() override { LFtpList::bPowerSuspendStandBy = false; }
};

/// What is under way is moved again. Before the first file the run goes on as far as that.
TEST_P(Asleep, CostsALogonAndNoFile) {
  const std::string& stalls = GetParam();
  const bool isUp = stalls == "up stall";
  if (isUp) {
    MakeLocal(stalls, "");
    std::filesystem::resize_file(Local(stalls), 20ull << 30);  // Sparse.
  } else if (!stalls.empty()) {
    MakeRemote(stalls, RandomBytes(2 * 1024 * 1024));
  }
  StartConnected({"a.txt"}, {"b.txt"});
  size_t steps = 0;
  RecordingInterface process;
  process.OnQuestion([&] {
    if (steps == 0 && (stalls.empty() || HasCome((isUp ? Remote() : Local()) + stalls, 100000))) {
      ++steps;
      Main().Command(kCommandSuspend, 0);
    } else if (steps == 1 && !Main().remotePane.Ftp.IsValid()) {
      ++steps;
      if (!stalls.empty()) WriteFile((isUp ? Local() : Remote()) + stalls, "short");
      Main().Command(kCommandResume, 0);
    }
  });
  SynchroniseWith(process);
  EXPECT_EQ(steps, 2u);
  EXPECT_EQ(Found(Local()), "a.txt=x b.txt=x" + (stalls.empty() ? "" : " " + stalls + "=short"));
  EXPECT_EQ(Found(Remote()), Found(Local()));
  EXPECT_EQ(history.Count("コマンド: USER "), 2u);
  ExpectUsable();
}

INSTANTIATE_TEST_SUITE_P(TwoFolders, Asleep, testing::Values("", "down stall", "up stall"));

// Twice

enum class Season { kNow, kWinter, kSummer };
struct Again {
  Season season;
  std::string moves;
};
using Runs = std::vector<Again>;

const Runs kLevelAlways = {{Season::kWinter, ""}, {Season::kSummer, ""}, {Season::kWinter, ""}, {Season::kSummer, ""}};
/// The zone's offset of today is taken for all dates: a file of the other season is off by the hour between the two.
/// One that came down has that in its own date, until the season changes.
const Runs kOffInTheOtherSeason = {
    {Season::kWinter, "STOR from-here-summer"},
    {Season::kSummer, "RETR /from-here-winter RETR /from-server-summer RETR /from-server-winter"},
    {Season::kSummer, ""},
    {Season::kWinter, "STOR from-here-summer STOR from-here-winter STOR from-server-summer STOR from-server-winter"},
    {Season::kWinter, "STOR from-here-summer STOR from-server-summer"}};

/// A listing tells no seconds, and its date is looked for by the bare name alone: what came down has the present time
/// as the zone's clock shows it, taken for Greenwich's, and what went up to a server that takes no date has the present
/// time. So east of Greenwich everything here is newer from then on, and west of it older.
constexpr const char* kNoDates = "MLSD MLST MDTM MFMT";
const Runs kEverythingEast = {
    {Season::kNow, "RETR /from-here-summer RETR /from-here-winter STOR from-server-summer STOR from-server-winter"},
    {Season::kNow, "STOR from-here-summer STOR from-here-winter STOR from-server-summer STOR from-server-winter"}};
const Runs kEverythingWest = {
    {Season::kNow, "RETR /from-here-summer RETR /from-here-winter STOR from-server-summer STOR from-server-winter"},
    {Season::kNow, "RETR /from-here-summer RETR /from-here-winter RETR /from-server-summer RETR /from-server-winter"}};

struct Zone {
  const char* name;
  const char* zone;
  const char* lacking;  ///< Commands that the server does not know.
  Runs again;           ///< After the first run, in the same season as the first of these.
};
void PrintTo(const Zone& zone, std::ostream* out) { *out << zone.name; }

class Zones : public TwoFolders, public testing::WithParamInterface<Zone> {
 protected:
  static constexpr time_t kWinter = 1610705096, kSummer = 1626343496;  // The middle of January and of July 2021.

  void SynchroniseIn(Season season) {
    if (season != Season::kNow) clock.emplace(season == Season::kWinter ? kWinter : kSummer);
    Press(kSynchroniseButton);
  }
  /// By the last run, in the order of the alphabet.
  std::string Moves() {
    Texts commands = NewCommands({"RETR ", "STOR "});
    std::sort(commands.begin(), commands.end());
    std::string moves;
    for (const std::string& one : commands) moves += (moves.empty() ? "" : " ") + one;
    return moves;
  }

 private:
  const TimeZone zone{GetParam().zone};
  std::optional<SettableClock> clock;
};

TEST_P(Zones, AnotherRunMovesNothingWhereTheDatesAreToldAsTheyAre) {
  for (const auto& [season, date] : {std::pair("winter", kWinter), std::pair("summer", kSummer)}) {
    MakeRemote(std::string("from-server-") + season, "r");
    MakeLocal(std::string("from-here-") + season, "l");
    SetTime(Remote("from-server-") + season, date);
    SetTime(Local("from-here-") + season, date);
  }
  const Environment lacking("ORVANE_LACKING_COMMANDS", GetParam().lacking);
  StartConnected();
  const Runs& again = GetParam().again;
  alerts.Expect(kQuestion, "同期する", 1);
  SynchroniseIn(again.front().season);
  EXPECT_EQ(Moves(), "RETR /from-server-summer RETR /from-server-winter STOR from-here-summer STOR from-here-winter");
  alerts.AgreeToAll(true);  // To what is to be overwritten.
  for (size_t i = 0; i < again.size(); ++i) {
    SynchroniseIn(again[i].season);
    EXPECT_EQ(Moves(), again[i].moves) << "run " << i + 2;
  }
}

INSTANTIATE_TEST_SUITE_P(TwoFolders, Zones,
                         testing::Values(Zone{"Greenwich", "UTC", "", kLevelAlways},
                                         Zone{"East", "Asia/Tokyo", "", kLevelAlways},
                                         Zone{"West", "America/Bogota", "", kLevelAlways},
                                         Zone{"EastWithSummerTime", "Europe/Berlin", "", kOffInTheOtherSeason},
                                         Zone{"WestWithSummerTime", "America/New_York", "", kOffInTheOtherSeason},
                                         Zone{"EastFromListings", "Asia/Tokyo", kNoDates, kEverythingEast},
                                         Zone{"WestFromListings", "America/Bogota", kNoDates, kEverythingWest}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(TwoFolders, ARunThatIsNotWantedChangesNothingButTheQuestion) {
  StartConnected({"folder/a.txt"});
  Open(kRemoteList, "folder");
  alerts.Expect(kQuestion, "キャンセル", 1);
  Press(kSynchroniseButton);
  EXPECT_EQ(alerts.Last(),
            "同期する\nこの作業を行うとローカルフォルダ\n\"" + Local() +
                "\"\n内の全てのデータがリモートフォルダ\n\"/folder\"\n"
                "と同期します。よろしいですか？\n今後このメッセージを表示しない。\n同期する\nキャンセル");
  EXPECT_FALSE(Exists(Local("a.txt")));
  EXPECT_FALSE(gbSynchronizing);
  Press(kSynchroniseButton);  // The box holds although the run was not wanted.
  EXPECT_EQ(ContentOf(Local("a.txt")), "x");
}

TEST_F(TwoFolders, EmptyFoldersAreLevel) {
  StartConnected();
  Synchronise();
  EXPECT_THAT(Messages(), Contains("同期が完了しました。"));
  EXPECT_THAT(Messages(), Not(Contains(HasSubstr("できません"))));
}

}  // namespace
