// The calls that come from the desktop over D-Bus: open again, and the machine's sleep. Main thread.
#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <functional>

#include "platform/event_loop.h"

namespace platform {

/// The name of the desktop entry, and the one that the program answers to on the session's bus.
constexpr const char* kApplicationId = "com.tessalysoft.orvaneftpjp";

/// What other programs find at the program's own name: org.freedesktop.Application. Never destroyed.
class ApplicationObject : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
 public:
  std::function<void()> onReopen;

 public slots:
  void Activate(const QVariantMap&) { Reopen(); }
  /// The program opens no files by itself; whoever asks for that wants to see it.
  void Open(const QStringList&, const QVariantMap&) { Reopen(); }
  void ActivateAction(const QString&, const QVariantList&, const QVariantMap&) { Reopen(); }

 private:
  /// In a turn of its own: the call may come while work in one piece lets the windows draw.
  void Reopen() {
    EventLoopPost([this] {
      if (onReopen) onReopen();
    });
  }
};

/// Hears org.freedesktop.login1 say that the machine goes to sleep, and that it is back. Never destroyed.
class SleepListener : public QObject {
  Q_OBJECT
 public:
  std::function<void(bool)> onSleep;

 public slots:
  void PrepareForSleep(bool begins) {
    EventLoopPost([this, begins] {
      if (onSleep) onSleep(begins);
    });
  }
};

}  // namespace platform
