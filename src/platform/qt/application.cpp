// The application object: its look, its loop, and its end.
#include <QApplication>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLibraryInfo>
#include <QPalette>
#include <QProxyStyle>
#include <QSessionManager>
#include <QSocketNotifier>
#include <QTimer>
#include <QTranslator>
#include <csignal>
#include <cstdlib>
#include <unistd.h>

#include "platform/event_loop.h"
#include "platform/qt/accessibility.h"
#include "platform/qt/desktop_calls.h"
#include "platform/qt/icons.h"

namespace platform {

namespace {

QApplication* gApplication = nullptr;
std::function<void()> gQuitRequest;
int gSignalPipe[2] = {-1, -1};

/// Fusion with air around the texts of cells and headings, so that columns of different sides stay apart.
class RoomyStyle : public QProxyStyle {
 public:
  using QProxyStyle::QProxyStyle;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
    if (metric == PM_FocusFrameHMargin || metric == PM_HeaderMargin || metric == PM_ToolTipLabelFrameWidth) return 6;
    return QProxyStyle::pixelMetric(metric, option, widget);
  }
  /// The affirmative button at the right in alerts too, as in the program's own dialogs.
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override {
    if (hint == SH_DialogButtonLayout) return QDialogButtonBox::GnomeLayout;
    return QProxyStyle::styleHint(hint, option, widget, result);
  }
};

QPalette LightPalette() {
  QPalette colors;
  const auto set = [&](QPalette::ColorRole role, unsigned rgb) { colors.setColor(role, QColor::fromRgb(rgb)); };
  set(QPalette::Window, 0xF3F5F7);
  set(QPalette::WindowText, 0x22303C);
  set(QPalette::Base, 0xFFFFFF);
  set(QPalette::AlternateBase, 0xF7F9FB);
  set(QPalette::Text, 0x22303C);
  set(QPalette::Button, 0xEDF0F3);
  set(QPalette::ButtonText, 0x22303C);
  set(QPalette::Mid, 0xC3CBD3);
  set(QPalette::Highlight, 0x1668B2);
  set(QPalette::HighlightedText, 0xFFFFFF);
  set(QPalette::ToolTipBase, 0xFFFFFF);
  set(QPalette::ToolTipText, 0x22303C);
  set(QPalette::PlaceholderText, 0x8593A0);
  set(QPalette::Link, 0x1668B2);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    colors.setColor(QPalette::Disabled, role, QColor::fromRgb(0x9AA6B1));
  }
  // A field that is off must not look like one that waits for input.
  colors.setColor(QPalette::Disabled, QPalette::Base, colors.color(QPalette::Window));
  return colors;
}

/// The system's font with a Japanese sans serif behind it, or in front where the system's has no kana.
QFont JapaneseFont() {
  QFont font = QApplication::font();
  const QStringList known = QFontDatabase::families();
  QStringList families;
  for (const char* name : {"Noto Sans CJK JP", "Noto Sans JP", "IPAexGothic", "VL Gothic"}) {
    if (known.contains(QLatin1String(name))) families << QLatin1String(name);
  }
  families << font.families();
  font.setFamilies(families);
  if (font.pointSizeF() < 9.5) font.setPointSizeF(9.5);
  return font;
}

/// Qt's own panels and menus, whatever the user's locale: the rest of the program is Japanese too.
void SpeakJapanese() {
  auto* words = new QTranslator(gApplication);
  if (words->load(QStringLiteral("qtbase_ja"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(words);
  }
}

void OnSignal(int) {
  const char byte = 1;
  [[maybe_unused]] const ssize_t written = write(gSignalPipe[1], &byte, 1);
}

/// SIGTERM, SIGINT and SIGHUP end the program like its own quit command.
void WatchSignals() {
  if (pipe(gSignalPipe) != 0) return;
  auto* notifier = new QSocketNotifier(gSignalPipe[0], QSocketNotifier::Read, gApplication);
  QObject::connect(notifier, &QSocketNotifier::activated, [] {
    char byte;
    [[maybe_unused]] const ssize_t taken = read(gSignalPipe[0], &byte, 1);
    if (gQuitRequest) gQuitRequest();
  });
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
  }
}

}  // namespace

void ApplicationInit(int& argc, char** argv) {
  if (gApplication) return;
  gApplication = new QApplication(argc, argv);
  QApplication::setApplicationName(QStringLiteral("orvaneftp"));
  QApplication::setApplicationDisplayName(QString());
  QApplication::setDesktopFileName(QLatin1String(kApplicationId));
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setStyle(new RoomyStyle(QStringLiteral("Fusion")));
  QApplication::setPalette(LightPalette());
  QApplication::setFont(JapaneseFont());
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/orvaneftp.svg")));
  QObject::connect(gApplication, &QGuiApplication::commitDataRequest, gApplication, [](QSessionManager& manager) {
    manager.setRestartHint(QSessionManager::RestartNever);
    if (gQuitRequest) gQuitRequest();
  });
  SpeakJapanese();
  AccessibilityInit();
  WatchSignals();
}

int ApplicationRun() { return QApplication::exec(); }

void ApplicationQuit(int status) {
  QTimer::singleShot(0, gApplication, [status] { QApplication::exit(status); });
}

void ApplicationOnQuitRequest(std::function<void()> handler) { gQuitRequest = std::move(handler); }

}  // namespace platform
