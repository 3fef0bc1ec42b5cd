// What the tests of data connections share: a session on a plain or a secure connection, short stories for
// the commands around a data connection, and a folder for local files.
#pragma once

#include <chrono>

#include "ftp/data_connection.h"
#include "ftp/dir_iterator.h"
#include "ftp/transfer_progress.h"
#include "support/scratch_folder.h"
#include "support/test_certificates.h"
#include "support/test_files.h"
#include "wire/wire_fixture.h"

class DataTest : public WireTest {
 protected:
  using Session = LFileTransferProtocol;
  using Step = ScriptedServer::Step;
  using Statuses = std::vector<std::pair<int, std::string>>;

  /// A reply that comes so late does not get ahead of the question that stops.
  static constexpr int kOverASliceMs = 300;

  DataTest() {
    FtpTimeouts& table = gFtpTimeouts;
    for (unsigned* limit : {&table.dataConnectMs, &table.dataHandshakeMs, &table.dataReplyLineMs, &table.listingLineMs,
                            &table.closingReplyMs, &table.dataCloseMs, &table.receiveBlockMs, &table.sendBlockMs,
                            &table.noopSendMs, &table.noopReplyMs, &table.lateReplyUploadMs, &table.aborSendDownloadMs,
                            &table.aborSendUploadMs, &table.aborReplyMs}) {
      *limit = kAmpleMs;
    }
    // A stop in the middle of a reply leaves its end, behind which nothing comes.
    table.drainReplyMs = 500;
    server.UseTls(TestServerContext(TestCertificate::kGood));
  }

  /// A session whose features are `capabilities`, and no others.
  void Begin(uint32_t capabilities = 0) {
    Connect();
    session.uCapabilities = Session::bFeaturesKnown | capabilities;
  }
  void BeginSecure(uint32_t capabilities = 0) {
    server.Accept().StartTls();
    ConnectToGreeting();
    ASSERT_TRUE(session.ConvertSocketToSSLTimeOut(kAmpleMs));
    session.uCapabilities = Session::bFeaturesKnown | capabilities;
  }
  void BeginAs(bool secure, uint32_t capabilities = 0) { secure ? BeginSecure(capabilities) : Begin(capabilities); }

  void ExpectProtection() {
    server.Expect("PBSZ 0").Reply("200 ok");
    server.Expect("PROT P").Reply("200 ok");
  }
  /// From the protection to PASV, for data of that type.
  void ExpectPassive(const std::string& type) {
    if (session.IsSecure()) ExpectProtection();
    server.Expect("TYPE " + type).Reply("200 ok");
    server.Expect("PASV").ReplyPassive();
  }
  void ExpectSize(const std::string& name, size_t size) {
    server.Expect("TYPE I").Reply("200 ok");
    server.Expect("SIZE " + name).Reply("213 " + std::to_string(size));
  }
  /// The command is answered with 150; on a secure session the server's TLS follows the answer.
  Step& ExpectData(const std::string& command) {
    Step& step = server.Expect(command).Reply("150 Here it comes");
    return session.IsSecure() ? step.DataTls() : step;
  }
  /// A whole LIST exchange.
  void ExpectListing(const std::string& command, const std::string& lines) {
    ExpectPassive("A");
    ExpectData(command).DataSend(lines).Reply("226 Done");
  }

  /// Stops as soon as `isTime` says so.
  void StopWhen(std::function<bool()> isTime) {
    process.OnQuestion([this, isTime] {
      if (isTime()) process.StopNow();
    });
  }
  /// A transfer that is stopped at each of the first questions after its command, while the reply arrives in pieces and
  /// the closing one behind it, leaves the session in step.
  void ExpectStopsInItsReply(const std::string& command, const std::function<void()>& begin,
                             const std::function<LProcessResult()>& run) {
    const struct {
      const char* closing;
      int question;
    } rows[] = {{"426 Broken", 1}, {"426 Broken", 2}, {"426 Broken", 3}, {"226 Done", 2}, {"", 2}, {"550 No", 2}};
    for (const auto& [closing, question] : rows) {
      SCOPED_TRACE(std::string(closing) + " question " + std::to_string(question));
      Restart();
      begin();
      const bool isRefused = closing[0] == '5';
      const std::string reply = (isRefused ? closing : "150 Here it comes ") + std::string(100, 'x');
      Step& step = server.Expect(command).Raw(reply.substr(0, 70)).Delay(kOverASliceMs).Raw(reply.substr(70) + "\r\n");
      if (closing[0] != 0 && !isRefused) step.DataClose().Reply(closing);
      int asked = 0;  // The history has the command once it is out.
      const int wanted = question;
      StopWhen([&] { return history.LastCommand() == command && ++asked == wanted; });
      EXPECT_EQ(run(), LProcessResultStopped);
      process.OnQuestion(nullptr);
      process.StopAt(0);
      ExpectInStep();
    }
  }
  struct Exchange {
    std::string command;
    std::string reply;       ///< Empty for the passive one.
    bool is_stopped = true;  ///< False where nobody asks whether to stop.
  };
  /// What runs through these exchanges and is stopped while it waits for one of the replies returns that.
  void ExpectStopsOnTheWay(uint32_t capabilities, const std::vector<Exchange>& way,
                           const std::function<LProcessResult()>& run) {
    for (size_t count = 1; count <= way.size(); ++count) {
      if (!way[count - 1].is_stopped) continue;
      SCOPED_TRACE(way[count - 1].command);
      Restart();
      Begin(capabilities);
      StopAfterCommands(Commands().size() + count);
      for (size_t i = 0; i < count; ++i) {
        Step& step = server.Expect(way[i].command).Delay(i + 1 == count ? kOverASliceMs : 0);
        way[i].reply.empty() ? step.ReplyPassive() : step.Reply(way[i].reply);
      }
      EXPECT_EQ(run(), LProcessResultStopped);
      ASSERT_TRUE(server.WaitUntilDone());
    }
  }
  static std::vector<std::string> NamesOf(Session::DirIterator& iterator) {
    std::vector<std::string> names;
    for (iterator.First(); iterator.Current(); iterator.Next()) names.push_back(iterator.Name());
    EXPECT_EQ(names.size(), iterator.Count());
    iterator.First();
    return names;
  }
  std::vector<std::string> Commands() const { return server.Commands(); }
  std::string LastCommand() const {
    const std::vector<std::string> commands = server.Commands();
    return commands.empty() ? "" : commands.back();
  }
  std::vector<std::string> StatusesAt(int level) const {
    std::vector<std::string> texts;
    for (const auto& [at, status] : process.Statuses()) {
      if (at == level) texts.push_back(status);
    }
    return texts;
  }
  template <typename Call>
  static long MillisecondsOf(Call call) {
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
  }

  ScratchFolder folder;
};
