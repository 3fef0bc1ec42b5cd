#include "ui/window_fixture.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTimer>
#include <QtTest/QTest>
#include <random>

#include "platform/event_loop.h"
#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"
#include "platform/qt/status_bar_widget.h"
#include "support/window/menus.h"

// Meanwhile

struct Meanwhile::Timer {
  QTimer timer;
};

Meanwhile::Meanwhile(std::function<bool()> when, std::function<void()> what)
    : condition(std::move(when)), action(std::move(what)), timer(new Timer) {
  QObject::connect(&timer->timer, &QTimer::timeout, &timer->timer, [this] {
    if (acted || !condition()) return;
    acted = true;
    timer->timer.stop();
    action();
  });
  timer->timer.start(2);
}

Meanwhile::~Meanwhile() = default;

// WindowTest

WindowTest::WindowTest() : formerTimeouts(gFtpTimeouts) {
  for (const char* folder : {"server", "local", "documents"}) std::filesystem::create_directory(root + "/" + folder);
  WriteFile(root + "/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"" + Documents() + "\"\n");
  Put("Settings/MigratedAccounts3", "1");
}

WindowTest::~WindowTest() {
  if (delegate) CloseProgram();
  EXPECT_EQ(alerts.Complaints(), "");
  EXPECT_EQ(LMainMenu::uRefCount, 0u) << "the menu stays off";
  gFtpTimeouts = formerTimeouts;
  if (!HasFailure()) return;
  for (const std::string& line : history.Lines()) std::printf("  %s\n", line.c_str());
}

void WindowTest::TearDown() {
  if (delegate && delegate->Dialog() && Main().remotePane.bConnected) ExpectUsable();
}

// The profile

void WindowTest::KeepSite(const std::string& address, const char* password, bool tls, const char* user,
                          const char* directory) {
  LFTPAccountSettings site(kSite, user);
  TextCopy(site.szLabel, site.szKey);
  TextCopy(site.szServer, address.c_str());
  TextCopy(site.szPassword, password);
  TextCopy(site.szDirectory, directory);
  TextCopy(site.szLocalDirectory, Local().c_str());
  site.bRemember = true;
  site.bUseSSL = tls;
  site.Save();
  Put("Settings/Current", kSite);
  Put("Settings/CurrentServer", address);
  Put("Settings/CurrentUser", user);
}

void WindowTest::Serve(const char* password, const std::string& certificate) {
  server = std::make_unique<PaneServer>(Remote(), certificate);
  ASSERT_TRUE(server->IsRunning());
  KeepSite(server->Address(), password, !certificate.empty());
}

void WindowTest::MakeRemote(const std::string& name, const std::string& content) { WriteFile(Remote(name), content); }

void WindowTest::MakeLocal(const std::string& name, const std::string& content) { WriteFile(Local(name), content); }

std::string WindowTest::RandomBytes(size_t size) {
  std::mt19937_64 source(size);
  std::string bytes(size, 0);
  for (char& byte : bytes) byte = static_cast<char>(source());
  return bytes;
}

// The program

void WindowTest::OpenProgram() {
  Put("Settings/CurrentRunHadUpload", "");  // What tells the end of the start, also of a second one.
  delegate = std::make_unique<LAppDelegate>();
  ASSERT_TRUE(delegate->WillFinishLaunching());
  delegate->DidFinishLaunching();
}

void WindowTest::StartProgram() {
  // Without a site the program begins by asking for one.
  const Meanwhile decline([] { return Dialog("新規サイトを追加する") != nullptr; },
                          [] { ui::Press(Dialog("新規サイトを追加する"), kCommandCancel); });
  OpenProgram();
  EXPECT_TRUE(WaitForTheStart());
}

bool WindowTest::WaitForTheStart(int ms) {
  // The last thing that it does.
  return ui::WaitUntil([] { return Setting("CurrentRunHadUpload") == "0"; }, ms);
}

void WindowTest::StartConnected(FileNames remote, FileNames local) {
  for (const char* name : remote) MakeRemote(name, "x");
  for (const char* name : local) MakeLocal(name, "x");
  Serve();
  StartProgram();
  ASSERT_TRUE(Main().remotePane.bConnected);
}

int WindowTest::CloseProgram() {
  if (!Main().CmExit()) {
    ADD_FAILURE() << "the program does not want to end";
    Main().CloseMainWindow();
  }
  const int status = platform::ApplicationRun();
  delegate.reset();
  return status;
}

// The user

bool WindowTest::Choose(int list, const char* item) {
  return ui::ChooseFromMenuBar(Window(), {list == kLocalList ? "ローカル" : "リモート", item});
}

void WindowTest::RenameTo(int list, const char* from, const char* to) {
  Select(list, {from});
  EXPECT_TRUE(Choose(list, "名前を変更"));
  FinishRename(list, to);
}

void WindowTest::FinishRename(int list, const char* to) {
  EXPECT_TRUE(ui::EditRow(Window(), list, to));
  ui::Pump(20);
}

std::unique_ptr<Meanwhile> WindowTest::NameOfNewFolder(const char* name) {
  return std::make_unique<Meanwhile>([] { return Dialog("新規フォルダ") != nullptr; },
                                     [name] {
                                       platform::ControlSetText(Dialog("新規フォルダ"), 101, name);
                                       ui::Press(Dialog("新規フォルダ"), kCommandOk);
                                     });
}

void WindowTest::NewFolder(int list, const char* name) {
  const auto type = NameOfNewFolder(name);
  EXPECT_TRUE(Choose(list, "新規フォルダ"));
  EXPECT_TRUE(type->Acted());
}

std::unique_ptr<Meanwhile> WindowTest::InLogin(std::function<void(platform::Window*)> action) {
  constexpr const char* kTitle = "ユーザーログイン";
  return std::make_unique<Meanwhile>([] { return Dialog(kTitle) != nullptr; },
                                     [action = std::move(action)] { action(Dialog(kTitle)); });
}

std::unique_ptr<Meanwhile> WindowTest::InFilePanel(std::function<void(QFileDialog*)> action) {
  const auto panel = [] { return qobject_cast<QFileDialog*>(QApplication::activeModalWidget()); };
  return std::make_unique<Meanwhile>([panel] { return panel() != nullptr; },
                                     [panel, action = std::move(action)] { action(panel()); });
}

void WindowTest::ClickHeading(int list, int column) {
  platform::ListControl* control = Window()->List(list);
  const QHeaderView* header = control->header();
  const QPoint place(header->sectionViewportPosition(column) + 20, header->height() / 2);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
}

void WindowTest::DragDivider(int down) {
  QWidget* divider = Window()->Control(kDivider);
  const QPoint grabbed(divider->width() / 2, divider->height() / 2);
  QTest::mousePress(divider, Qt::LeftButton, {}, grabbed);
  // The bar moves under the pointer, so the event is made by hand.
  const QPoint to = grabbed + QPoint(0, down);
  QMouseEvent move(QEvent::MouseMove, to, divider->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(divider, &move);
  QTest::mouseRelease(divider, Qt::LeftButton, {}, grabbed);
}

// What the user sees

std::vector<std::string> WindowTest::Selected(int list) {
  std::vector<std::string> names;
  for (LVSelectedIterator row(Main(), list); row.IsValid(); row.Next()) {
    char name[kTextSize];
    Main().LVGetString(list, row.Row(), name);
    names.emplace_back(name);
  }
  return names;
}

std::string WindowTest::CurrentRow(int list) {
  char name[kTextSize];
  Main().LVGetString(list, Main().LVGetCurSel(list), name);
  return name;
}

std::string WindowTest::StatusBar() { return Window()->statusBar->accessibleDescription().toStdString(); }

std::vector<int> WindowTest::EnabledTools(int bar) {
  std::vector<int> commands;
  for (const QAction* action : Window()->ToolBar(bar)->findChildren<QAction*>(Qt::FindDirectChildrenOnly)) {
    if (action->isEnabled() && action->data().toInt() != 0) commands.push_back(action->data().toInt());
  }
  return commands;
}

unsigned WindowTest::HistoryColor() {
  ui::Pump(150);  // The pane shows what has come since its last picture.
  return Window()->ControlAs<QPlainTextEdit>(kHistory)->palette().color(QPalette::Text).rgb() & 0xFFFFFF;
}

platform::Window* WindowTest::Dialog(const std::string& title) {
  platform::Window* top = ui::ModalWindow();
  return top && top->windowTitle().toStdString() == title ? top : nullptr;
}

void WindowTest::ExpectUsable() {
  if (platform::ControlIsShown(Window(), kRemoteFilterRemove)) Press(kRemoteFilterRemove);
  MakeRemote(Main().remotePane.szCurrentDirectory + std::string("/まだ動く.txt"), "1");
  PressTool(kRemoteTools, kCommandRemoteRefresh);
  EXPECT_THAT(Names(kRemoteList), testing::Contains("まだ動く.txt"));
  EXPECT_EQ(ui::ModalWindow(), nullptr);
  EXPECT_EQ(LMainMenu::uRefCount, 0u);
}
