// What a user, a timer or the session's end does in the middle of a job. A job pumps events, so that each of these runs
// inside it, on top of its stack. The places are found by a first run of each job: one for each command and window at
// which it pumps; then each interruption is made at each place, in a fresh window.
#include <QTimer>
#include <cstdlib>
#include <set>

#include "platform/event_loop.h"
#include "platform/qt/native_window.h"
#include "ui/transfer_fixture.h"

namespace {

constexpr size_t kFewestPlaces = 30;

class Reentry : public TransferTest {
 protected:
  Reentry() { platform::gEventLoopOftenUs = 0; }
  ~Reentry() override { platform::gEventLoopOftenUs = 1000; }
  struct Job {
    const char* name;
    std::function<void()> run;
  };
  struct Interruption {
    const char* name;
    std::function<void()> act;
  };
  std::vector<Job> Jobs();
  std::vector<Interruption> Interruptions();

  void MakeFiles() {
    for (const char* side : {"server", "local"}) {
      std::filesystem::remove_all(root + "/" + side);
      std::filesystem::create_directory(root + "/" + side);
    }
    MakeRemote("far/a.bin", RandomBytes(300000));
    MakeRemote("far/deep/b.txt", "b");
    MakeRemote("both.txt", "remote");
    MakeLocal("near/c.bin", RandomBytes(300000));
    MakeLocal("near/deep/d.txt", "d");
    MakeLocal("both.txt", "local");
  }

  void Tool(int command) { ui::PressTool(Window(), kRemoteTools, command); }

  /// The command that is out, and the window that is up.
  std::string Place() {
    const std::string command = history.LastCommand();
    const platform::Window* top = ui::ModalWindow();
    return command.substr(0, command.find(' ')) + "/" + (top ? top->windowTitle().toStdString() : "");
  }

  /// Runs the job in a fresh window and calls `atPump` at each turn of the events inside it; then ends the program.
  void Run(const Job& job, const std::function<void()>& atPump) {
    MakeFiles();
    Serve();
    alerts.AgreeToAll(true);
    StartProgram();
    ASSERT_TRUE(Main().remotePane.bConnected);
    bool isOver = false;
    QTimer decline;
    QObject::connect(&decline, &QTimer::timeout, &decline, [] {
      if (Dialog("ユーザーログイン")) ui::Press(Dialog("ユーザーログイン"), kCommandCancel);
    });
    decline.start(20);
    QTimer pump;
    QObject::connect(&pump, &QTimer::timeout, &pump, atPump);
    platform::EventLoopPost([&] {
      pump.start(0);
      job.run();
      pump.stop();
      isOver = true;
      delegate->EvQuit();
    });
    EXPECT_EQ(platform::ApplicationRun(), 0);
    EXPECT_TRUE(isOver) << "the job was left on the stack";
    delegate.reset();
    EXPECT_EQ(LMainMenu::uRefCount, 0u) << "the menu stays off";
  }

  std::vector<std::string> PlacesOf(const Job& job) {
    std::vector<std::string> places;
    std::set<std::string> seen;
    Run(job, [&] {
      std::string place = Place();
      if (seen.insert(place).second) places.push_back(place);
    });
    return places;
  }
};

std::vector<Reentry::Job> Reentry::Jobs() {
  return {
      {"refresh", [this] { Tool(kCommandRemoteRefresh); }},
      {"enter", [this] { ui::DoubleClickRow(Window(), kRemoteList, "far"); }},
      {"download", [this] { Download({"far"}); }},
      {"upload", [this] { Upload({"near"}); }},
      {"delete",
       [this] {
         Select(kRemoteList, {"far"});
         Tool(kCommandRemoteDelete);
       }},
      {"synchronise", [this] { ui::Press(Window(), kSynchroniseButton); }},
      {"compare", [this] { Main().CmDirectoryComparison(); }},
      {"connect", [this] { Main().CmConnect(false); }},
  };
}

std::vector<Reentry::Interruption> Reentry::Interruptions() {
  return {
      {"close the window", [this] { Window()->close(); }},
      {"cancel",
       [this] {
         platform::Window* top = ui::ModalWindow();
         ui::Key(top ? top : Window(), Qt::Key_Escape);
         if (ui::ModalWindow()) ui::Press(ui::ModalWindow(), kCommandCancel);
       }},
      {"a second command",
       [this] {
         Tool(kCommandRemoteRefresh);
         ui::DoubleClickRow(Window(), kRemoteList, "far");
         ui::Press(Window(), kDownloadButton);
       }},
      {"disconnect", [this] { ui::PressTool(Window(), platform::kMainToolBar, kCommandDisconnect); }},
      {"the timers",
       [this] {
         for (int id = MainDialog::kTimerConnectIcon; id <= MainDialog::kTimerEnable; ++id) Main().EvTimer(id);
       }},
      {"a resize", [this] { Window()->resize(Window()->size() - QSize(40, 30)); }},
      {"quit", [this] { delegate->EvQuit(); }},
  };
}

/// All of them take some minutes: ordinarily each place meets one, and ORVANE_ALL_INTERRUPTIONS=1 makes all.
bool IsChosen(size_t place, size_t interruption, size_t count) {
  return getenv("ORVANE_ALL_INTERRUPTIONS") || place % count == interruption;
}

TEST_F(Reentry, EveryInterruptionHasADefinedEnd) {
  size_t places = 0;
  for (const Job& job : Jobs()) {
    for (const std::string& place : PlacesOf(job)) {
      ++places;
      const std::vector<Interruption> interruptions = Interruptions();
      for (size_t i = 0; i < interruptions.size(); ++i) {
        const Interruption& interruption = interruptions[i];
        if (!IsChosen(places, i, interruptions.size())) continue;
        SCOPED_TRACE(std::string(job.name) + " at " + place + ": " + interruption.name);
        bool isMade = false;
        Run(job, [&] {
          if (isMade || Place() != place) return;
          isMade = true;
          interruption.act();
        });
        EXPECT_TRUE(isMade);
        if (HasFailure()) return;
      }
    }
  }
  EXPECT_GE(places, kFewestPlaces);
}

}  // namespace
