// Downloads through the button of the window, with the progress dialog that a user sees.
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

#include "support/window/menus.h"
#include "ui/transfer_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Download : public TransferTest {};

TEST_F(Download, BringsTheSelectedFilesAndLeavesTheOthers) {
  const std::string large = RandomBytes(3 * 1024 * 1024 + 17);
  MakeRemote("大きい.bin", large);
  MakeRemote("空.txt", "");
  MakeRemote("残る.txt", "x");
  StartConnected();
  TransferTest::Download({"大きい.bin", "空.txt"});
  EXPECT_EQ(ContentOf(Local("大きい.bin")), large);
  EXPECT_EQ(ContentOf(Local("空.txt")), "");
  EXPECT_FALSE(Exists(Local("残る.txt")));
  EXPECT_THAT(Names(kLocalList), testing::UnorderedElementsAre("大きい.bin", "空.txt"));
  EXPECT_THAT(Messages(), testing::IsSupersetOf({std::string("順番待ち中のファイル： 大きい.bin"),
                                                 std::string("順番待ち中のファイル： 空.txt"),
                                                 std::string("ファイルのダウンロード完了。")}));
  EXPECT_EQ(platform::WindowTopModal(), nullptr);
  ExpectUsable();
}

TEST_F(Download, TheDialogTellsWhatHappensAndHoldsTheWindow) {
  MakeRemote("stall.bin", RandomBytes(2 * 1024 * 1024));
  StartConnected();
  alerts.Expect("ダウンロードされたローカルファイルまたはフォルダを削除しますか？", "削除しない");
  std::string action, item;
  CancelDuring(
      kDownloading, [&] { TransferTest::Download({"stall.bin"}); },
      [&](platform::Window* dialog) {
        if (Progress(dialog) < 0.2) return false;
        EXPECT_LT(Progress(dialog), 0.5);
        action = ui::Text(dialog, kActionLine);
        item = ui::Text(dialog, kItemLine);
        EXPECT_EQ(LMainMenu::uRefCount, 1u);
        EXPECT_FALSE(ui::PressTool(Window(), kRemoteTools, kCommandRemoteRefresh));
        EXPECT_FALSE(Main().CmExit());
        return true;
      });
  EXPECT_EQ(action, "1個（全1個中）のファイルをダウンロード中");
  EXPECT_THAT(item, testing::MatchesRegex("/stall.bin: [0-9 ]+%"));
}

TEST_F(Download, CancelEndsAStalledTransferAtOnce) {
  MakeRemote("stall.bin", RandomBytes(2 * 1024 * 1024));
  StartConnected();
  alerts.Expect("ダウンロードされたローカルファイルまたはフォルダを削除しますか？", "削除しない");
  const qint64 took = CancelDuring(
      kDownloading, [&] { TransferTest::Download({"stall.bin"}); },
      [&](platform::Window* dialog) { return Progress(dialog) > 0.2; });
  printf("a stalled download ended %lld ms after Cancel\n", static_cast<long long>(took));
  EXPECT_LT(took, kCancelLimitMs);
  EXPECT_THAT(Messages(), Contains("ユーザーがダウンロードを中止しました"));
  ExpectUsable();
}

TEST_F(Download, CancelEndsAFlowingTransferAtOnce) {
  MakeRemote("huge.bin", "x");
  std::filesystem::resize_file(Remote("huge.bin"), 20ull << 30);  // Sparse.
  StartConnected();
  alerts.Expect("ダウンロードされたローカルファイルまたはフォルダを削除しますか？", "削除しない");
  const qint64 took = CancelDuring(
      kDownloading, [&] { TransferTest::Download({"huge.bin"}); },
      [&](platform::Window*) {
        std::error_code none;
        const auto there = std::filesystem::file_size(Local("huge.bin"), none);
        return !none && there > 4 * 1024 * 1024;
      });
  printf("a flowing download ended %lld ms after Cancel\n", static_cast<long long>(took));
  EXPECT_LT(took, kCancelLimitMs);
  EXPECT_THAT(Messages(), Contains("ユーザーがダウンロードを中止しました"));
  ExpectUsable();
}

TEST_F(Download, EscapeCancelsToo) {
  MakeRemote("stall.bin", RandomBytes(2 * 1024 * 1024));
  StartConnected();
  alerts.Expect("ダウンロードされたローカルファイルまたはフォルダを削除しますか？", "削除しない");
  const Meanwhile escape([&] { return Dialog(kDownloading) && Progress(Dialog(kDownloading)) > 0.2; },
                         [&] { ui::Key(Dialog(kDownloading), 0x01000000); });
  TransferTest::Download({"stall.bin"});
  EXPECT_TRUE(escape.Acted());
  EXPECT_THAT(Messages(), Contains("ユーザーがダウンロードを中止しました"));
}

TEST_F(Download, AsksBeforeItOverwrites) {
  for (const char* name : {"a.txt", "b.txt"}) {
    MakeRemote(name, "new");
    MakeLocal(name, "old");
  }
  StartConnected();
  alerts.Expect(
      "このファイルのコピー \"" + Local("a.txt") + "\" が既にローカルフォルダ内に存在します。上書きしますか？",
      "上書きする");
  alerts.Expect(Local("b.txt"), "スキップ");
  TransferTest::Download({"a.txt", "b.txt"});
  EXPECT_EQ(ContentOf(Local("a.txt")), "new");
  EXPECT_EQ(ContentOf(Local("b.txt")), "old");
}

TEST_F(Download, OneAnswerMayHoldForAll) {
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) {
    MakeRemote(name, "new");
    MakeLocal(name, "old");
  }
  StartConnected();
  alerts.Expect("a.txt", "スキップ", 1);
  TransferTest::Download({"a.txt", "b.txt", "c.txt"});
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) EXPECT_EQ(ContentOf(Local(name)), "old");
  // The answer holds for one batch.
  alerts.Expect("a.txt", "上書きする", 1);
  TransferTest::Download({"a.txt", "b.txt", "c.txt"});
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) EXPECT_EQ(ContentOf(Local(name)), "new");
}

TEST_F(Download, ACutInTheMiddleLeavesNoHalfFileAndTheProgramConnectsAgain) {
  MakeRemote("cut.bin", RandomBytes(2 * 1024 * 1024));
  MakeRemote("b.txt", "b");
  StartConnected();
  Press(kLocalGo);  // What the run itself changes in the store is there now.
  const Texts before = StoreWithoutCounts();
  TransferTest::Download({"cut.bin", "b.txt"});
  EXPECT_FALSE(Exists(Local("cut.bin")));
  EXPECT_THAT(Messages(), Contains("以下のリモートファイルのダウンロードを失敗中：/cut.bin"));
  EXPECT_EQ(ContentOf(Local("b.txt")), "b") << "one file that fails does not end the run";
  EXPECT_EQ(StoreWithoutCounts(), before);
  ExpectUsable();
}

TEST_F(Download, KeepsTheServersDate) {
  MakeRemote("old.txt", "x");
  const timespec then[2] = {{1000000000, 0}, {1000000000, 0}};
  utimensat(AT_FDCWD, Remote("old.txt").c_str(), then, 0);
  StartConnected();
  TransferTest::Download({"old.txt"});
  struct stat status = {};
  ASSERT_EQ(stat(Local("old.txt").c_str(), &status), 0);
  EXPECT_EQ(status.st_mtime, 1000000000);
}

}  // namespace
