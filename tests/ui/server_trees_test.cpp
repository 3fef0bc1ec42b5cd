// A whole tree down from each server of other makers, up again and down again, through the buttons of the window,
// compared byte for byte and date for date. Both sides live in Japan's time, so that a date that is off by the zone
// shows.
#include <cstdlib>

#include "support/environment.h"
#include "support/real_server.h"
#include "support/server_setups.h"
#include "ui/transfer_fixture.h"
#include "ui/tree_files.h"

namespace {

using testing::Contains;
using testing::IsEmpty;

constexpr const char* kTree = "樹";

/// A tree of the size that people bring, for a patient hour: ORVANE_TREES=full.
TreeSize SizeOfTree() {
  const char* wanted = getenv("ORVANE_TREES");
  return wanted && strcmp(wanted, "full") == 0 ? TreeSize{500, 40, 300u << 20} : TreeSize{42, 12, 8u << 20};
}

class ServerTrees : public TransferTest, public testing::WithParamInterface<ServerSetup> {
 protected:
  void TearDown() override {
    // While it has its server.
    if (delegate) CloseProgram();
  }

  std::string Server(const std::string& name) const { return real->Folder() + "/" + name; }
  void Start() {
    real = std::make_unique<RealServer>(GetParam());
    ASSERT_TRUE(real->IsRunning()) << real->Log();
    MakeTreeOfFiles(Server(kTree), SizeOfTree());
    MakeTreeOfFiles(Original(), SizeOfTree());
    const bool isSecure = GetParam().security == ServerSecurity::kExplicitTls;
    KeepSite(real->Address(), RealServer::Password(), isSecure, real->User(), TopFolder().c_str());
    StartProgram();
    ASSERT_TRUE(Main().remotePane.bConnected);
  }
  /// The served folder as the server names it.
  std::string TopFolder() const {
    const ServerKind kind = GetParam().kind;
    const bool showsOnlyIt =
        kind == ServerKind::kPureFtpd || kind == ServerKind::kPyftpdlib || kind == ServerKind::kBusybox;
    return showsOnlyIt ? "/" : real->Folder();
  }
  std::string Original() const { return root + "/original"; }
  void Timed(const char* what, const std::function<void()>& action) {
    QElapsedTimer clock;
    clock.start();
    action();
    printf("%s: %s in %.1f s\n", NameOf(GetParam()).c_str(), what, static_cast<double>(clock.elapsed()) / 1000);
  }
  /// Whether a sent file gets its date at the server.
  static bool TakesDates() {
    const ServerKind kind = GetParam().kind;
    return kind == ServerKind::kProftpd || kind == ServerKind::kPureFtpd || kind == ServerKind::kPyftpdlib;
  }

  const TimeZone zone{"JST-9"};
  std::unique_ptr<RealServer> real;
};

TEST_P(ServerTrees, DownUpAndDownAgain) {
  Start();
  Timed("down", [&] { TransferTest::Download({kTree}); });
  EXPECT_THAT(TreeDifferences(Original(), Local(kTree), Times::kCompared), IsEmpty());

  std::filesystem::remove_all(Server(kTree));
  Timed("up", [&] { TransferTest::Upload({kTree}); });
  EXPECT_THAT(TreeDifferences(Original(), Server(kTree), TakesDates() ? Times::kCompared : Times::kIgnored), IsEmpty());
  EXPECT_THAT(Messages(), Contains("アップロード完了"));

  std::filesystem::remove_all(Local(kTree));
  Timed("down again", [&] { TransferTest::Download({kTree}); });
  EXPECT_THAT(TreeDifferences(Original(), Local(kTree), Times::kIgnored), IsEmpty());
  EXPECT_THAT(TreeDifferences(Server(kTree), Local(kTree), Times::kCompared), IsEmpty());
  EXPECT_EQ(history.Count("サーバーに接続しています："), 1U) << "a step has failed and was tried again";
}

INSTANTIATE_TEST_SUITE_P(Each, ServerTrees, testing::ValuesIn(OfferedServersThat([](const ServerSetup& setup) {
                           return setup.security != ServerSecurity::kImplicitTls;
                         })),
                         NameOfParameter);

}  // namespace
