// What a job changes faster than the screen is shown once.
#pragma once

#include <QTimer>
#include <functional>

namespace platform {

/// Shows a change at once, and those that follow within kShowAfterMs together. A job tells of each file several times,
/// and a change costs more than an exchange with the server: a screen reader is told of it, and it is painted.
class Paced {
 public:
  static constexpr int kShowAfterMs = 50;

  /// `shows` brings what was set last to the screen.
  explicit Paced(std::function<void()> shows) : show(std::move(shows)) {
    timer.setSingleShot(true);
    timer.setInterval(kShowAfterMs);
    QObject::connect(&timer, &QTimer::timeout, [this] {
      if (isWaiting) ShowInTurn();
    });
  }

  void Changed() {
    isWaiting = true;
    if (!timer.isActive()) ShowInTurn();
  }
  /// For a change that follows no other of its kind.
  void ShowNow() {
    isWaiting = false;
    show();
  }
  bool IsWaiting() const { return isWaiting; }

 private:
  void ShowInTurn() {
    timer.start();
    ShowNow();
  }

  std::function<void()> show;
  bool isWaiting = false;
  QTimer timer;
};

}  // namespace platform
