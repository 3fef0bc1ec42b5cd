// Every conversation, stopped at every question it asks: the session ends in step, or closed. What a stop leaves on the
// connection would be taken for the answer to the next command, and to all that follow.
#include <algorithm>
#include <array>
#include <bit>
#include <fstream>
#include <gtest/gtest.h>

#include "support/history_file.h"
#include "support/scratch_folder.h"
#include "support/test_certificates.h"
#include "wire/fault_matrix.h"

namespace {

constexpr unsigned kAmpleMs = 4000;
constexpr unsigned kInVainMs = 50;  ///< For what need not come.
constexpr int kMostQuestions = 400;

class StoppedAnywhere : public testing::TestWithParam<FaultScenario> {
 protected:
  StoppedAnywhere() : former_(gFtpTimeouts) {
    std::array<unsigned, sizeof(FtpTimeouts) / sizeof(unsigned)> values;
    values.fill(kAmpleMs);
    gFtpTimeouts = std::bit_cast<FtpTimeouts>(values);
    gFtpTimeouts.noopPeriodMs = 60000;
    FtpTimeouts& table = gFtpTimeouts;
    for (unsigned* limit : {&table.extraReplyMs, &table.aborReplyMs, &table.aborExtraReplyMs, &table.drainReplyMs,
                            &table.lateReplyDownloadMs, &table.lateReplyUploadMs}) {
      *limit = kInVainMs;
    }
  }
  ~StoppedAnywhere() override { gFtpTimeouts = former_; }

  static unsigned CodeOf(LFileTransferProtocol& session, const char* command) {
    LProcessInterfaceVoid unstoppable;
    unsigned short code = 0;
    (void)ProcessFtpSendAndWaitForReply(unstoppable, session, command, &code, nullptr);
    return code;
  }

  /// False when the conversation was over before that question.
  bool StopAt(int question) {
    const FaultScenario& scenario = GetParam();
    FaultServer server(scenario.manner, TestServerContext(TestCertificate::kGood));
    LFileTransferProtocol session;
    RecordingInterface process;
    FaultCell cell = {server, session, process, ServerFault::kNone, folder_.Write("local", "12345"), "", {}, {}, 0, ""};
    EXPECT_EQ(FaultLogOn(process, session, server, scenario.security), LProcessResultOk);
    int asked = 0;
    process.OnQuestion([&] {
      if (++asked == question) process.StopNow();
    });
    const LProcessResult result = scenario.run(cell);
    process.OnQuestion(nullptr);
    const std::vector<std::string> commands = server.Commands();
    const bool hasData = std::find(commands.begin(), commands.end(), "PASV") != commands.end();
    // What has come over a data connection may count although the user stopped then.
    if (asked >= question && !hasData) {
      EXPECT_NE(result, LProcessResultOk) << "stopped at question " << question;
    }
    if (asked < question || !session.IsValid()) return asked >= question;
    const unsigned typed = CodeOf(session, "TYPE A\r\n");
    const unsigned printed = CodeOf(session, "PWD\r\n");
    EXPECT_TRUE(typed == 200 && printed == 257)
        << "out of step: " << typed << ", " << printed << " at question " << question << " behind "
        << server.Commands().at(server.Commands().size() - 3);
    return true;
  }

 private:
  const FtpTimeouts former_;
  HistoryFile history_;
  ScratchFolder folder_;
};

TEST_P(StoppedAnywhere, EndsInStep) {
  int question = 1;
  while (question < kMostQuestions && StopAt(question)) ++question;
  EXPECT_GT(question, 2) << "nothing was asked";
}

std::vector<FaultScenario> Stoppable() {
  std::vector<FaultScenario> some;
  for (const FaultScenario& scenario : FaultScenarios()) {
    const bool hasItsOwnStop = scenario.name.find("stopped") != std::string::npos;
    const bool takesLong = scenario.manner.pace != ServerManner::Pace::kFast;
    const bool ends = scenario.name.find("quit") != std::string::npos;
    if (!scenario.starts_offline && !hasItsOwnStop && !takesLong && !ends) some.push_back(scenario);
  }
  return some;
}

std::string NameOf(const testing::TestParamInfo<FaultScenario>& row) {
  std::string name = row.param.name;
  for (char& one : name) {
    if (!isalnum(static_cast<unsigned char>(one))) one = '_';
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Conversations, StoppedAnywhere, testing::ValuesIn(Stoppable()), NameOf);

}  // namespace
