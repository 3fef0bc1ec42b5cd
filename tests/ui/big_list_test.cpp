// A folder of a hundred thousand names: no pause that a person notices. The bounds are wide, for a loaded
// machine under sanitizers; the measured times are printed.
#include <QElapsedTimer>
#include <QScrollBar>

#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"
#include "support/window/list_view.h"
#include "ui/window_fixture.h"

namespace {

constexpr int kRows = 100000;
constexpr qint64 kLimitMs = 3000;

class BigList : public WindowTest {
 protected:
  /// Runs `step`, the drawing behind it included, and prints how long it took.
  template <typename Step>
  void Timed(const char* name, Step step) {
    QElapsedTimer clock;
    clock.start();
    step();
    ui::Pump(0);
    Window()->List(kRemoteList)->viewport()->repaint();
    printf("%d rows: %s %lld ms\n", kRows, name, static_cast<long long>(clock.elapsed()));
    EXPECT_LT(clock.elapsed(), kLimitMs) << name;
  }

  void Fill() {
    Main().LVHoldDrawing(kRemoteList, true);
    for (int i = 0; i < kRows; ++i) {
      char text[kTextSize];
      TextFormat(text, "写真 %06d.jpg", (i * 7919) % kRows);
      const int row = Main().LVAddString(kRemoteList, text, -1, 0);
      TextFormat(text, "%d KB", i % 977);
      Main().LVSetColumnString(kRemoteList, row, 1, text);
      Main().LVSetColumnString(kRemoteList, row, 2, "ファイル");
      Main().LVSetColumnString(kRemoteList, row, 4, "-rw-r--r--");
    }
    Main().LVHoldDrawing(kRemoteList, false);
  }
};

TEST_F(BigList, FillsSortsScrollsAndSelectsAtOnce) {
  StartProgram();
  Timed("filled in", [&] { Fill(); });
  ASSERT_EQ(Main().LVGetCount(kRemoteList), kRows);
  Timed("sorted by name in", [&] { Main().remotePane.LVSorterSort(); });
  EXPECT_EQ(Names(kRemoteList)[1], "写真 000001.jpg");
  Main().LVSetCurSel(kRemoteList, Main().LVFindString(kRemoteList, "写真 054321.jpg"));
  Timed("sorted by size in", [&] { ClickHeading(kRemoteList, 1); });
  EXPECT_EQ(CurrentRow(kRemoteList), "写真 054321.jpg") << "the selection goes with its row";
  EXPECT_EQ(Main().LVGetSelCount(kRemoteList), 1);
  Timed("scrolled through in", [&] {
    QScrollBar* bar = Window()->List(kRemoteList)->verticalScrollBar();
    for (int step = 0; step <= 50; ++step) {
      bar->setValue(bar->maximum() * step / 50);
      Window()->List(kRemoteList)->viewport()->repaint();
    }
  });
  Timed("all selected in", [&] { Main().LVSelectAll(kRemoteList); });
  EXPECT_EQ(Main().LVGetSelCount(kRemoteList), kRows);
  Timed("walked in", [&] {
    size_t walked = 0;
    for (LVSelectedIterator it(Main(), kRemoteList); it.IsValid(); it.Next())
      walked += static_cast<size_t>(it.Row() >= 0);
    EXPECT_EQ(walked, static_cast<size_t>(kRows));
  });
  Timed("found the last one in", [&] { EXPECT_GE(Main().LVFindString(kRemoteList, "写真 099999.jpg"), 0); });
  Timed("cleared in", [&] { Main().LVClear(kRemoteList); });
  EXPECT_EQ(Main().LVGetCount(kRemoteList), 0);
}

}  // namespace
