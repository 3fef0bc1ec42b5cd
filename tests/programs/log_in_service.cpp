// Stands for org.freedesktop.login1 on the bus that DBUS_SYSTEM_BUS_ADDRESS names: hands out locks against sleep, and
// lets the machine sleep and wake in name only.
//
// Writes a line to its output for each event: "ready", "lock WHAT by WHO, MODE", "released". Reads a line for each
// order: "sleep", "wake". Ends with its input.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QSocketNotifier>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

class LogInService : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

 public slots:
  QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who, const QString&, const QString& mode) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return {};
    auto* const released = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
    connect(released, &QSocketNotifier::activated, this, [released, end = ends[0]] {
      printf("released\n");
      close(end);
      released->setEnabled(false);
      released->deleteLater();
    });
    printf("lock %s by %s, %s\n", qUtf8Printable(what), qUtf8Printable(who), qUtf8Printable(mode));
    const QDBusUnixFileDescriptor lock(ends[1]);  // A duplicate; ours is not to keep the lock.
    close(ends[1]);
    return lock;
  }

 signals:
  void PrepareForSleep(bool begins);
};

int main(int argc, char** argv) {
  setlinebuf(stdout);
  QCoreApplication application(argc, argv);
  QDBusConnection bus = QDBusConnection::systemBus();
  LogInService service;
  const bool isKnown = bus.registerObject(QStringLiteral("/org/freedesktop/login1"), &service,
                                          QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
                       bus.registerService(QStringLiteral("org.freedesktop.login1"));
  if (!isKnown) return 1;
  QSocketNotifier orders(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&orders, &QSocketNotifier::activated, [&] {
    char line[32];
    if (!fgets(line, sizeof line, stdin)) return QCoreApplication::quit();
    emit service.PrepareForSleep(strcmp(line, "sleep\n") == 0);
  });
  printf("ready\n");
  const int status = QCoreApplication::exec();
  // The connection to the bus ends before the objects it has.
  QDBusConnection::disconnectFromBus(bus.name());
  return status;
}

#include "log_in_service.moc"
