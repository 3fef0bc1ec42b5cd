// Uploads through the button of the window.
#include "ui/transfer_fixture.h"

namespace {

using testing::Contains;

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
}

TEST_F(Upload, KeepsTheCurrentRowOfTheServersList) {
  StartConnected({"b.txt", "c.txt"}, {"a.txt"});
  Select(kRemoteList, {"c.txt"});
  TransferTest::Upload({"a.txt"});
  EXPECT_THAT(Names(kRemoteList), testing::ElementsAre("a.txt", "b.txt", "c.txt"));
  EXPECT_THAT(Selected(kRemoteList), testing::ElementsAre("c.txt"));
  EXPECT_EQ(CurrentRow(kRemoteList), "c.txt");
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

/// A size that is not told is as good as none.
TEST_F(Upload, AFileWhoseSizeQueryIsLostIsOverwrittenWithoutAQuestion) {
  MakeLocal("a.txt", "new");
  MakeRemote("a.txt", "old");
  StartConnected();
  NewCommands();
  WriteFile(root + "/server.cut", "4");
  TransferTest::Upload({"a.txt"});
  EXPECT_EQ(NewCommands().at(3), "MLST a.txt") << "another command was cut";
  EXPECT_EQ(ContentOf(Remote("a.txt")), "new");
}

struct Failure {
  const char* name;
  const char* file;
  Texts attempt;     ///< Commands of one of the three.
  int logons;        ///< Two between the attempts, one at the end, and one by whoever finds a session lost.
  const char* told;  ///< The server's words; null where it has none.
};
void PrintTo(const Failure& row, std::ostream* out) { *out << row.name; }

class Fails : public Upload, public testing::WithParamInterface<Failure> {};

TEST_P(Fails, ThreeTimesAndEndsTheRun) {
  const Failure& failure = GetParam();
  StartConnected({}, {"a.txt", failure.file, "z.txt"});
  NewCommands();
  TransferTest::Upload({"a.txt", failure.file, "z.txt"});
  Texts commands = {"STOR z.txt"};
  for (int i = 0; i < failure.logons; ++i) {
    if (i < 3) commands.insert(commands.end(), failure.attempt.begin(), failure.attempt.end());
    commands.insert(commands.end(), {"QUIT", "USER anna"});
  }
  EXPECT_THAT(NewCommands({"STOR ", "QUIT", "USER "}), testing::ElementsAreArray(commands));
  EXPECT_TRUE(Exists(Remote("z.txt")));
  EXPECT_FALSE(Exists(Remote(failure.file)));
  EXPECT_FALSE(Exists(Remote("a.txt"))) << "the rest of the list is not sent";
  EXPECT_THAT(Messages(), Contains("ファイル一覧をアップロードできません"));
  if (failure.told) {
    EXPECT_THAT(Messages(), Contains(failure.told));
  }
  EXPECT_TRUE(Main().remotePane.bConnected);
}

// To a name that is refused the file is sent once more in the same attempt.
INSTANTIATE_TEST_SUITE_P(
    Upload, Fails,
    testing::Values(Failure{"Refused", "refuse.txt", {"STOR refuse.txt", "STOR refuse.txt"}, 3, "Not this one."},
                    Failure{"SessionLost", "lose.txt", {"STOR lose.txt"}, 4, nullptr}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
