// A tree of three levels down and up while the server ends the session at one command, at each of them in turn. The
// commands are those of a run without a cut, which are written out.
#include <fcntl.h>
#include <map>
#include <sys/stat.h>

#include "ui/transfer_fixture.h"
#include "ui/tree_files.h"

namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

Lines Join(std::initializer_list<Lines> parts) {
  Lines all;
  for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

constexpr time_t kThen = 1000000000;
/// What a command of the user's asks first; without an answer the command is not begun.
const Lines kLook = {"CWD /", "PWD"};
const Lines kListing = {"OPTS UTF8 ON", "TYPE A", "PASV", "LIST"};
const Lines kRefresh = Join({kLook, kListing});
/// A lost session is left, and the new one shows the pane's directory.
const Lines kReconnect = Join({{"QUIT", "USER anna", "******", "CWD /", "PWD", "FEAT"}, kListing});

/// Collecting, the rights of the first file, each file with its size and rights, all dates, and the pane.
const Lines kDown = Join({kLook,
                          {"PWD", "CWD /", "MLST d"},
                          {"PWD", "CWD /d"},
                          kListing,
                          {"MLST mid", "PWD", "CWD /d/mid"},
                          kListing,
                          {"MLST low", "PWD", "CWD /d/mid/low"},
                          kListing,
                          {"MLST z.txt", "CWD /d/mid", "MLST y.txt", "CWD /d", "MLST x.txt", "CWD /"},
                          {"CWD /d"},
                          kListing,
                          {"MLST /d/x.txt", "CWD /d"},
                          kListing,
                          {"TYPE I", "PASV", "MLST /d/x.txt", "RETR /d/x.txt"},
                          {"MLST /d/mid/y.txt", "CWD /d/mid"},
                          kListing,
                          {"TYPE I", "PASV", "MLST /d/mid/y.txt", "RETR /d/mid/y.txt"},
                          {"MLST /d/mid/low/z.txt", "CWD /d/mid/low"},
                          kListing,
                          {"TYPE I", "PASV", "MLST /d/mid/low/z.txt", "RETR /d/mid/low/z.txt"},
                          {"MDTM /d/x.txt", "MDTM /d/mid/y.txt", "MDTM /d/mid/low/z.txt"},
                          kRefresh});

/// An entry on its way up. The disk says in which order the entries of a folder are walked.
struct Step {
  Lines collected, sent;
};
const std::map<std::string, Step> kUp = {
    {"mid", {{"CWD /d", "PWD", "MKD /d/mid", "CWD /d/mid", "PWD"}, {}}},
    {"low", {{"CWD /d/mid", "PWD", "MKD /d/mid/low", "CWD /d/mid/low", "PWD"}, {}}},
    {"x.txt",
     {{"CWD /d", "MLST x.txt"}, {"CWD //d", "TYPE I", "PASV", "STOR x.txt", "MFMT 20010909014640 x.txt", "CWD /"}}},
    {"y.txt",
     {{"CWD /d/mid", "MLST y.txt"},
      {"CWD //d/mid", "TYPE I", "PASV", "STOR y.txt", "MFMT 20010909014640 y.txt", "CWD /"}}},
    {"z.txt",
     {{"CWD /d/mid/low", "MLST z.txt"},
      {"CWD //d/mid/low", "TYPE I", "PASV", "STOR z.txt", "MFMT 20010909014640 z.txt", "CWD /"}}}};

Lines CommandsUp(const std::string& tree) {
  Step all;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(tree)) {
    const Step& step = kUp.at(entry.path().filename());
    all = {Join({all.collected, step.collected}), Join({step.sent, all.sent})};
  }
  return Join(
      {kLook, {"CWD /", "PWD", "MKD /d", "CWD /d", "PWD"}, all.collected, {"CWD /"}, all.sent, kRefresh, kRefresh});
}

struct Way {
  const char* name;
  bool isDown;
  const char* exactAt;  ///< The command around which each one is looked at,
  Lines between;        ///< and those between the new session and the command's repetition.
};

class EachCommand : public TransferTest, public testing::WithParamInterface<Way> {
 protected:
  void MakeTree() {
    for (const char* name : {"x.txt", "mid/y.txt", "mid/low/z.txt"}) {
      const std::string path = From() + "/" + name;
      WriteFile(path, name);
      const timespec times[2] = {{kThen, 0}, {kThen, 0}};
      utimensat(AT_FDCWD, path.c_str(), times, 0);
      // A new session begins above the tree, where there are other files of these names.
      WriteFile(Remote(std::filesystem::path(name).filename()), "another one");
    }
    WriteFile(Remote("mid/another"), "");
    WriteFile(Remote("low/another"), "");
  }
  std::string From() const { return GetParam().isDown ? Remote("d") : Local("d"); }
  std::string To() const { return GetParam().isDown ? Local("d") : Remote("d"); }

  /// Moves the tree and gives the commands. The one of that number, from 1, costs the session.
  Lines Move(size_t cutAt) {
    std::filesystem::remove_all(To());
    Select(GetParam().isDown ? kRemoteList : kLocalList, {"d"});
    Main().TimerReset(MainDialog::kTimerWatch);  // Its looks at the connection are no commands of the transfer.
    NewCommands();
    if (cutAt != 0) WriteFile(root + "/server.cut", std::to_string(cutAt));
    Press(GetParam().isDown ? kDownloadButton : kUploadButton);
    EXPECT_FALSE(Exists(root + "/server.cut")) << "nothing was cut";
    return NewCommands();
  }
};

TEST_P(EachCommand, CostsAReconnectAndNoFile) {
  MakeTree();
  StartConnected();
  const Lines whole = Move(0);
  ASSERT_THAT(TreeDifferences(From(), To(), Times::kCompared), IsEmpty());
  ASSERT_THAT(whole, ElementsAreArray(GetParam().isDown ? kDown : CommandsUp(From())));
  for (size_t i = 0; i < whole.size(); ++i) {
    SCOPED_TRACE("command " + std::to_string(i + 1) + ": " + whole[i]);
    const Lines commands = Move(i + 1);
    if (i < kLook.size()) {
      EXPECT_FALSE(Exists(To()));
      EXPECT_FALSE(Main().remotePane.bConnected);
      Main().CmConnect(false);
      continue;
    }
    // A date that was not given or not taken is the present time: for the file at whose date the session was lost, and
    // in a download, whose files get theirs all in one go at the end, for those behind it.
    const bool isDate = whole[i].rfind("MDTM", 0) == 0 || whole[i].rfind("MFMT", 0) == 0;
    EXPECT_THAT(TreeDifferences(From(), To(), isDate ? Times::kIgnored : Times::kCompared), IsEmpty());
    const auto logons = std::count(commands.begin(), commands.end(), "USER anna");
    // What breaks in the last listing is found by the command that follows.
    EXPECT_EQ(logons, i + kListing.size() < whole.size() ? 1 : 0);
    if (whole[i] == GetParam().exactAt) {
      const auto at = whole.begin() + static_cast<std::ptrdiff_t>(i);
      EXPECT_THAT(commands, ElementsAreArray(Join({Lines(whole.begin(), at + 1), kReconnect, GetParam().between,
                                                   Lines(at, whole.end())})));
    }
    PressTool(kRemoteTools, kCommandRemoteRefresh);
    if (!Main().remotePane.bConnected) Main().CmConnect(false);
    ASSERT_FALSE(HasFailure());
  }
}

INSTANTIATE_TEST_SUITE_P(Cuts, EachCommand,
                         testing::Values(Way{"Down",
                                             true,
                                             "RETR /d/mid/y.txt",
                                             {"CWD /d/mid", "OPTS UTF8 ON", "TYPE A", "PASV", "LIST", "TYPE I", "PASV",
                                              "MLST /d/mid/y.txt"}},
                                         Way{"Up", false, "STOR z.txt", {"CWD //d/mid/low", "TYPE I", "PASV"}}),
                         [](const auto& way) { return std::string(way.param.name); });

}  // namespace
