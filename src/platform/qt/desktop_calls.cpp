#include "platform/qt/desktop_calls.h"

#include <QDBusConnection>

#include "platform/event_loop.h"
#include "platform/power.h"

namespace platform {

namespace {

constexpr const char* kObjectPath = "/com/tessalysoft/orvaneftpjp";  // As the application's id tells it.

}  // namespace

void ApplicationOnReopenRequest(std::function<void()> handler) {
  // Never destroyed: at the program's exit the bus is gone before it, and a destructor would wait for that for ever.
  static ApplicationObject& object = *new ApplicationObject;
  object.onReopen = std::move(handler);
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!object.onReopen) {
    bus.unregisterObject(QLatin1String(kObjectPath));
    return;
  }
  // Without a bus, or with another copy of the program at that name, nobody calls here.
  if (!bus.isConnected()) return;
  bus.registerObject(QLatin1String(kObjectPath), &object, QDBusConnection::ExportAllSlots);
  bus.registerService(QLatin1String(kApplicationId));
}

void PowerOnSleep(std::function<void(bool)> handler) {
  static SleepListener& listener = *new SleepListener;  // Never destroyed, for the same reason.
  const bool listens = static_cast<bool>(listener.onSleep);
  listener.onSleep = std::move(handler);
  if (listens || !listener.onSleep) return;
  QDBusConnection bus = QDBusConnection::systemBus();
  if (!bus.isConnected()) return;
  bus.connect(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
              QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"), &listener,
              SLOT(PrepareForSleep(bool)));
}

}  // namespace platform
