// What the desktop asks of the program and the other way round, over a real bus: opened again, and the machine's sleep.
//
// ctest runs this suite on a bus of its own. The process has to end by itself at its end, with the bus still there.
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QProcess>
#include <QTimer>
#include <cstdlib>

#include "ui/transfer_fixture.h"

namespace {

constexpr const char* kName = "com.tessalysoft.orvaneftpjp";
constexpr const char* kObject = "/com/tessalysoft/orvaneftpjp";

class Desktop : public TransferTest {
 protected:
  Desktop() {
    if (!getenv("ORVANE_TEST_BUS")) return;
    service.start(QStringLiteral(ORVANE_LOG_IN_SERVICE), QStringList());
    EXPECT_TRUE(Says("ready"));
  }
  ~Desktop() override {
    LFtpList::bPowerSuspendStandBy = false;
    service.closeWriteChannel();
    service.waitForFinished();
  }
  void SetUp() override {
    if (!getenv("ORVANE_TEST_BUS")) GTEST_SKIP() << "no bus: run it by ctest";
  }

  /// The log-in service says it, sooner or later.
  bool Says(const std::string& line) {
    return ui::WaitUntil([&] {
      said += service.readAllStandardOutput().toStdString();
      return said.find(line + "\n") != std::string::npos;
    });
  }
  void Order(const char* line) { service.write((std::string(line) + "\n").c_str()); }

  QProcess service;
  std::string said;
};

TEST_F(Desktop, EveryCallBringsTheWindowBack) {
  StartProgram();
  const struct {
    const char* method;
    QVariantList arguments;
  } calls[] = {{"Activate", {QVariantMap()}},
               {"Open", {QStringList("file:///tmp"), QVariantMap()}},
               {"ActivateAction", {QString("new-window"), QVariantList(), QVariantMap()}}};
  QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "another program");
  for (const auto& call : calls) {
    platform::WindowMinimize(Window());
    ASSERT_TRUE(Main().IsMinimized());
    QDBusMessage message = QDBusMessage::createMethodCall(kName, kObject, "org.freedesktop.Application", call.method);
    message.setArguments(call.arguments);
    const QDBusPendingCall pending = other.asyncCall(message);
    EXPECT_TRUE(ui::WaitUntil([&] { return pending.isFinished(); }));
    EXPECT_FALSE(pending.isError()) << pending.error().message().toStdString();
    // In a turn of its own, which may come behind the answer.
    EXPECT_TRUE(ui::WaitUntil([&] { return !Main().IsMinimized(); })) << call.method;
  }
  QDBusConnection::disconnectFromBus("another program");
}

TEST_F(Desktop, TheMachineStaysAwakeForAJobAndNoLonger) {
  MakeRemote("stall.bin", RandomBytes(2 * 1024 * 1024));
  StartConnected({"down.txt"}, {"up.txt", "refuse.txt"});
  EXPECT_EQ(said.find("lock"), std::string::npos);
  const struct {
    const char* name;
    std::function<void()> run;
  } jobs[] = {
      {"a download", [&] { Download({"down.txt"}); }},
      {"an upload", [&] { Upload({"up.txt"}); }},
      {"an upload that fails", [&] { Upload({"refuse.txt"}); }},
      {"a synchronise run",
       [&] {
         for (const char* path : {"local/refuse.txt", "server/stall.bin"}) std::filesystem::remove(root + "/" + path);
         alerts.Expect("同期します。よろしいですか？", "同期する");
         Press(kSynchroniseButton);
       }},
      {"a download that is cancelled",
       [&] {
         MakeRemote("stall.bin", RandomBytes(2 * 1024 * 1024));
         PressTool(kRemoteTools, kCommandRemoteRefresh);
         alerts.Expect("削除しますか？", "削除");
         CancelDuring(
             kDownloading, [&] { Download({"stall.bin"}); },
             [](platform::Window* dialog) { return Progress(dialog) > 0.2; });
       }},
  };
  for (const auto& job : jobs) {
    SCOPED_TRACE(job.name);
    said.clear();
    job.run();
    EXPECT_TRUE(Says("lock idle:sleep by Orvane FTP, block"));
    EXPECT_TRUE(Says("released"));
  }
}

/// Cancelled in its sleep, the job still has to hear of the waking.
TEST_F(Desktop, ATransferThatIsCancelledInTheSleepEndsWithIt) {
  MakeRemote("stall.bin", RandomBytes(2 * 1024 * 1024));
  MakeEndless(Local("up.bin"));
  StartConnected();
  for (const bool isDown : {true, false}) {
    const std::string arriving = isDown ? Local("stall.bin") : Remote("up.bin");
    const Meanwhile sleep([&] { return SizeOf(arriving) > 100000; }, [&] { Order("sleep"); });
    const Meanwhile wake([&] { return sleep.Acted() && !Main().remotePane.Ftp.IsValid(); },
                         [&] {
                           EXPECT_TRUE(ui::Press(Dialog(TitleOf(isDown)), kCommandCancel));
                           QTimer::singleShot(100, &service, [this] { Order("wake"); });
                         });
    Transfer(isDown, {isDown ? "stall.bin" : "up.bin"});
    EXPECT_TRUE(wake.Acted());
    EXPECT_FALSE(LFtpList::bPowerSuspendStandBy);
    ExpectCancelled(isDown);
    ExpectUsable();
  }
}

}  // namespace
