#include "platform/qt/log_control.h"

#include <QScrollBar>

#include "platform/qt/text.h"

namespace platform {

/// Each time, the whole text is laid out anew.
constexpr int kShowAfterMs = 100;

LogControl::LogControl(QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setUndoRedoEnabled(false);
  setFrameShape(QFrame::NoFrame);
  setTabChangesFocus(true);
  document()->setDocumentMargin(8);
  setTabStopDistance(fontMetrics().horizontalAdvance(QStringLiteral("00:00:00  ")));
  timer.setSingleShot(true);
  timer.setInterval(kShowAfterMs);
  connect(&timer, &QTimer::timeout, this, [this] { ShowNow(); });
}

void LogControl::SetLog(const char* utf8) {
  waiting.resize(0);  // An assignment would look for room anew.
  waiting.append(utf8);
  if (!timer.isActive()) timer.start();
}

void LogControl::SetColors(unsigned text, unsigned background) {
  textColor = text;
  backgroundColor = background;
  if (!timer.isActive()) timer.start();
}

void LogControl::ShowNow() {
  const QColor background(static_cast<QRgb>(0xFF000000u | backgroundColor));
  const QColor text(static_cast<QRgb>(0xFF000000u | textColor));
  QPalette colors = palette();
  if (colors.color(QPalette::Text) != text || colors.color(QPalette::Base) != background) {
    colors.setColor(QPalette::Base, background);
    colors.setColor(QPalette::Text, text);
    setPalette(colors);
  }
  // The line end of the newest line would show as an empty line below it.
  setPlainText(ShownText(waiting.endsWith('\n') ? waiting.chopped(1) : waiting, true));
  verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

/// The first picture of a window has its colours and lines already.
void LogControl::showEvent(QShowEvent* event) {
  if (timer.isActive()) {
    timer.stop();
    ShowNow();
  }
  QPlainTextEdit::showEvent(event);
}

/// The newest line stays in sight at any height.
void LogControl::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

}  // namespace platform
