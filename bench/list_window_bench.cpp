// A folder of very many entries in the real window: how long from the listing to the rows on show, how long each sort,
// and the longest time between two turns of the window's loop meanwhile.
//
// Usage: list_window_bench HOST:PORT USER PASSWORD REMOTE_FOLDER LOCAL_FOLDER; bench/listing starts it beside lftp. In
// folders of its own.
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QScrollBar>
#include <cstdio>
#include <functional>

#include "app/command_ids.h"
#include "core/process.h"
#include "in_program.h"
#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"
#include "ui_driver.h"

namespace {

struct Figures {
  double ms, longestGapMs;
};

double Milliseconds(const QElapsedTimer& clock) { return static_cast<double>(clock.nsecsElapsed()) / 1e6; }

/// Runs `work` until its outcome is painted.
Figures Measure(const std::function<void()>& work) {
  QElapsedTimer whole, gap;
  QObject context;
  double longest = 0;
  const auto turn = [&] {
    longest = std::max(longest, Milliseconds(gap));
    gap.restart();
  };
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &context, turn);
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &context, turn);
  QApplication::processEvents();
  whole.start();
  gap.start();
  longest = 0;
  work();
  QApplication::processEvents();
  turn();
  return {Milliseconds(whole), longest};
}

void Print(const char* pane, const char* what, const Figures& figures) {
  printf("%s %s: %.0f ms, longest gap %.0f ms\n", pane, what, figures.ms, figures.longestGapMs);
}

void MeasureList(MainDialog& dialog, const char* pane, int id) {
  platform::ListControl* list = dialog.Native()->List(id);
  const int columns = list->model()->columnCount();
  for (int step = 0; step <= columns; ++step) {
    const int column = step % columns;  // The first one again, from another order.
    if (list->isColumnHidden(column)) continue;
    for (const char* direction : {"up", "down"}) {
      char what[64];
      snprintf(what, sizeof what, "sorted by column %d, %s", column, direction);
      const Figures figures = Measure([&] {
        emit list->header()->sectionClicked(column);
        list->viewport()->repaint();
      });
      Print(pane, what, figures);
    }
  }
  Print(pane, "scrolled through in 50 steps", Measure([&] {
          QScrollBar* bar = list->verticalScrollBar();
          for (int step = 0; step <= 50; ++step) {
            bar->setValue(bar->maximum() * step / 50);
            QApplication::processEvents();
          }
        }));
}

void Run(MainDialog& dialog, char** argv) {
  if (!dialog.remotePane.CmConnect(argv[1], argv[2], argv[3], "/", false, false, true)) {
    printf("no connection\n");
    return;
  }
  dialog.InitStatus();
  const ui::Alerts alerts;
  // Once for the caches of both sides.
  LProcessInterfaceVoid quiet;
  LFileTransferProtocol::DirIterator listing;
  dialog.remotePane.CmGo(argv[4]);
  const Figures bare = Measure([&] { (void)listing._LoadList(quiet, dialog.remotePane.Ftp, "*"); });
  const Figures shown = Measure([&] {
    dialog.remotePane.CmRefresh();
    dialog.Native()->List(kRemoteList)->viewport()->repaint();
  });
  printf("rows %d\n", dialog.LVGetCount(kRemoteList));
  Print("remote", "listing received", bare);
  Print("remote", "received and shown", shown);
  printf("remote from the closing reply to rows on show: %.0f ms\n", shown.ms - bare.ms);
  MeasureList(dialog, "remote", kRemoteList);
  Print("local", "shown", Measure([&] {
          dialog.localPane.CmOpenFolder(argv[5]);
          dialog.Native()->List(kLocalList)->viewport()->repaint();
        }));
  printf("rows %d\n", dialog.LVGetCount(kLocalList));
  MeasureList(dialog, "local", kLocalList);
  printf("%s", alerts.Complaints().c_str());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 6) {
    fprintf(stderr, "usage: list_window_bench HOST:PORT USER PASSWORD REMOTE_FOLDER LOCAL_FOLDER\n");
    return 2;
  }
  return RunInProgram(argc, argv, [&](MainDialog& dialog) {
    dialog.TimerReset(MainDialog::kTimerStartup);  // It would ask for a site.
    Run(dialog, argv);
  });
}
