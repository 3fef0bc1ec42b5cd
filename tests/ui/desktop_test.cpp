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

TEST_F(Desktop, TheMachineStaysAwakeForATransferAndNoLonger) {
  MakeRemote("a.bin", RandomBytes(5000));
  StartConnected();
  EXPECT_EQ(said.find("lock"), std::string::npos);
  TransferTest::Download({"a.bin"});
  EXPECT_TRUE(Says("lock idle:sleep by Orvane FTP, block"));
  EXPECT_TRUE(Says("released"));
}

/// Cancelled in its sleep, the job still has to hear of the waking.
TEST_F(Desktop, ATransferThatIsCancelledInTheSleepEndsWithIt) {
  MakeRemote("stall.bin", RandomBytes(2 * 1024 * 1024));
  StartConnected();
  const Meanwhile sleep(
      [&] {
        platform::Window* dialog = Dialog(kDownloading);
        return dialog && Progress(dialog) > 0.2;
      },
      [&] { Order("sleep"); });
  const Meanwhile wake([&] { return sleep.Acted() && !Main().remotePane.Ftp.IsValid(); },
                       [&] {
                         EXPECT_TRUE(ui::Press(Dialog(kDownloading), kCommandCancel));
                         QTimer::singleShot(100, &service, [this] { Order("wake"); });
                       });
  TransferTest::Download({"stall.bin"});
  EXPECT_TRUE(wake.Acted());
  EXPECT_FALSE(LFtpList::bPowerSuspendStandBy);
  EXPECT_THAT(Messages(), testing::Contains("ユーザーがダウンロードを中止しました"));
  ExpectUsable();
}

}  // namespace
