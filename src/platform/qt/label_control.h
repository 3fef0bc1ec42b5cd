// A one-line text that is elided in the middle; its tool tip holds the whole.
#pragma once

#include <QLabel>

#include "platform/qt/paced.h"

namespace platform {

class LabelControl : public QLabel {
  Q_OBJECT

 public:
  LabelControl(const QString& text, QWidget* parent) : QLabel(text, parent) {}
  void SetShown(const char* text);
  /// What was set last, be it on the screen or not yet.
  QString Newest() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void ShowNewest();

  QByteArray newest;
  Paced paced{[this] { ShowNewest(); }};
};

}  // namespace platform
