// The progress dialog and the waits of its process, run by jobs of the test's own.
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProgressBar>

#include "core/progress_dialog.h"
#include "core/signal_object.h"
#include "platform/event_loop.h"
#include "platform/qt/native_window.h"
#include "support/window/menus.h"
#include "ui/window_fixture.h"

/// A job whose body the test writes.
struct TestJob {
  std::function<LProcessResult(LProcessInterface&)> run;
};
static LProcessResult Process(LProcessInterface& process, TestJob& job) { return job.run(process); }

namespace {

constexpr int kActionLine = 101;
constexpr int kItemLine = 102;
constexpr int kBar = 104;
constexpr const char* kCaption = "作業中";

class Progress : public WindowTest {
 protected:
  Progress() { StartProgram(); }

  LProcessResult Run(std::function<LProcessResult(LProcessInterface&)> body, LMacWindow* parent = nullptr) {
    TestJob job = {std::move(body)};
    return ProcessRunAsDialog(parent ? parent : &Main(), kCaption, job);
  }
  /// Presses Cancel after `ms` of the job's waits.
  std::unique_ptr<Meanwhile> CancelAfter(int ms) {
    since.start();
    return std::make_unique<Meanwhile>([this, ms] { return since.elapsed() >= ms && Dialog(kCaption); },
                                       [] { EXPECT_TRUE(ui::Press(Dialog(kCaption), kCommandCancel)); });
  }
  QElapsedTimer since;
};

TEST_F(Progress, ShowsTwoLinesAndTheShareDoneAboveAWindowThatWasHidden) {
  platform::WindowShow(Window(), false);
  EXPECT_EQ(Run([&](LProcessInterface& process) {
              process.SetStatus("送信中", 0);
              process.SetStatus("写真.jpg", 1);
              process.SetStatus("どこにも出ない", 2);
              process.SetStatus("これも", 99);
              process.SetProgress(0.25);
              EXPECT_FALSE(process.IsToStop());
              EXPECT_TRUE(platform::WindowIsVisible(Window()));
              platform::Window* dialog = Dialog(kCaption);
              EXPECT_TRUE(dialog && platform::WindowIsVisible(dialog));
              if (!dialog) return LProcessResultFailed;
              EXPECT_EQ(ui::Text(dialog, kActionLine), "送信中");
              EXPECT_EQ(ui::Text(dialog, kItemLine), "写真.jpg");
              EXPECT_EQ(dialog->ControlAs<QProgressBar>(kBar)->value(),
                        dialog->ControlAs<QProgressBar>(kBar)->maximum() / 4);
              process.SetProgressIndeterminateOn();
              EXPECT_EQ(dialog->ControlAs<QProgressBar>(kBar)->maximum(), 0);
              process.SetProgressIndeterminateOff();
              EXPECT_NE(dialog->ControlAs<QProgressBar>(kBar)->maximum(), 0);
              EXPECT_EQ(LMainMenu::uRefCount, 1u);
              return LProcessResultOk;
            }),
            LProcessResultOk);
  EXPECT_EQ(LMainMenu::uRefCount, 0u);
  EXPECT_EQ(ui::ModalWindow(), nullptr);
}

TEST_F(Progress, CancelIsSeenAtTheNextCheckAndTakesItsButtonOff) {
  const auto cancel = CancelAfter(20);
  EXPECT_EQ(Run([](LProcessInterface& process) {
              while (!process.IsToStop()) {
              }
              EXPECT_FALSE(platform::ControlIsEnabled(Dialog(kCaption), kCommandCancel));
              return LProcessResultStopped;
            }),
            LProcessResultStopped);
}

TEST_F(Progress, CancelEndsEachKindOfWait) {
  LSignalObject never;
  const struct {
    const char* name;
    std::function<LProcessResult(LProcessInterface&)> wait;
  } rows[] = {
      {"plain", [](LProcessInterface& process) { return process.ProcessWait(20000); }},
      {"for a signal", [&](LProcessInterface& process) { return process.ProcessWaitSignal(never.Ref(), 20000); }},
      {"for one of a group",
       [&](LProcessInterface& process) {
         LSignalObjectGroup group;
         group.Add(never.Ref());
         return process.ProcessWaitSignalObjectGroup(group, 20000);
       }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto cancel = CancelAfter(50);
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(Run(row.wait), LProcessResultStopped);
    printf("a wait (%s) ended %lld ms after Cancel\n", row.name, static_cast<long long>(clock.elapsed() - 50));
    EXPECT_LT(clock.elapsed(), 1050);
  }
}

TEST_F(Progress, WaitsTakeTheirTimeAndSignalsEndThem) {
  LSignalObject set, unset;
  set.Signal();
  LSignalObjectGroup empty, both;
  both.Add(unset.Ref());
  both.Add(set.Ref());
  const struct {
    const char* name;
    std::function<LProcessResult(LProcessInterface&)> wait;
    LProcessResult result;
    int atLeastMs, atMostMs;
  } rows[] = {
      {"time passes", [](LProcessInterface& process) { return process.ProcessWait(80); }, LProcessResultOk, 75, 1000},
      {"no time at all", [](LProcessInterface& process) { return process.ProcessWait(0); }, LProcessResultOk, 0, 500},
      {"set before", [&](LProcessInterface& process) { return process.ProcessWaitSignal(set.Ref(), 20000); },
       LProcessResultOk, 0, 1000},
      {"never set", [&](LProcessInterface& process) { return process.ProcessWaitSignal(unset.Ref(), 80); },
       LProcessResultFailed, 75, 1000},
      {"one of two set", [&](LProcessInterface& process) { return process.ProcessWaitSignalObjectGroup(both, 20000); },
       LProcessResultOk, 0, 1000},
      {"empty group", [&](LProcessInterface& process) { return process.ProcessWaitSignalObjectGroup(empty, 80); },
       LProcessResultFailed, 75, 1000},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    qint64 took = 0;
    EXPECT_EQ(Run([&](LProcessInterface& process) {
                QElapsedTimer clock;
                clock.start();
                const LProcessResult result = row.wait(process);
                took = clock.elapsed();
                return result;
              }),
              row.result);
    EXPECT_GE(took, row.atLeastMs);
    EXPECT_LE(took, row.atMostMs);
  }
}

TEST_F(Progress, TimersFireInTheMiddleOfAWaitAndASignalSetThereEndsIt) {
  LSignalObject signal;
  struct Handler : LTimerHandlerBase {
    void EvTimer(int) override { ++fired; }
    int fired = 0;
  } handler;
  handler.TimerSet(1, 20);
  since.start();
  const Meanwhile set([&] { return handler.fired > 0 && since.elapsed() > 40; }, [&] { signal.Signal(); });
  EXPECT_EQ(Run([&](LProcessInterface& process) { return process.ProcessWaitSignal(signal.Ref(), 20000); }),
            LProcessResultOk);
  EXPECT_LT(since.elapsed(), 1000);
  EXPECT_EQ(handler.fired, 1);
}

TEST_F(Progress, AnErrorIsShownAndTheJobGoesOn) {
  alerts.Expect("ディスクがいっぱいです", "続行");
  EXPECT_EQ(Run([](LProcessInterface& process) {
              process.SetError("ディスクがいっぱいです");
              EXPECT_FALSE(process.IsToStop());
              EXPECT_EQ(LMainMenu::uRefCount, 1u);
              return LProcessResultOk;
            }),
            LProcessResultOk);
}

TEST_F(Progress, DialogsNestAndTheInnerOneIsCancelledAlone) {
  EXPECT_EQ(Run([&](LProcessInterface& outer) {
              const Meanwhile cancel([] { return Dialog("内側") != nullptr; },
                                     [] { EXPECT_TRUE(ui::Press(Dialog("内側"), kCommandCancel)); });
              TestJob inner = {[](LProcessInterface& process) {
                EXPECT_EQ(LMainMenu::uRefCount, 2u);
                return process.ProcessWait(20000);
              }};
              // Without a parent it stands on the innermost modal window.
              EXPECT_EQ(ProcessRunAsDialog(nullptr, "内側", inner), LProcessResultStopped);
              EXPECT_EQ(LMainMenu::uRefCount, 1u);
              EXPECT_FALSE(outer.IsToStop());
              EXPECT_NE(Dialog(kCaption), nullptr) << "the outer dialog holds the window again";
              return LProcessResultOk;
            }),
            LProcessResultOk);
}

TEST_F(Progress, OnAWindowThatIsNotOpenNothingRuns) {
  class Closed : public LDialog {};
  Closed closed;
  bool ran = false;
  TestJob job = {[&](LProcessInterface&) {
    ran = true;
    return LProcessResultOk;
  }};
  LProcessDialog<TestJob> dialog(kCaption, job);
  EXPECT_FALSE(dialog.Open(&closed));
  EXPECT_FALSE(ran);
  EXPECT_EQ(dialog.result, LProcessResultFailed);
  EXPECT_EQ(LMainMenu::uRefCount, 0u);
}

TEST_F(Progress, WithoutAMainFunctionTheCallerWorksInline) {
  {
    LProcessDialogRunInterface dialog(kCaption);
    ASSERT_TRUE(dialog._Open(&Main(), false));
    dialog.OpenModalWindow();
    dialog.SetStatus("その場で", 0);
    EXPECT_FALSE(dialog.IsToStop());
    EXPECT_EQ(ui::Text(Dialog(kCaption), kActionLine), "その場で");
    dialog.CloseModalWindow();
    EXPECT_TRUE(dialog.IsToStop()) << "a closed dialog stops what still runs";
  }
  EXPECT_EQ(LMainMenu::uRefCount, 0u);
}

// Without a dialog

TEST_F(Progress, AQuietWaitDrawsAndDoesNothingElse) {
  struct Field : QLineEdit {
    void paintEvent(QPaintEvent* event) override {
      QLineEdit::paintEvent(event);
      ++drawn;
    }
    int drawn = 0;
  } field;
  field.show();
  ASSERT_TRUE(ui::WaitUntil([&] { return field.isActiveWindow() && field.drawn > 0; }));
  struct Clock : LTimerHandlerBase {
    void EvTimer(int) override { hasFired = true; }
    bool hasFired = false;
  } clock;
  clock.TimerSet(1, 0);
  bool posted = false;
  platform::EventLoopPost([&] { posted = true; });
  field.update();
  field.drawn = 0;
  LProcessInterfaceVoid quiet;
  EXPECT_EQ(quiet.ProcessWait(150), LProcessResultOk);
  EXPECT_GT(field.drawn, 0);
  EXPECT_FALSE(clock.hasFired);
  EXPECT_FALSE(posted);
  ui::Pump(50);
  EXPECT_TRUE(clock.hasFired);
  EXPECT_TRUE(posted) << "nothing is lost";
}

}  // namespace
