// What the command line decides before there is a window.
#include "app/startup.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/scratch_folder.h"

namespace {

class Switches : public testing::Test {
 protected:
  ScratchFolder folder;

  /// The exit status of a worker run; -1 for the interactive run.
  int Run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "orvaneftp");
    std::vector<char*> pointers;
    for (std::string& one : arguments) pointers.push_back(one.data());
    pointers.push_back(nullptr);
    LUnixAppInitCommon(static_cast<int>(arguments.size()), pointers.data());
    const int status = StartupRunWorker();
    StartupTakeSwitches();
    return status;
  }
};

TEST_F(Switches, AreTakenFromTheFirstArgument) {
  const struct {
    std::vector<std::string> arguments;
    int status;
    bool installs, scheduled;
  } kRows[] = {
      {{}, -1, false, false},
      {{"-installer"}, -1, true, false},
      {{"-scheduled_launch", "x"}, -1, false, true},
      {{"x", "-scheduled_launch"}, -1, false, false},
      {{"-elevated", "x"}, 1, false, false},
      {{"-exe"}, -1, false, false},
      {{"-exe", "no-such-job"}, 1, false, false},
      {{"-psn_0_1", "-exe", "no-such-job"}, 1, false, false},
      {{"-call_launchctl_script", "/no/such/script"}, 0, false, false},
      {{"-call_launchctl_script"}, -1, false, false},
  };
  for (const auto& row : kRows) {
    std::string line;
    for (const std::string& one : row.arguments) line += one + " ";
    EXPECT_EQ(Run(row.arguments), row.status) << line;
    EXPECT_EQ(bInstallerShouldRun, row.installs) << line;
    EXPECT_EQ(LApplication::bIsLaunchedFromScheduler, row.scheduled) << line;
    bInstallerShouldRun = false;
  }
}

TEST_F(Switches, AScriptIsRunAndItsFailureIsNone) {
  folder.Write("run.sh", "touch '" + folder.Path("done") + "'\nexit 3\n");
  EXPECT_EQ(Run({"-call_launchctl_script", folder.Path("run.sh")}), 0);
  EXPECT_TRUE(folder.Has("done"));
}

}  // namespace
