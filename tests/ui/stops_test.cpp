// What ends a transfer before its time: Cancel in each of its stages, with both answers to the question what is to
// become of what has come so far, and a machine that goes to sleep.
#include <QTimer>

#include "platform/event_loop.h"
#include "support/file_trouble.h"
#include "ui/transfer_fixture.h"

namespace {

using testing::Contains;

constexpr int kSmallFiles = 30;
constexpr size_t kLogonsAfterSleep = 11;
constexpr const char* kCleanUpDownload = "ダウンロードされたローカルファイルまたはフォルダを削除しますか？";
constexpr const char* kCleanUpUpload = "アップロード済みのファイルおよびフォルダを削除しますか？";

enum class Stage { kCollecting, kTransferring, kAfterwards };

class Stops : public TransferTest {
 protected:
  ~Stops() override { LFtpList::bPowerSuspendStandBy = false; }

  /// Two folders: one with a file that is moved last, and takes long where the stage wants that; the other with many
  /// small ones and, for a download, one that is there already. The other side has a file of its own in that folder.
  void MakeFiles(bool isDown, Stage stage) {
    const std::string from = isDown ? Remote() : Local();
    for (int i = 0; i < kSmallFiles; ++i) WriteFile(from + "d/s/" + std::to_string(i), "small");
    WriteFile((isDown ? Local() : Remote()) + "d/mine.txt", "mine");
    if (isDown) {
      WriteFile(Remote("d/old.txt"), "new");
      WriteFile(Local("d/old.txt"), "old");
    }
    WriteFile(from + "c/stall.bin", "whole");
    if (stage != Stage::kTransferring) return;
    isDown ? MakeRemote("c/stall.bin", RandomBytes(2 * 1024 * 1024)) : MakeEndless(from + "c/stall.bin");
  }
  /// Collecting has come into the folder of the small files; the last file is under way; all is there.
  std::function<bool(platform::Window*)> Begins(bool isDown, Stage stage) {
    const std::string to = isDown ? Local() : Remote();
    return [=, this](platform::Window* dialog) {
      if (stage == Stage::kCollecting) {
        // A folder whose MKD is still unanswered would not be known as made.
        return Exists(to + "d/s") && history.LastCommand().rfind("MKD ", 0) != 0 &&
               ui::Text(dialog, kActionLine).find("追加中") != std::string::npos;
      }
      const uintmax_t size = SizeOf(to + "c/stall.bin");
      return stage == Stage::kTransferring ? size > 100000 : size == strlen("whole");
    };
  }
  void ExpectOverwriting(bool isDown) {
    if (isDown) alerts.Expect("old.txt\" が既にローカルフォルダ内に存在します。", "上書きする");
  }
  /// What is there now, with the content of short files; of the small ones their number.
  static std::string Found(const std::string& folder) {
    Texts found;
    int small = -1;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      const std::string path = entry.path().lexically_relative(folder).string();
      if (path == "d/s") small = small < 0 ? 0 : small;
      if (entry.is_directory()) continue;
      if (path.rfind("d/s/", 0) == 0) {
        small = small < 0 ? 1 : small + 1;
      } else {
        found.push_back(entry.file_size() < 10 ? path + "=" + ContentOf(entry.path()) : path);
      }
    }
    if (small >= 0) found.push_back("d/s: " + std::to_string(small));
    std::sort(found.begin(), found.end());
    std::string all;
    for (const std::string& one : found) all += (all.empty() ? "" : ", ") + one;
    return all;
  }
  void ExpectFailed(bool isDown) {
    EXPECT_THAT(Messages(),
                Contains(isDown ? "ファイル一覧をダウンロードできません" : "ファイル一覧をアップロードできません"));
  }
};

// Cancel

struct Cancelled {
  const char* name;
  bool isDown;
  Stage stage;
  bool isTakenBack;
  const char* left;  ///< On the side that the transfer goes to.
};
void PrintTo(const Cancelled& row, std::ostream* out) { *out << row.name; }

class Cancel : public Stops, public testing::WithParamInterface<Cancelled> {};

TEST_P(Cancel, LeavesWhatTheUserWants) {
  const auto& [name, isDown, stage, isTakenBack, left] = GetParam();
  if (stage == Stage::kAfterwards) gTransferWaits.lateCancelSliceMs = 200;
  MakeFiles(isDown, stage);
  StartConnected();
  ExpectOverwriting(isDown);
  alerts.Expect(isDown ? kCleanUpDownload : kCleanUpUpload, isTakenBack ? "削除"
                                                            : isDown    ? "削除しない"
                                                                        : "キャンセル");
  const qint64 took = CancelDuring(
      TitleOf(isDown),
      [&] {
        Transfer(GetParam().isDown, {"c", "d"});
      },
      Begins(isDown, stage));
  if (stage == Stage::kTransferring && !isTakenBack) {
    EXPECT_LT(took, kCancelLimitMs) << "it stalls";
  }
  EXPECT_EQ(Found(isDown ? Local() : Remote()), left);
  ExpectCancelled(isDown);
  EXPECT_EQ(history.Count("ローカルファイルを削除中：" + Local("d/old.txt")), isDown && isTakenBack ? 1u : 0u);
  EXPECT_EQ(history.Count("ファイルが削除されました "), !isDown && isTakenBack ? 1u : 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Stops, Cancel,
    testing::Values(
        Cancelled{"DownCollectingBack", true, Stage::kCollecting, true, "d/mine.txt=mine"},
        Cancelled{"DownCollectingStay", true, Stage::kCollecting, false, "d/mine.txt=mine, d/old.txt=old, d/s: 0"},
        Cancelled{"DownTransferringBack", true, Stage::kTransferring, true, "d/mine.txt=mine"},
        Cancelled{"DownTransferringStay", true, Stage::kTransferring, false,
                  "c/stall.bin, d/mine.txt=mine, d/old.txt=new, d/s: 30"},
        Cancelled{"DownAfterwardsBack", true, Stage::kAfterwards, true, "d/mine.txt=mine"},
        Cancelled{"DownAfterwardsStay", true, Stage::kAfterwards, false,
                  "c/stall.bin=whole, d/mine.txt=mine, d/old.txt=new, d/s: 30"},
        // A folder that the server did not let the run make is none of its own.
        Cancelled{"UpCollectingBack", false, Stage::kCollecting, true, "d/mine.txt=mine"},
        Cancelled{"UpCollectingStay", false, Stage::kCollecting, false, "d/mine.txt=mine, d/s: 0"},
        Cancelled{"UpTransferringBack", false, Stage::kTransferring, true, "d/mine.txt=mine"},
        Cancelled{"UpTransferringStay", false, Stage::kTransferring, false, "c/stall.bin, d/mine.txt=mine, d/s: 30"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(Stops, ACancelEndsAFlowingTransferAtOnce) {
  for (const std::string& file : {Remote("down.bin"), Local("up.bin")}) MakeEndless(file);
  StartConnected();
  for (const bool isDown : {true, false}) {
    if (isDown) alerts.Expect(kCleanUpDownload, "削除しない");
    const std::string arriving = isDown ? Local("down.bin") : Remote("up.bin");
    const qint64 took = CancelDuring(
        TitleOf(isDown), [&] { Transfer(isDown, {isDown ? "down.bin" : "up.bin"}); },
        [&](platform::Window*) { return SizeOf(arriving) > 4 * 1024 * 1024; });
    EXPECT_LT(took, kCancelLimitMs) << arriving;
    ExpectCancelled(isDown);
    ExpectUsable();
  }
}

/// Only folders so far: there is no file at which the stop could be found out.
TEST_F(Stops, ACancelBeforeTheFirstFileOfAnUploadIsNotAskedAbout) {
  for (int i = 0; i < kSmallFiles; ++i) std::filesystem::create_directories(Local("e/") + std::to_string(i));
  StartConnected();
  CancelDuring(
      kUploading, [&] { Upload({"e"}); },
      [&](platform::Window* dialog) {
        return Exists(Remote("e")) && ui::Text(dialog, kActionLine).find("追加中") != std::string::npos;
      });
  EXPECT_TRUE(Exists(Remote("e")));
  EXPECT_THAT(Messages(), Contains("アップロード完了"));
}

// What the user has taken back

class TakenBack : public Stops {
 protected:
  static constexpr const char* kDeleting = "ファイルとフォルダを削除中";
  /// Two folders are sent into two of these names, which the server says are there; Cancel comes in the first file.
  void SendIntoFoldersThatAreThere() {
    MakeLocal("known1/stall.bin", "");
    MakeEndless(Local("known2/stall.bin"));
    PressTool(kLocalTools, kCommandLocalRefresh);
    alerts.Expect(kCleanUpUpload, "削除");
    CancelDuring(
        kUploading,
        [&] {
          Upload({"known1", "known2"});
        },
        [&](platform::Window*) { return SizeOf(Remote("known2/stall.bin")) > 100000; });
  }
};

TEST_F(TakenBack, AFolderThatWasThereGoesWithAllThatIsInItAndOneThatStaysIsNamed) {
  StartConnected({"known1/refuse.txt", "known2/mine.txt", "known2/below/mine.txt"});
  SendIntoFoldersThatAreThere();
  EXPECT_EQ(Found(Remote()), "known1/refuse.txt=x") << "no file of it was begun";
  EXPECT_THAT(Messages(), testing::IsSupersetOf({"以下のリモートフォルダを削除できません："
                                                 "/known1既に削除されているか、転送が未完了なためと思われます。",
                                                 "ファイルが削除されました "}));
  EXPECT_FALSE(Exists(Remote("known2")));
}

TEST_F(TakenBack, ACancelEndsTheCleanUpToo) {
  StartConnected({"known1/mine.txt"});
  for (int i = 0; i < 300; ++i) MakeRemote("known2/" + std::to_string(i), "");
  const Meanwhile cancel([] { return Dialog(kDeleting) != nullptr; },
                         [] { EXPECT_TRUE(ui::Press(Dialog(kDeleting), kCommandCancel)); });
  SendIntoFoldersThatAreThere();
  EXPECT_TRUE(cancel.Acted());
  EXPECT_TRUE(Exists(Remote("known1/mine.txt")));
  EXPECT_TRUE(Exists(Remote("known2")));
  EXPECT_EQ(history.Count("ファイルが削除されました "), 0u);
}

TEST_F(TakenBack, WhatCannotBeRemovedLocallyIsNamedAndTheRestGoes) {
  const RightsHold rights;
  MakeRemote("c/stall.bin", RandomBytes(2 * 1024 * 1024));
  StartConnected({"b/1.txt"});
  alerts.Expect(kCleanUpDownload, "削除");
  const auto write = std::filesystem::perms::owner_write;
  CancelDuring(
      kDownloading,
      [&] {
        Download({"b", "c"});
      },
      [&](platform::Window* dialog) {
        if (!Exists(Local("c/stall.bin")) || Progress(dialog) < 0.1) return false;
        std::filesystem::permissions(Local("c"), write, std::filesystem::perm_options::remove);
        return true;
      });
  EXPECT_TRUE(Exists(Local("c/stall.bin")));
  EXPECT_FALSE(Exists(Local("b")));
  EXPECT_THAT(Messages(), testing::IsSupersetOf({"ローカルファイルを削除できません：" + Local("c/stall.bin"),
                                                 "ローカルフォルダを削除できません：" + Local("c")}));
  std::filesystem::permissions(Local("c"), write, std::filesystem::perm_options::add);
}

// Sleep

class Sleep : public Stops, public testing::WithParamInterface<bool> {
 protected:
  Sleep() { platform::gEventLoopOftenUs = 0; }
  ~Sleep() override { platform::gEventLoopOftenUs = 1000; }
  static bool IsDown() { return GetParam(); }
  std::string To() const { return IsDown() ? Local() : Remote(); }
  std::string Slow() const { return (IsDown() ? Remote() : Local()) + "c/stall.bin"; }
  /// Sleeps as soon as the stage has come.
  std::unique_ptr<Meanwhile> SleepIn(
      Stage stage, std::function<void()> then = [] {}) {
    return std::make_unique<Meanwhile>(
        [begins = Begins(IsDown(), stage)] {
          platform::Window* dialog = Dialog(TitleOf(IsDown()));
          return dialog && begins(dialog);
        },
        [this, then] {
          Main().Command(kCommandSuspend, 0);
          then();
        });
  }
  /// Wakes up with the session gone, and with a file that comes to its end.
  std::unique_ptr<Meanwhile> Wake(std::function<void()> before = [] {}) {
    return std::make_unique<Meanwhile>(
        [this] { return LFtpList::bPowerSuspendStandBy && !Main().remotePane.Ftp.IsValid(); },
        [this, before] {
          WriteFile(Slow(), "short");
          before();
          Main().Command(kCommandResume, 0);
        });
  }
};

TEST_P(Sleep, WhileCollectingEndsTheRun) {
  MakeFiles(IsDown(), Stage::kCollecting);
  MakeLocal("z.txt", "z");
  StartConnected();
  const auto sleep = SleepIn(Stage::kCollecting);
  ExpectOverwriting(IsDown());
  alerts.Expect(IsDown() ? "コンピュータがスタンバイ状態になったためダウンロードがキャンセルされました"
                         : "コンピュータがスタンバイ状態になったためアップロードがキャンセルされました",
                "OK");
  alerts.Expect(IsDown() ? kCleanUpDownload : kCleanUpUpload, IsDown() ? "削除しない" : "キャンセル");
  IsDown() ? Download({"c", "d"}) : Upload({"d", "z.txt"});
  EXPECT_TRUE(sleep->Acted());
  Main().Command(kCommandResume, 0);
  EXPECT_FALSE(Exists(To() + "c/stall.bin"));
  EXPECT_FALSE(Exists(To() + "d/s/1"));
}

TEST_P(Sleep, WhileTransferringCostsALogonAndNoFile) {
  MakeFiles(IsDown(), Stage::kTransferring);
  StartConnected();
  const auto sleep = SleepIn(Stage::kTransferring);
  size_t logons = 0;
  const auto wake = Wake([&] { logons = history.Count("コマンド: USER "); });
  ExpectOverwriting(IsDown());
  Transfer(IsDown(), {"c", "d"});
  EXPECT_TRUE(wake->Acted());
  EXPECT_EQ(ContentOf(To() + "c/stall.bin"), "short");
  EXPECT_EQ(history.Count("コマンド: USER "), logons + 1);
}

/// A lid that is opened again at once: nothing tells of the sleep any more when the transfer has been taken back.
TEST_P(Sleep, ThatIsOverSoonCostsALogonAndNoFile) {
  MakeFiles(IsDown(), Stage::kTransferring);
  StartConnected();
  const auto sleep = SleepIn(Stage::kTransferring, [this] {
    QTimer::singleShot(0, [this] {
      WriteFile(Slow(), "short");
      Main().Command(kCommandResume, 0);
    });
  });
  ExpectOverwriting(IsDown());
  Transfer(IsDown(), {"c", "d"});
  EXPECT_TRUE(sleep->Acted());
  EXPECT_EQ(ContentOf(To() + "c/stall.bin"), "short");
}

TEST_P(Sleep, ThatTheServerDoesNotForgiveEndsTheRun) {
  MakeFiles(IsDown(), Stage::kTransferring);
  StartConnected();
  const std::string closed = root + "/server.closed";
  const auto sleep = SleepIn(Stage::kTransferring);
  const auto wake = Wake([&] { WriteFile(closed, ""); });
  const Meanwhile open([&] { return history.Count("530 Not now.") == kLogonsAfterSleep; },
                       [&] { std::filesystem::remove(closed); });
  ExpectOverwriting(IsDown());
  Transfer(IsDown(), {"c", "d"});
  EXPECT_TRUE(open.Acted());
  EXPECT_EQ(history.Count("530 Not now."), kLogonsAfterSleep);
  ExpectFailed(IsDown());
  EXPECT_EQ(history.Count("ファイルのダウンロード完了。"), IsDown() ? kSmallFiles + 2u : 0u);
}

TEST_P(Sleep, WithTheServerGoneEndsTheRunAndTheConnection) {
  MakeFiles(IsDown(), Stage::kTransferring);
  StartConnected();
  const auto sleep = SleepIn(Stage::kTransferring);
  const auto wake = Wake([&] { server->Stop(); });
  // What is refreshed behind the run asks for the password each time that it does not get on.
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, &user, [] {
    if (platform::Window* login = Dialog("ユーザーログイン")) ui::Press(login, kCommandCancel);
  });
  user.start(20);
  ExpectOverwriting(IsDown());
  if (!IsDown()) alerts.Expect("サーバーにログインできません。", "続行");  // An upload that fails connects anew.
  Transfer(IsDown(), {"c", "d"});
  EXPECT_TRUE(wake->Acted());
  EXPECT_EQ(history.Count("サーバーが切断されました"), 1u);
  EXPECT_TRUE(ui::WaitUntil([&] { return !Main().remotePane.bConnected && !ui::ModalWindow(); }));
  EXPECT_EQ(LFtpList::pCurrentInterface, nullptr);
}

TEST_P(Sleep, WhoseFolderIsGoneAtTheWakingEndsTheRun) {
  const std::string from = IsDown() ? Remote("base/stall.bin") : Local("stall.bin");
  const std::string to = IsDown() ? Local("stall.bin") : Remote("base/stall.bin");
  IsDown() ? WriteFile(from, RandomBytes(2 * 1024 * 1024)) : MakeEndless(from);
  StartConnected({"base/x"});
  Open(kRemoteList, "base");
  const Meanwhile sleep([&] { return SizeOf(to) > 100000; }, [&] { Main().Command(kCommandSuspend, 0); });
  const Meanwhile wake([&] { return LFtpList::bPowerSuspendStandBy && !Main().remotePane.Ftp.IsValid(); },
                       [&] {
                         std::filesystem::rename(Remote("base"), Remote("elsewhere"));
                         Main().Command(kCommandResume, 0);
                       });
  Transfer(IsDown(), {"stall.bin"});
  EXPECT_TRUE(wake.Acted());
  EXPECT_EQ(history.Count(IsDown() ? "コマンド: RETR " : "コマンド: STOR "), 1u);
  ExpectFailed(IsDown());
  std::filesystem::rename(Remote("elsewhere"), Remote("base"));
}

INSTANTIATE_TEST_SUITE_P(Stops, Sleep, testing::Values(true, false),
                         [](const auto& row) { return std::string(row.param ? "Down" : "Up"); });

}  // namespace
