// The ways in which the editing of a name in a row ends: whatever the user does next, it is that file that gets the
// name, and it gets it before anything else begins.
#include <QtTest/QTest>
#include <map>

#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"
#include "ui/transfer_fixture.h"

namespace {

class Rename : public TransferTest {
 protected:
  /// The second row's name is being edited, and `typed` stands in its field.
  void Begin(int list, const char* typed) {
    Select(list, {"b.txt"});
    Main().Command(list == kRemoteList ? kCommandMenuRemoteRename : kCommandMenuLocalRename, 0);
    EXPECT_TRUE(ui::EditRow(Window(), list, typed, 0));
  }
  /// Names and contents, which are the first names.
  static std::map<std::string, std::string> FilesIn(const std::string& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.is_regular_file()) files[entry.path().filename()] = ContentOf(entry.path());
    }
    return files;
  }
};

struct End {
  const char* name;
  int key;          ///< 0 for a click on the row.
  const char* row;  ///< Null for the free space below the rows.
};
void PrintTo(const End& end, std::ostream* out) { *out << end.name; }

class Ends : public Rename, public testing::WithParamInterface<std::tuple<bool, const char*, End>> {};

TEST_P(Ends, NameTheFileWhoseNameWasEdited) {
  const auto& [isRemote, typed, end] = GetParam();
  const int list = isRemote ? kRemoteList : kLocalList;
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) isRemote ? MakeRemote(name, name) : MakeLocal(name, name);
  StartConnected();
  Begin(list, typed);
  if (end.key != 0) {
    EXPECT_TRUE(ui::EditRow(Window(), list, typed, end.key));
  } else if (end.row) {
    Select(list, {end.row});
  } else {
    QWidget* rows = Window()->List(list)->viewport();
    QTest::mouseClick(rows, Qt::LeftButton, {}, QPoint(rows->width() / 2, rows->height() - 4));
  }
  ui::Pump(20);
  const std::map<std::string, std::string> files = {{"a.txt", "a.txt"}, {typed, "b.txt"}, {"c.txt", "c.txt"}};
  EXPECT_EQ(FilesIn(isRemote ? Remote() : Local()), files);
  EXPECT_FALSE(ui::EditRow(Window(), list, "another.txt")) << "no other name is being edited";
}

INSTANTIATE_TEST_SUITE_P(
    Rename, Ends,
    testing::Combine(testing::Bool(), testing::Values("new.txt", "b.txt"),
                     testing::Values(End{"Tab", Qt::Key_Tab, nullptr}, End{"BackTab", Qt::Key_Backtab, nullptr},
                                     End{"AClickAbove", 0, "a.txt"}, End{"AClickBelow", 0, "c.txt"},
                                     End{"AClickBesideTheRows", 0, nullptr})),
    [](const auto& row) {
      return std::string(std::get<0>(row.param) ? "Remote" : "Local") +
             (std::string(std::get<1>(row.param)) == "b.txt" ? "Unchanged" : "Changed") + std::get<2>(row.param).name;
    });

/// A name that is taken stays with its file, and so does what comes next.
TEST_F(Rename, ThatIsNotDoneLocallyKeepsTheFileSelected) {
  for (const char* name : {"a.txt", "b.txt"}) MakeLocal(name, name);
  StartConnected();
  Begin(kLocalList, "a.txt");
  Press(kUploadButton);
  EXPECT_THAT(Selected(kLocalList), testing::ElementsAre("b.txt"));
  EXPECT_EQ(ContentOf(Remote("b.txt")), "b.txt");
  EXPECT_FALSE(Exists(Remote("a.txt")));
}

/// Its commands would come between those of the job.
TEST_F(Rename, IsDoneBeforeACommandBegins) {
  const struct {
    const char* name;
    int list;
    std::function<void()> begin;
    const char* arrives;
  } commands[] = {
      {"a button", kRemoteList, [&] { Press(kDownloadButton); }, "local/new.txt"},
      {"a key", kRemoteList, [&] { ui::Key(Window(), Qt::Key_D, Qt::ControlModifier); }, "local/new.txt"},
      {"the menu", kRemoteList,
       [&] {
         ui::ChooseFromMenuBar(Window(), {"リモート", "ダウンロード"});
       },
       "local/new.txt"},
      {"a tool bar", kRemoteList, [&] { PressTool(kRemoteTools, kCommandRemoteRefresh); }, "server/new.txt"},
      {"the other list's button", kLocalList, [&] { Press(kUploadButton); }, "server/new.txt"},
  };
  StartConnected({"a.txt"}, {"a.txt"});
  for (const auto& [name, list, begin, arrives] : commands) {
    SCOPED_TRACE(name);
    for (const char* side : {"local", "server"}) {
      for (const char* file : {"b.txt", "new.txt"}) std::filesystem::remove(root + "/" + side + "/" + file);
    }
    list == kRemoteList ? MakeRemote("b.txt", "b") : MakeLocal("b.txt", "b");
    PressTool(kRemoteTools, kCommandRemoteRefresh);
    PressTool(kLocalTools, kCommandLocalRefresh);
    Begin(list, "new.txt");
    NewCommands();
    begin();
    EXPECT_TRUE(Exists(root + "/" + arrives)) << "it is the file as it is called now";
    if (list == kRemoteList) {
      const Texts sent = NewCommands();
      ASSERT_GE(sent.size(), 2u);
      EXPECT_EQ(sent[0], "RNFR b.txt");
      EXPECT_EQ(sent[1], "RNTO new.txt");
    }
  }
}

}  // namespace
