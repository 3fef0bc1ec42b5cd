// A story told in steps while dialogs run their own loops: each step waits for what it needs, and may open the next
// dialog, whose step runs inside it.
#pragma once

#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <string>

#include "platform/qt/native_window.h"
#include "ui_driver.h"

class Steps {
 public:
  using Action = std::function<void(platform::Window*)>;

  Steps() {
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { Look(); });
    timer.start(2);
  }
  Steps(const Steps&) = delete;
  Steps& operator=(const Steps&) = delete;
  ~Steps() {
    for (const Step& step : steps) ADD_FAILURE() << "the dialog did not come: " << step.title;
  }

  /// As soon as the dialog of that title is on top.
  Steps& In(const std::string& title, Action action) {
    steps.push_back({title, std::move(action)});
    return *this;
  }
  bool AreDone() const { return steps.empty(); }

 private:
  struct Step {
    std::string title;
    Action action;
  };

  void Look() {
    platform::Window* top = ui::ModalWindow();
    if (steps.empty() || !top || top->windowTitle().toStdString() != steps.front().title) return;
    const Step step = std::move(steps.front());
    steps.pop_front();
    // From a timer of its own: this one is to go on while the action runs another dialog.
    QTimer::singleShot(0, top, [action = step.action, top] { action(top); });
  }

  std::deque<Step> steps;
  QTimer timer;
};
