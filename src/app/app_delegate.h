// The application's events, from the launch to the end. Main thread only.
#pragma once

class MainDialog;

class LAppDelegate {
 public:
  LAppDelegate() = default;
  LAppDelegate(const LAppDelegate&) = delete;
  LAppDelegate& operator=(const LAppDelegate&) = delete;
  ~LAppDelegate() { WillTerminate(); }

  /// Makes the main window's object. False ends the launch.
  bool WillFinishLaunching();
  /// Opens the window.
  void DidFinishLaunching();
  /// A quit asked for from outside: the desktop's session ends, or a signal.
  void EvQuit();
  /// The desktop wants to see the program; ignored while the settings keep its window hidden.
  void EvReopen();
  void WillTerminate();

  MainDialog* Dialog() const { return pDialog; }

 private:
  MainDialog* pDialog = nullptr;  ///< Owned; null before creation and after termination.
};
