// What a run does when the machine's own files or the rights on the server stand in its way: what is told, what arrives
// all the same, and that the program is usable afterwards.
#include <optional>
#include <sys/stat.h>

#include "support/environment.h"
#include "support/file_trouble.h"
#include "ui/transfer_fixture.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kUploadFailed = "ファイル一覧をアップロードできません";
constexpr const char* kDownloadFailed = "ファイル一覧をダウンロードできません";
constexpr const char* kFileFailed = "以下のリモートファイルのダウンロードを失敗中：";
constexpr uintmax_t kLarge = 300u << 20;  ///< Still under way when the first of it is seen on the other side.

class Trouble : public TransferTest {
 protected:
  /// The server has the rights of a user who owns nothing.
  void ServeAsNobody() {
    const Environment nobody("ORVANE_SERVE_AS_NOBODY", "1");
    chmod(root.c_str(), 0711);
    chmod(Remote().c_str(), 0777);
    StartConnected();
  }
  /// The local folder is one of 64 MiB.
  void LiveOnASmallDisk() {
    disk.emplace(64);
    ASSERT_TRUE(disk->IsMounted());
    std::filesystem::remove(root + "/local");
    std::filesystem::create_directory_symlink(disk->Folder(), root + "/local");
  }
  static std::function<bool()> HasBegun(const std::string& path) {
    return [path] { return SizeOf(path) > 0; };
  }
  void ExpectTold(const std::string& text) { EXPECT_THAT(Messages(), Contains(HasSubstr(text))); }
  /// What was in the way is no longer felt.
  void TearDown() override {
    MakeRemote("danach.txt", "down");
    TransferTest::TearDown();
    Download({"danach.txt"});
    EXPECT_EQ(ContentOf(Local("danach.txt")), "down");
  }

  std::optional<SmallDisk> disk;
};

// Upload. What was collected last goes first, and the first file that cannot be sent ends the run.

TEST_F(Trouble, ALocalFileThatCannotBeRead) {
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) MakeLocal(name, name);
  StartConnected();
  chmod(Local("b.txt").c_str(), 0);
  {
    const RightsHold hold;
    Upload({"a.txt", "b.txt", "c.txt"});
  }
  EXPECT_EQ(ContentOf(Remote("c.txt")), "c.txt");
  EXPECT_FALSE(Exists(Remote("a.txt")));
  ExpectTold(kUploadFailed);
}

TEST_F(Trouble, APipeAmongTheFilesIsNotWaitedFor) {
  for (const char* name : {"a.txt", "c.txt"}) MakeLocal(name, name);
  ASSERT_EQ(mkfifo(Local("b.pipe").c_str(), 0600), 0);
  StartConnected();
  Upload({"a.txt", "b.pipe", "c.txt"});
  EXPECT_EQ(ContentOf(Remote("c.txt")), "c.txt");
  EXPECT_FALSE(Exists(Remote("b.pipe")));
  ExpectTold(kUploadFailed);
}

TEST_F(Trouble, ALocalFolderThatCannotBeReadIsMadeStaysEmptyAndIsTold) {
  std::filesystem::create_directories(Local("d/empty"));
  StartConnected({}, {"d/locked/x.txt", "d/a.txt"});
  chmod(Local("d/locked").c_str(), 0);
  {
    const RightsHold hold;
    Upload({"d"});
  }
  EXPECT_TRUE(std::filesystem::is_empty(Remote("d/locked")));
  EXPECT_EQ(ContentOf(Remote("d/a.txt")), "x");
  ExpectTold("以下のフォルダを読み込めません：" + Local("d/locked"));
  EXPECT_EQ(history.Count("以下のフォルダを読み込めません："), 1u);
  ExpectTold("アップロード完了");
}

TEST_F(Trouble, WhatTheListShowsIsNoLongerThere) {
  StartConnected({}, {"d/x.txt", "z.txt"});
  std::filesystem::remove_all(Local("d"));
  Upload({"d", "z.txt"});
  EXPECT_EQ(ContentOf(Remote("z.txt")), "x");
  EXPECT_FALSE(Exists(Remote("d")));
  ExpectTold(kUploadFailed);
}

TEST_F(Trouble, ALocalFolderVanishesWhileItIsSent) {
  MakeSparse(Local("z.bin"), kLarge);
  StartConnected({}, {"d/x.txt"});
  const Meanwhile vanish(HasBegun(Remote("z.bin")), [&] { std::filesystem::remove_all(Local("d")); });
  Upload({"d", "z.bin"});
  EXPECT_TRUE(vanish.Acted());
  EXPECT_EQ(std::filesystem::file_size(Remote("z.bin")), kLarge);
  EXPECT_TRUE(std::filesystem::is_empty(Remote("d")));
  ExpectTold(kUploadFailed);
}

TEST_F(Trouble, AFileThatGrowsWhileItIsSentArrivesWithWhatWasAdded) {
  MakeSparse(Local("grows.log"), kLarge);
  StartConnected();
  const Meanwhile grow(HasBegun(Remote("grows.log")),
                       [&] { std::ofstream(Local("grows.log"), std::ios::binary | std::ios::app) << "added"; });
  Upload({"grows.log"});
  EXPECT_TRUE(grow.Acted());
  ASSERT_EQ(std::filesystem::file_size(Remote("grows.log")), kLarge + 5);
  std::ifstream sent(Remote("grows.log"), std::ios::binary);
  sent.seekg(-5, std::ios::end);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(sent), {}), "added");
  ExpectTold("アップロード完了");
}

TEST_F(Trouble, ARemoteFolderThatCannotBeWrittenTo) {
  for (const char* name : {"d/sub/x.txt", "z.txt"}) MakeLocal(name, "x");
  std::filesystem::create_directory(Remote("d"));
  chmod(Remote("d").c_str(), 0555);
  ServeAsNobody();
  Upload({"d", "z.txt"});
  EXPECT_TRUE(std::filesystem::is_empty(Remote("d")));
  EXPECT_FALSE(Exists(Remote("z.txt"))) << "collecting has ended before it";
  ExpectTold("以下のディレクトリを変更できません：/d/sub");
}

// Download. A file that fails is named, and the rest comes.

TEST_F(Trouble, ARemoteFolderThatCannotBeEnteredAndAFileThatCannotBeRead) {
  MakeRemote("d/locked/x.txt", "x");
  for (const char* name : {"d/a.txt", "d/secret.txt", "d/z.txt"}) MakeRemote(name, name);
  chmod(Remote("d/locked").c_str(), 0700);
  chmod(Remote("d/secret.txt").c_str(), 0600);
  ServeAsNobody();
  Download({"d"});
  EXPECT_TRUE(std::filesystem::is_empty(Local("d/locked")));
  EXPECT_EQ(ContentOf(Local("d/a.txt")), "d/a.txt");
  EXPECT_EQ(ContentOf(Local("d/z.txt")), "d/z.txt");
  EXPECT_FALSE(Exists(Local("d/secret.txt")));
  ExpectTold("以下のディレクトリを変更できません： /d/locked");
  ExpectTold("中：/d/secret.txt");
}

TEST_F(Trouble, ALaterFileThatNobodyMayReadCostsTwoReconnects) {
  MakeRemote("a/hidden.txt", "new");
  MakeLocal("a/hidden.txt", "old");
  chmod(Remote("a/hidden.txt").c_str(), 0300);
  StartConnected({"z.txt"});
  alerts.Expect("hidden.txt", "上書きする");
  NewCommands();
  Download({"a", "z.txt"});
  EXPECT_THAT(NewCommands({"USER ", "RETR "}), testing::ElementsAre("RETR /z.txt", "USER anna", "USER anna"));
  ExpectTold("このユーザーには「hidden.txt」を表示またはダウンロードする権限がありません。");
  ExpectTold(std::string(kFileFailed) + "/a/hidden.txt");
  EXPECT_FALSE(Exists(Local("a/hidden.txt"))) << "the older one goes although nothing came";
}

TEST_F(Trouble, AFolderWhoseListingIsLostThreeTimesStaysEmpty) {
  for (const char* name : {"d/a.txt", "d/lose/x.txt", "d/z.txt"}) MakeRemote(name, name);
  StartConnected();
  NewCommands();
  Download({"d"});
  EXPECT_EQ(NewCommands({"USER "}).size(), 3u);
  EXPECT_TRUE(std::filesystem::is_empty(Local("d/lose")));
  EXPECT_EQ(ContentOf(Local("d/a.txt")), "d/a.txt");
  EXPECT_EQ(ContentOf(Local("d/z.txt")), "d/z.txt");
}

TEST_F(Trouble, ALocalFolderThatCannotBeWrittenTo) {
  for (const char* name : {"d/a.txt", "z.txt"}) MakeRemote(name, name);
  std::filesystem::create_directory(Local("d"));
  StartConnected();
  chmod(Local("d").c_str(), 0555);
  {
    const RightsHold hold;
    Download({"d", "z.txt"});
  }
  EXPECT_TRUE(std::filesystem::is_empty(Local("d")));
  EXPECT_EQ(ContentOf(Local("z.txt")), "z.txt");
  ExpectTold(std::string(kFileFailed) + "/d/a.txt");
  ExpectTold(kDownloadFailed);
}

TEST_F(Trouble, ALocalFolderVanishesWhileItIsFilled) {
  MakeSparse(Remote("z.bin"), kLarge);
  StartConnected({"d/a.txt"});
  const Meanwhile vanish(HasBegun(Local("z.bin")), [&] { std::filesystem::remove_all(Local("d")); });
  Download({"d", "z.bin"});
  EXPECT_TRUE(vanish.Acted());
  EXPECT_EQ(std::filesystem::file_size(Local("z.bin")), kLarge);
  EXPECT_FALSE(Exists(Local("d")));
  ExpectTold(std::string(kFileFailed) + "/d/a.txt");
}

TEST_F(Trouble, AFileWithoutRoomIsNotBegun) {
  for (const char* name : {"a.txt", "c.txt"}) MakeRemote(name, name);
  MakeSparse(Remote("b.bin"), kLarge);
  LiveOnASmallDisk();
  MakeLocal("b.bin", "old");
  StartConnected();
  alerts.Expect("b.bin", "上書きする");
  Download({"a.txt", "b.bin", "c.txt"});
  EXPECT_EQ(ContentOf(Local("a.txt")), "a.txt");
  EXPECT_EQ(ContentOf(Local("c.txt")), "c.txt");
  EXPECT_FALSE(Exists(Local("b.bin"))) << "the older one goes too";
  ExpectTold("空き容量不足のためダウンロードできません：/b.bin");
}

TEST_F(Trouble, AFileThatFailedIsNotForgottenOverOneWithoutRoom) {
  MakeSparse(Remote("a.bin"), kLarge);  // Fetched last.
  LiveOnASmallDisk();
  MakeLocal("refuse.txt", "old");
  StartConnected({"refuse.txt"});
  alerts.Expect("refuse.txt", "上書きする");
  Download({"a.bin", "refuse.txt"});
  EXPECT_FALSE(Exists(Local("refuse.txt"))) << "the older one goes too";
  ExpectTold(kDownloadFailed);
}

TEST_F(Trouble, APipeInThePlaceOfALocalFileIsNotFilled) {
  MakeRemote("b.pipe", RandomBytes(1u << 20));
  ASSERT_EQ(mkfifo(Local("b.pipe").c_str(), 0600), 0);
  StartConnected({"c.txt"});
  alerts.Expect("b.pipe", "上書きする");
  Download({"b.pipe", "c.txt"});
  EXPECT_EQ(ContentOf(Local("c.txt")), "x");
  ExpectTold(std::string(kFileFailed) + "/b.pipe");
}

/// The run ends before the pipe has its turn, and no error keeps its date from being set.
TEST_F(Trouble, APipeInThePlaceOfALocalFileIsNotWaitedForAtTheEnd) {
  MakeRemote("b.pipe", "b");
  chmod(Remote("b.pipe").c_str(), 0);
  ASSERT_EQ(mkfifo(Local("b.pipe").c_str(), 0600), 0);
  StartConnected();
  alerts.Expect("b.pipe", "上書きする");
  Download({"b.pipe"});
  ExpectTold("ファイル一覧をダウンロードできません");
}

/// A folder that goes away after it was made must not send its files into the folder above.
TEST_F(Trouble, AFileIsNotSentWhereItsNameMeansAnother) {
  for (int i = 0; i < 20; ++i) MakeLocal("d/" + std::to_string(i), "new");
  MakeLocal("d/mine.txt", "new");
  MakeRemote("mine.txt", "mine");
  StartConnected();
  alerts.AgreeToAll(true);
  const Meanwhile rename([&] { return history.Count("STOR ") != 0; },
                         [&] { std::filesystem::rename(Remote("d"), Remote("gone")); });
  Upload({"d"});
  EXPECT_TRUE(rename.Acted());
  EXPECT_EQ(ContentOf(Remote("mine.txt")), "mine");
  EXPECT_FALSE(Exists(Remote("0")));
  ExpectTold(kUploadFailed);
}

TEST_F(Trouble, TheDiskFillsWhileAFileComesAndThatGoesUnnoticed) {
  MakeRemote("a.txt", "a");
  MakeRemote("b.bin", RandomBytes(48u << 20));
  LiveOnASmallDisk();
  StartConnected();
  const Meanwhile fill(HasBegun(Local("b.bin")), [&] {
    std::ofstream other(Local("other"), std::ios::binary);
    const std::string block(1u << 20, 'x');
    while (other.write(block.data(), static_cast<std::streamsize>(block.size()))) {
    }
  });
  Download({"a.txt", "b.bin"});
  EXPECT_TRUE(fill.Acted());
  // A write that fails goes unnoticed, and the server's word counts; the next file finds no room.
  EXPECT_LT(std::filesystem::file_size(Local("b.bin")), std::filesystem::file_size(Remote("b.bin")));
  ExpectTold("ファイルのダウンロード完了。");
  ExpectTold("空き容量不足のためダウンロードできません：/a.txt");
  std::filesystem::remove(Local("other"));
}

}  // namespace
