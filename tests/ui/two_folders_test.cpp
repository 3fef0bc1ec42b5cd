// Two folders brought level, and compared, through the commands of the window.
#include <fcntl.h>
#include <sys/stat.h>

#include "platform/qt/list_control.h"
#include "support/environment.h"
#include "ui/transfer_fixture.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::UnorderedElementsAre;

constexpr time_t kOld = 1000000000;
constexpr time_t kNew = kOld + 86400;
constexpr const char* kQuestion = "同期します。よろしいですか？";

class TwoFolders : public TransferTest {
 protected:
  static void SetTime(const std::string& path, time_t time) {
    const timespec times[2] = {{time, 0}, {time, 0}};
    EXPECT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0) << path;
  }
  void MakeBoth(const std::string& name, time_t local, time_t remote) {
    MakeLocal(name, "local");
    MakeRemote(name, "remote");
    SetTime(Local(name), local);
    SetTime(Remote(name), remote);
  }
  void Synchronise() {
    alerts.Expect(kQuestion, "同期する");
    Press(kSynchroniseButton);
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
  EXPECT_EQ(ContentOf(Local("remote-newer.txt")), "remote");
  EXPECT_EQ(ContentOf(Remote("local-newer.txt")), "local");
  EXPECT_EQ(ContentOf(Local("same.txt")), "local");
  EXPECT_EQ(ContentOf(Remote("same.txt")), "remote");
  EXPECT_EQ(ContentOf(Local("remote-only.txt")), "r");
  EXPECT_EQ(ContentOf(Remote("local-only.txt")), "l");
  EXPECT_EQ(ContentOf(Remote("folder/deep/x.txt")), "x");
  EXPECT_THAT(Messages(), Contains("同期が完了しました。"));
  EXPECT_FALSE(gbSynchronizing);
  ExpectUsable();
}

using Runs = std::array<std::vector<std::string>, 2>;
constexpr const char* kNoDates = "MLSD MLST MDTM MFMT";
/// A date of the other season is off by the hour between the two: the present offset is taken for all.
const Runs kSummerFile = {{{"STOR from-here-summer"}, {"STOR from-here-summer"}}};
const Runs kWinterFile = {{{"RETR /from-here-winter"}, {}}};

/// A listing tells no seconds, and its date is looked for by the bare name alone: what came down has the present time
/// as the zone's clock shows it, taken for Greenwich's, and what went up to a server that takes no date has the present
/// time. So east of Greenwich everything here is newer from then on, and west of it older.
const Runs kEverythingEast = {
    {{"RETR /from-here-winter", "RETR /from-here-summer", "STOR from-server-winter", "STOR from-server-summer"},
     {"STOR from-here-winter", "STOR from-here-summer", "STOR from-server-winter", "STOR from-server-summer"}}};
const Runs kEverythingWest = {
    {{"RETR /from-here-winter", "RETR /from-here-summer", "STOR from-server-winter", "STOR from-server-summer"},
     {"RETR /from-here-winter", "RETR /from-here-summer", "RETR /from-server-winter", "RETR /from-server-summer"}}};

struct Zone {
  const char* name;
  const char* zone;
  const char* lacking;  ///< Commands that the server does not know.
  Runs movedAgain;      ///< By a second and a third run, in winter.
  Runs inSummer;        ///< The same while the zone has summer time.
};
void PrintTo(const Zone& zone, std::ostream* out) { *out << zone.name; }

class Zones : public TwoFolders, public testing::WithParamInterface<Zone> {
 protected:
  Texts Moved() { return NewCommands({"RETR ", "STOR "}); }

 private:
  const TimeZone zone{GetParam().zone};
};

TEST_P(Zones, ASecondRunMovesNothingWhereTheDatesAreToldAsTheyAre) {
  constexpr time_t kWinter = 1610705096, kSummer = 1626343496;  // The middle of January and of July 2021.
  for (const auto& [season, date] : {std::pair("winter", kWinter), std::pair("summer", kSummer)}) {
    MakeRemote(std::string("from-server-") + season, "r");
    MakeLocal(std::string("from-here-") + season, "l");
    SetTime(Remote("from-server-") + season, date);
    SetTime(Local("from-here-") + season, date);
  }
  const Environment lacking("ORVANE_LACKING_COMMANDS", GetParam().lacking);
  StartConnected();
  alerts.Expect(kQuestion, "同期する", 1);
  Press(kSynchroniseButton);
  EXPECT_THAT(Moved(), UnorderedElementsAre("RETR /from-server-winter", "RETR /from-server-summer",
                                            "STOR from-here-winter", "STOR from-here-summer"));
  alerts.AgreeToAll(true);  // To what is to be overwritten.
  const time_t now = time(nullptr);
  const bool isSummer = localtime(&now)->tm_isdst > 0;
  for (const std::vector<std::string>& moved : isSummer ? GetParam().inSummer : GetParam().movedAgain) {
    Press(kSynchroniseButton);
    EXPECT_THAT(Moved(), testing::UnorderedElementsAreArray(moved));
  }
}

INSTANTIATE_TEST_SUITE_P(
    TwoFolders, Zones,
    testing::Values(Zone{"Greenwich", "UTC", "", {}, {}}, Zone{"East", "Asia/Tokyo", "", {}, {}},
                    Zone{"West", "America/Bogota", "", {}, {}},
                    Zone{"EastWithSummerTime", "Europe/Berlin", "", kSummerFile, kWinterFile},
                    Zone{"WestWithSummerTime", "America/New_York", "", kSummerFile, kWinterFile},
                    Zone{"EastFromListings", "Asia/Tokyo", kNoDates, kEverythingEast, kEverythingEast},
                    Zone{"WestFromListings", "America/New_York", kNoDates, kEverythingWest, kEverythingWest}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(TwoFolders, ARunThatIsNotWantedChangesNothingButTheQuestion) {
  MakeRemote("a.txt", "a");
  StartConnected();
  alerts.Expect(kQuestion, "キャンセル", 1);
  Press(kSynchroniseButton);
  EXPECT_FALSE(Exists(Local("a.txt")));
  EXPECT_FALSE(gbSynchronizing);
  Press(kSynchroniseButton);  // The box holds although the run was not wanted.
  EXPECT_EQ(ContentOf(Local("a.txt")), "a");
}

TEST_F(TwoFolders, EmptyFoldersAreLevel) {
  StartConnected();
  Synchronise();
  EXPECT_THAT(Messages(), Contains("同期が完了しました。"));
  EXPECT_THAT(Messages(), Not(Contains(HasSubstr("できません"))));
}

/// Cut, the path of the inner folder would be that of the outer one.
TEST_F(TwoFolders, AFolderTooDeepForAPathIsNotCompared) {
  const std::string outer(200, 'o'), inner(60, 'i');
  MakeLocal(outer + "/" + inner + "/a.txt", "a");
  MakeRemote(outer + "/" + inner + "/a.txt", "a");
  StartConnected();
  Main().Command(kCommandCompare, 0);
  EXPECT_EQ(PathOf(kRemotePath), "/");
  EXPECT_THAT(Messages(), Contains(HasSubstr("パスが長すぎるためスキップします")));
  ExpectUsable();
}

TEST_F(TwoFolders, ComparingSelectsWhatIsNewerOrOnlyOnTheServer) {
  MakeBoth("remote-newer.txt", kOld, kNew);
  MakeBoth("local-newer.txt", kNew, kOld);
  MakeBoth("same.txt", kOld, kOld);
  MakeBoth("inside/remote-newer.txt", kOld, kNew);
  MakeBoth("level/same.txt", kOld, kOld);
  MakeRemote("remote-only/x.txt", "r");
  MakeLocal("local-only.txt", "l");
  StartConnected();
  Main().Command(kCommandCompare, 0);
  EXPECT_THAT(Selected(kRemoteList), UnorderedElementsAre("remote-newer.txt", "inside", "remote-only"));
  EXPECT_THAT(Selected(kLocalList), UnorderedElementsAre("local-newer.txt", "local-only.txt"));
  EXPECT_TRUE(IsEnabled(kUploadButton));
  EXPECT_EQ(PathOf(kRemotePath), "/");
  EXPECT_FALSE(Exists(Local("remote-only"))) << "nothing is moved";
  ExpectUsable();
}

}  // namespace
