// Two folders brought level, and compared, through the commands of the window.
#include <fcntl.h>
#include <sys/stat.h>

#include "platform/qt/list_control.h"
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
  std::vector<std::string> Selected(int list) {
    std::vector<std::string> names;
    for (LVSelectedIterator row(Main(), list); row.IsValid(); row.Next()) {
      char name[kTextSize];
      Main().LVGetString(list, row.Row(), name);
      names.emplace_back(name);
    }
    return names;
  }
};

TEST_F(TwoFolders, TheNewerSideWinsAndWhatIsMissingIsCopied) {
  setenv("TZ", "UTC", 1);
  tzset();
  MakeBoth("remote-newer.txt", kOld, kNew);
  MakeBoth("local-newer.txt", kNew, kOld);
  MakeBoth("same.txt", kOld, kOld);
  MakeRemote("remote-only.txt", "r");
  MakeLocal("local-only.txt", "l");
  MakeLocal("folder/deep/x.txt", "x");
  StartConnected();
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

TEST_F(TwoFolders, ComparingSelectsWhatIsNewerOrOnlyOnTheServer) {
  setenv("TZ", "UTC", 1);
  tzset();
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
