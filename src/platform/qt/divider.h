// The bar between two panes that the user drags up and down.
#pragma once

#include <QWidget>

namespace platform {

struct Window;

class Divider : public QWidget {
  Q_OBJECT
 public:
  Divider(Window* window, int id);

 protected:
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent*) override;
  void mouseMoveEvent(QMouseEvent*) override;
  void keyPressEvent(QKeyEvent*) override;

 private:
  void Report(int top);

  Window* owner;
  int controlId;
  int grabbedAt = 0;  ///< Where inside the bar the mouse holds it.
};

}  // namespace platform
