// How alive the real window is while a file comes down: the longest time between two pumps of the window system, and
// how long a cancel takes.
//
// Usage: window_bench HOST:PORT USER PASSWORD FOLDER FILE, with XDG folders of its own, in which orvaneftp-demo-profile
// has put a site. Downloads FILE through the main window's button, then again with the Cancel button pressed as soon as
// 64 MiB are there.
#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTimer>
#include <cstdio>
#include <string>

#include "app/command_ids.h"
#include "client/transfer_lists.h"
#include "in_program.h"
#include "platform/qt/native_window.h"
#include "ui_driver.h"

namespace {

constexpr qint64 kCancelFrom = 64 * 1024 * 1024;

/// The gaps between two turns of the event dispatcher.
class PumpClock {
 public:
  PumpClock() {
    clock.start();
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &context, [this] {
      const double ms = static_cast<double>(clock.nsecsElapsed()) / 1e6;
      clock.restart();
      if (ms > longestMs) longestMs = ms;
      ++pumps;
    });
  }
  double longestMs = 0;
  long pumps = 0;

 private:
  QElapsedTimer clock;
  QObject context;
};

double Seconds(const QElapsedTimer& clock) { return static_cast<double>(clock.nsecsElapsed()) / 1e9; }

void MeasurePumps(MainDialog& dialog) {
  QElapsedTimer clock;
  clock.start();
  PumpClock pumps;
  gTransferWaits.lateCancelSliceMs = 0;
  ui::Press(dialog.Native(), kDownloadButton);
  printf("whole file: %.2f s, %ld pumps, longest time between two pumps %.1f ms\n", Seconds(clock), pumps.pumps,
         pumps.longestMs);
}

void MeasureCancel(MainDialog& dialog, const char* name) {
  const QString local = QString::fromUtf8(dialog.localPane.Folder()) + "/" + QString::fromUtf8(name);
  QFile::remove(local);
  QElapsedTimer sinceCancel;
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, &look, [&] {
    auto* progress = dynamic_cast<platform::Window*>(ui::ModalWindow());
    if (!progress || sinceCancel.isValid() || QFileInfo(local).size() < kCancelFrom) return;
    sinceCancel.start();
    ui::Press(progress, kCommandCancel);
  });
  look.start(1);
  ui::Press(dialog.Native(), kDownloadButton);
  if (sinceCancel.isValid()) {
    printf("cancel: everything over, panes refreshed included, after %.0f ms\n", Seconds(sinceCancel) * 1000);
  } else {
    printf("cancel: the file was there before it could be pressed\n");
  }
}

void Run(MainDialog& dialog, char** argv) {
  if (!dialog.remotePane.CmConnect(argv[1], argv[2], argv[3], argv[4], false, false, true)) {
    printf("no connection\n");
    return;
  }
  dialog.InitStatus();
  ui::Alerts alerts;
  if (!ui::SelectRows(dialog.Native(), kRemoteList, {argv[5]})) {
    printf("no such file: %s among %zu rows\n", argv[5], ui::Column(dialog.Native(), kRemoteList, 0).size());
    return;
  }
  MeasurePumps(dialog);
  ui::SelectRows(dialog.Native(), kRemoteList, {argv[5]});
  alerts.Expect("ローカルファイルまたはフォルダを削除しますか？", "削除しない");
  MeasureCancel(dialog, argv[5]);
  printf("%s", alerts.Complaints().c_str());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 6) {
    fprintf(stderr, "usage: window_bench HOST:PORT USER PASSWORD FOLDER FILE\n");
    return 2;
  }
  return RunInProgram(argc, argv, [&](MainDialog& dialog) { Run(dialog, argv); });
}
