// How far a job has come.
#pragma once

#include <QProgressBar>

#include "platform/qt/paced.h"

namespace platform {

class ProgressControl : public QProgressBar {
  Q_OBJECT

 public:
  explicit ProgressControl(QWidget* parent) : QProgressBar(parent) {
    setTextVisible(false);
    setRange(0, kSteps);
  }
  /// From 0 to 1; less than 0: nobody knows, and the bar runs to and fro.
  void SetFraction(double fraction) {
    newest = fraction;
    const bool isKnown = maximum() != 0;
    isKnown == (fraction >= 0) ? paced.Changed() : paced.ShowNow();
  }

 private:
  static constexpr int kSteps = 10000;

  void ShowNewest() {
    setRange(0, newest < 0 ? 0 : kSteps);
    if (newest >= 0) setValue(static_cast<int>(qMin(newest, 1.0) * kSteps));
  }

  double newest = 0;
  Paced paced{[this] { ShowNewest(); }};
};

}  // namespace platform
