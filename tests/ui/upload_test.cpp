// Uploads through the button of the window.
#include "ui/transfer_fixture.h"

namespace {

using testing::Contains;
using testing::HasSubstr;

class Upload : public TransferTest {};

TEST_F(Upload, SendsTheSelectedFiles) {
  const std::string large = RandomBytes(2 * 1024 * 1024 + 5);
  MakeLocal("大きい.bin", large);
  MakeLocal("空.txt", "");
  StartConnected({}, {"残る.txt"});
  TransferTest::Upload({"大きい.bin", "空.txt"});
  EXPECT_EQ(ContentOf(Remote("大きい.bin")), large);
  EXPECT_EQ(ContentOf(Remote("空.txt")), "");
  EXPECT_FALSE(Exists(Remote("残る.txt")));
  EXPECT_THAT(Names(kRemoteList), testing::UnorderedElementsAre("大きい.bin", "空.txt"));
  EXPECT_THAT(Messages(), Contains("アップロード完了"));
  EXPECT_TRUE(Main().IsTimerSet(MainDialog::kTimerWatch)) << "the watch goes on after a transfer";
  ExpectUsable();
}

TEST_F(Upload, AsksBeforeItOverwritesButNotOverAnEmptyFile) {
  for (const char* name : {"a.txt", "b.txt", "empty.txt"}) MakeLocal(name, "new");
  for (const char* name : {"a.txt", "b.txt"}) MakeRemote(name, "old");
  MakeRemote("empty.txt", "");
  StartConnected();
  alerts.Expect("このファイルのコピー \"a.txt\" 既にリモートフォルダに存在します。上書きしますか？", "上書きする");
  alerts.Expect("b.txt", "スキップ");
  TransferTest::Upload({"a.txt", "b.txt", "empty.txt"});
  EXPECT_EQ(ContentOf(Remote("a.txt")), "new");
  EXPECT_EQ(ContentOf(Remote("b.txt")), "old");
  EXPECT_EQ(ContentOf(Remote("empty.txt")), "new");
}

TEST_F(Upload, AFileThatTheServerRefusesIsNamed) {
  MakeLocal("refuse.txt", "a");
  StartConnected();
  TransferTest::Upload({"refuse.txt"});
  EXPECT_THAT(Messages(), Contains("ファイル一覧をアップロードできません"));
  EXPECT_THAT(Messages(), Contains("Not this one.")) << "the server's words";
  EXPECT_FALSE(Exists(Remote("refuse.txt")));
  EXPECT_TRUE(Main().remotePane.bConnected) << "the program connects again";
  ExpectUsable();
}

}  // namespace
