// What the main window does around the jobs: the ways to start one, the watch over the connection, what is counted for
// a site, and the warning that a filter holds nothing back.
#include <Qt>

#include "ui/transfer_fixture.h"

namespace {

using testing::ElementsAre;

class TransferCommands : public TransferTest {};

/// Soon after a job that fetched something, half a minute after one that sent.
TEST_F(TransferCommands, StartFromMenusAndKeysAndTheWatchGoesOnBehindThem) {
  const unsigned former = MainDialog::uWatchMs;
  MainDialog::uWatchMs = 100000;
  StartConnected({"down.txt"}, {"up.txt"});
  const struct {
    std::initializer_list<const char*> menu;
    int key;  ///< With Control; 0 for none.
    const char* question;
    const char* answer;
    const char* arrives;
    bool looksSoon;
  } jobs[] = {
      {{"ローカル", "アップロード"}, 'U', nullptr, nullptr, "server/up.txt", false},
      {{"リモート", "ダウンロード"}, 'D', nullptr, nullptr, "local/down.txt", true},
      {{"ツール", "同期する"}, 0, "同期します。よろしいですか？", "同期する", "local/down.txt", true},
      {{"ツール", "ディレクトリを比較する"}, 0, nullptr, nullptr, nullptr, true},
  };
  for (const auto& job : jobs) {
    for (const bool byKey : {false, true}) {
      if (byKey && job.key == 0) continue;
      SCOPED_TRACE(std::string(*(job.menu.begin() + 1)) + (byKey ? " by key" : ""));
      if (job.arrives) std::filesystem::remove(root + "/" + job.arrives);
      PressTool(kRemoteTools, kCommandRemoteRefresh);
      PressTool(kLocalTools, kCommandLocalRefresh);
      Select(kRemoteList, {"down.txt"});
      Select(kLocalList, {"up.txt"});
      Main().remotePane.bReconnectArmed = false;
      if (job.question) alerts.Expect(job.question, job.answer);
      if (byKey) {
        ui::Key(Window(), job.key, Qt::ControlModifier);
      } else {
        EXPECT_TRUE(ui::ChooseFromMenuBar(Window(), job.menu));
      }
      EXPECT_TRUE(!job.arrives || Exists(root + "/" + job.arrives));
      EXPECT_TRUE(Main().IsTimerSet(MainDialog::kTimerWatch));
      EXPECT_EQ(ui::WaitUntil([&] { return Main().remotePane.bReconnectArmed; }, job.looksSoon ? 10000 : 400),
                job.looksSoon);
    }
  }
  MainDialog::uWatchMs = former;
}

TEST_F(TransferCommands, CountRowsAndRunsOfTheSite) {
  StartConnected({"c.txt", "d/e.txt", "d/f.txt"}, {"refuse.txt", "a.txt", "b.txt"});
  Upload({"refuse.txt", "a.txt"});
  EXPECT_EQ(SiteField("UploadCount"), "2") << "what was to be sent";
  EXPECT_EQ(Setting("CurrentRunHadUpload"), "0") << "it failed";
  Upload({"b.txt"});
  EXPECT_EQ(SiteField("UploadCount"), "3");
  EXPECT_EQ(Setting("CurrentRunHadUpload"), "1");
  EXPECT_EQ(Setting("RunsWithUploads"), "1");
  std::filesystem::remove(Remote("b.txt"));
  Upload({"b.txt"});
  EXPECT_EQ(Setting("RunsWithUploads"), "1") << "one run of the program";
  EXPECT_EQ(SiteField("DownloadCount"), kAbsent);
  Download({"c.txt", "d"});
  EXPECT_EQ(SiteField("DownloadCount"), "2") << "rows, whatever is in them";
}

constexpr const char* kWarningUp =
    "ファイルのダウンロードまたはアップロードの際にサブフォルダ内のファイルを削除しません。このまま続けますか？";
constexpr const char* kWarningDown =
    "ディレクトリ表示にフィルタを使用した場合でも、フォルダ内の全てのファイルが転送されます。このまま続けますか？";

struct PastAFilter {
  const char* name;
  const char* filter;
  const char* row;
  const char* answer;  ///< To the warning; null where none is shown.
  bool box;
  const char* kept;  ///< "FilterWarningOff" afterwards.
};
void PrintTo(const PastAFilter& row, std::ostream* out) { *out << row.name; }

class Warning : public TransferCommands, public testing::WithParamInterface<std::tuple<bool, PastAFilter>> {};

TEST_P(Warning, ComesForAFolderBehindAFilter) {
  const auto& [isDown, row] = GetParam();
  const bool moves = !row.answer || strcmp(row.answer, "続行") == 0;
  Put("Settings/FiltersOn", "1");
  for (const char* name : {"d/x.txt", "a.jpg", "b.txt"}) isDown ? MakeRemote(name, "x") : MakeLocal(name, "x");
  StartConnected();
  const int list = isDown ? kRemoteList : kLocalList;
  EXPECT_TRUE(ui::TypeAndReturn(Window(), isDown ? kRemoteFilter : kLocalFilter, row.filter));
  if (row.filter[0]) {
    EXPECT_THAT(Names(list), ElementsAre("d", "a.jpg"));
  }
  for (const bool again : {false, true}) {
    const std::string to = isDown ? Local(row.row) : Remote(row.row);
    std::filesystem::remove_all(to);
    Select(list, {row.row});
    // What was ticked holds from the next time on, whichever button was pressed.
    const bool asks = row.answer && !(again && row.box);
    if (asks) alerts.Expect(isDown ? kWarningDown : kWarningUp, row.answer, row.box ? 1 : 0);
    Press(isDown ? kDownloadButton : kUploadButton);
    EXPECT_EQ(Exists(to), moves || !asks);
    EXPECT_EQ(Setting("FilterWarningOff"), row.kept);
  }
  const std::string folder = isDown ? Local("d") : Remote("d");
  EXPECT_EQ(Exists(folder), Exists(folder + "/x.txt")) << "a filter holds nothing back";
}

INSTANTIATE_TEST_SUITE_P(
    TransferCommands, Warning,
    testing::Combine(testing::Bool(), testing::Values(PastAFilter{"GoOn", "jpg", "d", "続行", false, "0"},
                                                      PastAFilter{"GoOnForGood", "jpg", "d", "続行", true, "1"},
                                                      PastAFilter{"LeaveForGood", "jpg", "d", "キャンセル", true, "1"},
                                                      PastAFilter{"AFile", "jpg", "a.jpg", nullptr, false, "(absent)"},
                                                      PastAFilter{"NoFilter", "", "d", nullptr, false, "(absent)"})),
    [](const auto& row) { return std::string(std::get<0>(row.param) ? "Down" : "Up") + std::get<1>(row.param).name; });

}  // namespace
