// Drives the real windows as a user would: clicks, keys and choices go through the window system's own
// events. For the tests of the windows and for the demo's walk. Main thread only.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "platform/window_system.h"

class QMessageBox;

namespace ui {

/// Handles events for `ms`.
void Pump(int ms);
/// Handles events until `condition` holds; false when `ms` have passed first.
bool WaitUntil(const std::function<bool()>& condition, int ms = 10000);

/// Clicks a control with the left button. False if it is hidden, off, or held off by a modal window.
bool Press(platform::Window* window, int id);
/// Clicks a button of a tool bar.
bool PressTool(platform::Window* window, int bar, int command);
/// Clicks the first row of that name, the others with Control held. False if one is not there.
bool SelectRows(platform::Window* window, int list, std::initializer_list<const char*> names);
bool DoubleClickRow(platform::Window* window, int list, const char* name);
/// Replaces a field's text by typing, and presses Return.
bool TypeAndReturn(platform::Window* window, int id, const char* text);
/// Replaces a field's text as pasting does. False if the field is hidden or off.
bool Fill(platform::Window* window, int id, const std::string& text);
/// Chooses a row of a pull-down list from its opened list.
bool ChooseRow(platform::Window* window, int id, int row);
/// The page of a sheet, from 0, which is a window of its own; and a click on its tab.
platform::Window* Page(platform::Window* sheet, int page);
bool PressTab(platform::Window* sheet, int page);
void Key(platform::Window* window, int key, int modifiers = 0);
/// Replaces the text of the field that is open in a row of the list as pasting does, and presses the key (Qt::Key), by
/// itself Return; 0 leaves the field open. A null text is Escape instead. False if none is open.
bool EditRow(platform::Window* window, int list, const char* text, int key = 0x01000004);
/// Opens a menu of the menu bar and chooses an item, by their texts. False if it is off or not there.
bool ChooseFromMenuBar(platform::Window* window, std::initializer_list<const char*> texts);
/// Chooses the row of an open context menu that holds `text`, as soon as there is one.
void ChooseFromNextMenu(const char* text);

std::string Text(platform::Window* window, int id);
/// The text of the tip at a control; empty while none is shown.
std::string BubbleTip();
/// Waits until the pane shows `part`: it is some time behind. False if that never comes.
bool LogShows(platform::Window* window, int id, const std::string& part);
/// The cells of one column, top to bottom.
std::vector<std::string> Column(platform::Window* window, int list, int column);
/// Saves a picture of the window as PNG.
bool Grab(platform::Window* window, const char* path);
/// The top modal window of the program's own, or null.
platform::Window* ModalWindow();

/// Answers alerts from a queue while it lives. An alert that is not expected, or whose text does not hold
/// what was expected, is recorded and cancelled.
class Alerts {
 public:
  Alerts();
  ~Alerts();
  Alerts(const Alerts&) = delete;
  Alerts& operator=(const Alerts&) = delete;
  /// The next alert holds `text` and is answered by the button labelled `button`. Check box as given: -1
  /// leaves it.
  void Expect(const std::string& text, const char* button, int check = -1);
  /// While held, alerts stay open, for the test to do with them what it wants.
  void Hold(bool hold) { held = hold; }
  /// While on, an alert that is not expected is answered by its default button, and is nothing to complain of.
  void AgreeToAll(bool agree) { agreesToAll = agree; }
  /// What went wrong so far, including expected alerts that have not come; empty if nothing did.
  std::string Complaints() const;
  /// All texts of the last alert that was answered: title, message, check box if there is one, buttons; each in a line.
  const std::string& Last() const { return last; }

 private:
  struct Expected {
    std::string text, button;
    int check;
  };
  void Look();
  void Answer(QMessageBox& box);
  std::vector<Expected> queue;
  std::string complaints;
  std::string last;
  bool held = false;
  bool agreesToAll = false;
  struct Timer;
  Timer* timer;
};

}  // namespace ui
