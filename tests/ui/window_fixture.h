// Verbs for tests of the real windows: a program that starts on a profile of its own, is used by clicks and
// keys, and is closed at the end. Main thread.
#pragma once

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "app/app_delegate.h"
#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "ftp/timeouts.h"
#include "support/history_file.h"
#include "support/settings_fixture.h"
#include "ui/pane_server.h"
#include "ui_driver.h"

class QFileDialog;

/// Acts once, as soon as a condition holds, while the code under test runs its own event loop.
class Meanwhile {
 public:
  Meanwhile(std::function<bool()> condition, std::function<void()> action);
  Meanwhile(const Meanwhile&) = delete;
  Meanwhile& operator=(const Meanwhile&) = delete;
  ~Meanwhile();
  bool Acted() const { return acted; }

 private:
  std::function<bool()> condition;
  std::function<void()> action;
  bool acted = false;
  struct Timer;
  std::unique_ptr<Timer> timer;
};

class WindowTest : public SettingsFixture {
 protected:
  static constexpr const char* kSite = "テストサイト";

  WindowTest();
  ~WindowTest() override;
  /// A program that is still connected at the end of a test is usable.
  void TearDown() override;

  // The profile
  /// Keeps a site and makes it the current one.
  void KeepSite(const std::string& server, const char* password = PaneServer::Password(), bool tls = false,
                const char* user = PaneServer::User(), const char* directory = "/");
  /// Starts the server on the remote folder and keeps its site. With a certificate the logon is under TLS.
  void Serve(const char* password = PaneServer::Password(), const std::string& certificate = {});
  /// A field of that site.
  std::string SiteField(const char* field) const {
    return Field(OpenSite(kSite, server->Address().c_str(), "0"), field);
  }
  /// A file on the server or in the local folder.
  void MakeRemote(const std::string& name, const std::string& content);
  void MakeLocal(const std::string& name, const std::string& content);
  static std::string RandomBytes(size_t size);
  std::string Remote(const std::string& name = {}) const { return root + "/server/" + name; }
  std::string Local(const std::string& name = {}) const { return root + "/local/" + name; }
  std::string Documents() const { return root + "/documents"; }

  // The program
  /// Opens the window; the first connection comes later.
  void OpenProgram();
  /// Opens the window and waits until the start is over.
  void StartProgram();
  /// Waits until it is over, which takes as long as the first connection and its questions.
  static bool WaitForTheStart(int ms = 10000);
  using FileNames = std::initializer_list<const char*>;
  /// Starts the server, keeps its site and starts the program, which connects to it. The files have no content to speak
  /// of.
  void StartConnected(FileNames remote = {}, FileNames local = {});
  /// Closes the program and runs its loop to the end; the status it ends with.
  int CloseProgram();
  MainDialog& Main() { return *delegate->Dialog(); }
  platform::Window* Window() { return Main().Native(); }

  // The user
  void Press(int control) { EXPECT_TRUE(ui::Press(Window(), control)) << "control " << control; }
  void PressTool(int bar, int command) { EXPECT_TRUE(ui::PressTool(Window(), bar, command)) << "command " << command; }
  void Select(int list, std::initializer_list<const char*> names) {
    EXPECT_TRUE(ui::SelectRows(Window(), list, names));
  }
  void Open(int list, const char* name) { EXPECT_TRUE(ui::DoubleClickRow(Window(), list, name)) << name; }
  /// Chooses from the menu of that pane.
  bool Choose(int list, const char* item);
  /// Renames a row as its menu does.
  void RenameTo(int list, const char* from, const char* to);
  /// Types into the field that is open in a row.
  void FinishRename(int list, const char* to);
  /// Answers the question for the name of a new folder, as soon as it comes.
  static std::unique_ptr<Meanwhile> NameOfNewFolder(const char* name);
  void NewFolder(int list, const char* name);
  /// Acts in the question for a password, as soon as it comes.
  static std::unique_ptr<Meanwhile> InLogin(std::function<void(platform::Window*)> action);
  /// Acts in the panel for a folder, which the action closes.
  static std::unique_ptr<Meanwhile> InFilePanel(std::function<void(QFileDialog*)> action);
  void ClickHeading(int list, int column);
  void DragDivider(int down);

  // What the user sees
  std::vector<std::string> Names(int list) { return ui::Column(Window(), list, 0); }
  std::vector<std::string> Selected(int list);
  std::string CurrentRow(int list);
  std::string PathOf(int control) { return ui::Text(Window(), control); }
  std::string StatusBar();
  bool IsEnabled(int control) { return platform::ControlIsEnabled(Window(), control); }
  /// The commands of a tool bar that are on.
  std::vector<int> EnabledTools(int bar);
  /// The colour of the history's text, 0xRRGGBB.
  unsigned HistoryColor();
  std::vector<std::string> Messages() { return history.Messages(); }
  /// The window's own modal window whose title is this, or null.
  static platform::Window* Dialog(const std::string& title);
  /// A refresh brings the listing of a folder that is there: the session and the window are alive.
  void ExpectUsable();

  HistoryFile history;
  ui::Alerts alerts;
  std::unique_ptr<PaneServer> server;
  std::unique_ptr<LAppDelegate> delegate;

 private:
  const FtpTimeouts formerTimeouts;
};
