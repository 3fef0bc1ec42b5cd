// Files dragged into the real window, and rows dragged out of it. The window system's events are made by hand, as it
// sends them; a drag out is begun with the mouse.
#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QTimer>
#include <QtTest/QTest>

#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"
#include "support/window/list_view.h"
#include "ui/transfer_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class DragDrop : public TransferTest {
 protected:
  static QByteArray UriList(const std::vector<std::string>& paths) {
    QByteArray list;
    for (const std::string& path : paths)
      list += "file://" + QByteArray::fromStdString(path).toPercentEncoding("/") + "\r\n";
    return list;
  }
  /// Brings files over a widget; true if they may be dropped there.
  bool Enter(QWidget* target, const std::vector<std::string>& paths) {
    mime.setData("text/uri-list", UriList(paths));
    QDragEnterEvent event({5, 5}, Qt::CopyAction, &mime, Qt::LeftButton, {});
    QApplication::sendEvent(target, &event);
    return event.isAccepted();
  }
  void Move(const QPoint& to) {
    QDragMoveEvent event(to, Qt::CopyAction, &mime, Qt::LeftButton, {});
    QApplication::sendEvent(Rows(), &event);
  }
  void Leave() {
    QDragLeaveEvent event;
    QApplication::sendEvent(Rows(), &event);
  }
  /// What the source is told of the drop.
  Qt::DropAction Drop(QWidget* target, const QPoint& at) {
    QDropEvent event(at, Qt::CopyAction, &mime, {}, {});
    QApplication::sendEvent(target, &event);
    return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
  }
  Qt::DropAction DropOnWindow(const std::vector<std::string>& paths) {
    return Enter(Window(), paths) ? Drop(Window(), {5, 5}) : Qt::IgnoreAction;
  }

  platform::ListControl* List() { return Window()->List(kRemoteList); }
  QWidget* Rows() { return List()->viewport(); }
  QRect RowOf(const char* name) {
    return List()->visualRect(List()->model()->index(Main().LVFindString(kRemoteList, name), 0));
  }
  QPoint PlaceOf(const char* name) { return RowOf(name).center(); }
  bool IsMarkedUnder(const char* name) {
    const QImage picture = Rows()->grab().toImage();
    return picture.pixel(picture.width() - 3, RowOf(name).bottom()) ==
           List()->palette().color(QPalette::Highlight).rgb();
  }
  /// Of those that change something or go somewhere, what was sent since the last call.
  Texts NewSteps() { return NewCommands({"CWD ", "MKD ", "MLST ", "STOR ", "RNFR ", "RNTO ", "LIST"}); }

  QMimeData mime;
};

TEST_F(DragDrop, OnTheWindowMakesTheFoldersAsksAndSendsNothing) {
  MakeLocal("d/sub/b.txt", "new");
  MakeLocal("top.txt", "new");
  MakeRemote("top.txt", "old");
  StartConnected();
  NewSteps();
  alerts.Expect("このファイルのコピー \"top.txt\" 既にリモートフォルダに存在します。", "上書きする", 1);
  EXPECT_EQ(DropOnWindow({Local("top.txt"), Local("no such file"), Local("d")}), Qt::CopyAction);
  // With the answer for all the file in the folder is not even looked for.
  EXPECT_THAT(NewSteps(), ElementsAre("MLST top.txt", "MKD //d", "CWD //d", "MKD //d/sub", "CWD //d/sub", "CWD /",
                                      "CWD /", "LIST", "CWD /", "CWD /", "LIST"));
  EXPECT_EQ(ContentOf(Remote("top.txt")), "old");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("d", "top.txt"));
  EXPECT_THAT(Messages(), Contains("順番待ち中のファイル： " + Local("d/sub/b.txt")));
  EXPECT_EQ(Setting("CurrentRunHadUpload"), "1");
  EXPECT_TRUE(Main().IsTimerSet(MainDialog::kTimerWatch));

  MakeRemote("later.txt", "x");
  EXPECT_EQ(DropOnWindow({Local("no such file")}), Qt::CopyAction);
  EXPECT_THAT(NewSteps(), ElementsAre("CWD /", "CWD /", "LIST", "CWD /", "CWD /", "LIST"));
  EXPECT_THAT(Names(kRemoteList), Contains("later.txt")) << "nothing to drop still refreshes";
}

TEST_F(DragDrop, OverRowsChoosesFoldersAndMarksGaps) {
  StartConnected({"a/x", "b/x", "c.txt", "d.txt"});
  const struct {
    const char* source;
    std::vector<std::string> atEntry, overFolder, overFile;
  } rows[] = {{"local", {}, {"b"}, {}}, {"remote", {"a", "d.txt"}, {"a", "b", "d.txt"}, {"a", "d.txt"}}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.source);
    Select(kRemoteList, {"a", "d.txt"});
    LUserSettingSetString("Settings", "DragSource", row.source);
    EXPECT_TRUE(Enter(Rows(), {Local("x")}));
    EXPECT_EQ(Selected(kRemoteList), row.atEntry);
    Move(PlaceOf("b"));
    EXPECT_EQ(Selected(kRemoteList), row.overFolder);
    EXPECT_FALSE(IsMarkedUnder("c.txt"));
    Move(PlaceOf("c.txt"));
    EXPECT_EQ(Selected(kRemoteList), row.overFile);
    EXPECT_TRUE(IsMarkedUnder("c.txt"));
    Move(PlaceOf("b"));
    Leave();
    EXPECT_EQ(Selected(kRemoteList), row.atEntry);
    EXPECT_FALSE(IsMarkedUnder("c.txt"));
  }
}

TEST_F(DragDrop, OnAFolderRowSendsIntoItAndOnAFileRowBesideIt) {
  MakeLocal("50% 写真.txt", "one");
  MakeLocal("t/two.txt", "two");
  StartConnected({"into/x", "z.txt"});
  ASSERT_TRUE(Enter(Rows(), {}));
  Move(PlaceOf("into"));
  mime.setData("text/uri-list",
               "# from a file manager\r\nhttp://127.0.0.1/x\r\n" + UriList({Local("50% 写真.txt"), Local("t/")}));
  EXPECT_EQ(Drop(Rows(), PlaceOf("into")), Qt::CopyAction);
  EXPECT_EQ(ContentOf(Remote("into/50% 写真.txt")), "one");
  EXPECT_EQ(ContentOf(Remote("into/t/two.txt")), "two");
  EXPECT_EQ(SiteField("UploadCount"), "1") << "a drop counts once";
  EXPECT_EQ(Setting("DragSource"), "local");

  ASSERT_TRUE(Enter(Rows(), {Local("t/two.txt")}));
  Move(PlaceOf("z.txt"));
  EXPECT_EQ(Drop(Rows(), PlaceOf("z.txt")), Qt::CopyAction);
  EXPECT_EQ(ContentOf(Remote("two.txt")), "two");
  EXPECT_FALSE(IsMarkedUnder("z.txt"));
}

TEST_F(DragDrop, RowsOfTheListMoveIntoAFolderOfIt) {
  StartConnected({"a/x", "into/x", "1.txt", "refuse.txt", "2.txt"});
  const auto dropSelectedOn = [&](const char* folder) {
    LUserSettingSetString("Settings", "DragSource", "remote");
    NewSteps();
    ASSERT_TRUE(Enter(Rows(), {Local("x")}));
    Move(PlaceOf(folder));
    EXPECT_EQ(Drop(Rows(), PlaceOf(folder)), Qt::IgnoreAction);
    EXPECT_EQ(Setting("DragSource"), "local");
  };
  Select(kRemoteList, {"a", "1.txt"});
  dropSelectedOn("a");
  EXPECT_THAT(NewSteps(), IsEmpty()) << "on the dragged rows themselves";

  Select(kRemoteList, {"a", "1.txt", "refuse.txt", "2.txt"});
  dropSelectedOn("into");
  EXPECT_THAT(NewSteps(), ElementsAre("RNFR a", "RNTO into/a", "RNFR 1.txt", "RNTO into/1.txt", "RNFR 2.txt",
                                      "RNTO into/2.txt", "RNFR refuse.txt", "CWD /", "LIST"));
  EXPECT_THAT(Names(kRemoteList), ElementsAre("into", "refuse.txt"));
  EXPECT_TRUE(Exists(Remote("into/a/x")));

  LUserSettingSetString("Settings", "DragSource", "remote");
  NewSteps();
  DropOnWindow({Local()});
  EXPECT_THAT(NewSteps(), IsEmpty()) << "a row is no file for the window";
}

TEST_F(DragDrop, IsRefusedWithoutAConnectionAndWhileSomethingRuns) {
  for (int i = 0; i < 20; ++i) MakeRemote("d/" + std::to_string(i), "x");
  StartConnected({}, {"a.txt"});
  size_t refused = 0;
  QTimer tries;
  QObject::connect(&tries, &QTimer::timeout, &tries, [&] {
    for (QWidget* target : {static_cast<QWidget*>(Window()), Rows()}) refused += !Enter(target, {Local("a.txt")});
    EXPECT_EQ(refused % 2, 0u) << "a drop is taken during a download";
  });
  tries.start(0);
  Download({"d"});
  tries.stop();
  EXPECT_GT(refused, 0u);
  Main().CmDisconnect(true);
  EXPECT_FALSE(Enter(Window(), {Local("a.txt")}));
  EXPECT_FALSE(Enter(Rows(), {Local("a.txt")}));
  EXPECT_THAT(Messages(), Not(Contains("順番待ち中のファイル： " + Local("a.txt"))));
}

/// Takes what is dropped on it.
class Target : public QWidget {
 public:
  Target() {
    setAcceptDrops(true);
    setWindowFlags(Qt::Window | Qt::WindowStaysOnTopHint);
    setGeometry(0, 0, 200, 200);
    show();
  }
  QByteArray dropped;

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override { event->acceptProposedAction(); }
  void dropEvent(QDropEvent* event) override {
    dropped = event->mimeData()->data("text/uri-list");
    event->acceptProposedAction();
  }
};

/// Rows that the mouse takes hold of and brings out of the list.
class DragOut : public DragDrop {
 protected:
  void SetUp() override {
    DragDrop::SetUp();
    if (QGuiApplication::platformName() != "xcb") GTEST_SKIP() << "nothing is dragged here: run it by ctest";
  }

  void Start() {
    StartConnected({"stays.txt"});
    target = std::make_unique<Target>();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(target.get()));
  }
  static QPoint InWindow(QWidget* widget, const QPoint& place) { return widget->mapTo(widget->window(), place); }
  static void MoveTo(QWidget* widget, const QPoint& place) {
    QTest::mouseMove(widget->window()->windowHandle(), InWindow(widget, place));
    ui::Pump(20);
  }
  static void Release(QWidget* widget, const QPoint& place) {
    QTest::mouseRelease(widget->window()->windowHandle(), Qt::LeftButton, {}, InWindow(widget, place));
  }
  void LetGo() { Release(Rows(), kOutside); }
  bool IsDragged() { return List()->findChild<QDrag*>() != nullptr; }
  /// Takes hold of a selected row, goes over others and leaves the list, which fetches the files.
  void DragFromTheList(const char* grabbed) {
    NewSteps();
    QTest::mousePress(Window()->windowHandle(), Qt::LeftButton, {}, InWindow(Rows(), PlaceOf(grabbed)));
    for (const char* row : {"stays.txt", grabbed, "stays.txt"}) MoveTo(Rows(), PlaceOf(row));
    EXPECT_THAT(NewSteps(), Not(Contains(testing::HasSubstr("MLST")))) << "fetched inside the list";
    MoveTo(Rows(), kOutside);
  }
  /// The same to another program's window; `onTheWay` happens behind the fetching.
  void DragToTarget(
      const char* grabbed, const std::function<void()>& onTheWay = [] {}) {
    const Meanwhile drop([&] { return IsDragged(); },
                         [&] {
                           onTheWay();
                           for (const int step : {50, 60}) MoveTo(target.get(), {step, step});
                           Release(target.get(), {60, 60});
                         });
    DragFromTheList(grabbed);
    EXPECT_TRUE(ui::WaitUntil([&] { return !target->dropped.isEmpty(); }));
  }
  std::string Fetched(const std::string& name) { return Main().dragFolder + ("/" + name); }

  static constexpr QPoint kOutside{-30, 50};
  std::unique_ptr<Target> target;
};

TEST_F(DragOut, RowsAreFilesWhenTheyLeaveTheList) {
  MakeRemote("100% 資料.txt", "inside");
  MakeRemote("tree/deep/x.bin", RandomBytes(300000));
  Start();
  Select(kRemoteList, {"100% 資料.txt", "tree"});
  {
    const Meanwhile letGo([] { return Dialog(kDownloading) != nullptr; }, [&] { LetGo(); });
    DragFromTheList("tree");
    EXPECT_FALSE(IsDragged()) << "nobody holds it any more";
  }
  EXPECT_EQ(ContentOf(Fetched("tree/deep/x.bin")), ContentOf(Remote("tree/deep/x.bin")));
  EXPECT_EQ(ContentOf(Fetched("100% 資料.txt")), "inside");
  EXPECT_EQ(std::filesystem::status(Main().dragFolder).permissions(), std::filesystem::perms::owner_all);

  const std::vector<std::string> dragged = {Fetched("tree"), Fetched("100% 資料.txt")};
  std::vector<std::string> selectedOver;
  DragToTarget("tree", [&] {
    MoveTo(Rows(), PlaceOf("stays.txt"));
    selectedOver = Selected(kRemoteList);
  });
  EXPECT_EQ(selectedOver, (std::vector<std::string>{"tree", "100% 資料.txt"})) << "no target of its own rows";
  EXPECT_EQ(target->dropped, UriList(dragged));
  EXPECT_THAT(NewSteps(), Not(Contains("MLST tree"))) << "fetched twice";
  EXPECT_TRUE(Main().IsTimerSet(MainDialog::kTimerWatch));
}

TEST_F(DragOut, HalfAFolderIsNotDragged) {
  MakeRemote("half/stall.bin", RandomBytes(1 << 20));
  MakeRemote("refused/a\\b.txt", "");
  Start();
  const Meanwhile dragged([&] { return IsDragged(); }, [] { QDrag::cancel(); });
  Select(kRemoteList, {"half"});
  alerts.Expect("ダウンロードされたローカルファイルまたはフォルダを削除しますか？", "削除しない");
  const Meanwhile cancel([&] { return Exists(Fetched("half/stall.bin")); },
                         [&] { ui::Key(Dialog(kDownloading), Qt::Key_Escape); });
  DragFromTheList("half");
  EXPECT_FALSE(dragged.Acted());
  LetGo();

  // What is refused ends the collecting.
  Select(kRemoteList, {"refused"});
  DragFromTheList("refused");
  EXPECT_TRUE(Exists(Fetched("refused")));
  EXPECT_FALSE(dragged.Acted());
  LetGo();
}

/// The reconnect fills the list anew, with nothing selected.
TEST_F(DragOut, OutlivesAReconnect) {
  MakeRemote("again/once.bin", RandomBytes(1 << 20));
  Start();
  Select(kRemoteList, {"again"});
  DragToTarget("again");
  EXPECT_EQ(target->dropped, UriList({Fetched("again")}));
  EXPECT_EQ(ContentOf(Fetched("again/once.bin")), ContentOf(Remote("again/once.bin")));
}

}  // namespace
