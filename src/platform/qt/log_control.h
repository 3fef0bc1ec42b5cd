// A read-only text that follows its end. Texts that arrive faster than the screen are shown once.
#pragma once

#include <QPlainTextEdit>
#include <QTimer>

namespace platform {

class LogControl : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit LogControl(QWidget* parent);
  void SetLog(const char* utf8);
  void SetColors(unsigned text, unsigned background);

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent*) override;

 private:
  void ShowNow();

  QByteArray waiting;
  unsigned textColor = 0;
  unsigned backgroundColor = 0xFFFFFF;
  QTimer timer;
};

}  // namespace platform
