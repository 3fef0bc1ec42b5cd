#include "platform/power.h"

#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDBusUnixFileDescriptor>

namespace platform {

namespace {

int gDenials = 0;
QDBusUnixFileDescriptor gInhibitor;  // Sleep is held off for as long as this descriptor is open.

}  // namespace

void IdleSleepDeny() {
  if (++gDenials != 1) return;
  const QDBusConnection bus = QDBusConnection::systemBus();
  if (!bus.isConnected()) return;
  QDBusInterface manager(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
                         QStringLiteral("org.freedesktop.login1.Manager"), bus);
  if (!manager.isValid()) return;
  const QDBusReply<QDBusUnixFileDescriptor> reply =
      manager.call(QStringLiteral("Inhibit"), QStringLiteral("idle:sleep"), QStringLiteral("Orvane FTP"),
                   QStringLiteral("ファイルを転送しています"), QStringLiteral("block"));
  if (reply.isValid()) gInhibitor = reply.value();
}

void IdleSleepAllow() {
  if (gDenials == 0 || --gDenials != 0) return;
  gInhibitor = QDBusUnixFileDescriptor();
}

}  // namespace platform
