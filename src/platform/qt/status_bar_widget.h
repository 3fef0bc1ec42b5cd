// The strip at the foot of a main window: parts of given widths, each with an icon and a text.
#pragma once

#include <QIcon>
#include <QWidget>
#include <vector>

namespace platform {

class StatusBarWidget : public QWidget {
  Q_OBJECT
 public:
  explicit StatusBarWidget(QWidget* parent);
  QSize sizeHint() const override;
  void SetWidths(std::vector<int> partWidths);
  void SetText(int part, const QString& text);
  void SetIcon(int part, const QIcon& icon);

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  struct Part {
    int width = 0;
    QString text;
    QIcon icon;
  };
  Part* At(int part);
  std::vector<Part> parts;
};

}  // namespace platform
