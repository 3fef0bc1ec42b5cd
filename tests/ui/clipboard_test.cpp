// Remote rows copied to the clipboard, and files of this machine pasted into the remote folder, through the context
// menu of the real window.
#include <QApplication>
#include <QClipboard>
#include <QMimeData>

#include "support/files.h"
#include "ui/transfer_fixture.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Clipboard : public TransferTest {
 protected:
  static constexpr const char* kAddresses = "text/uri-list";
  static constexpr const char* kCopied = "x-special/gnome-copied-files";

  Clipboard() {
    char caches[kTextSize];
    LFile::GetTempFolder(caches);
    copies = std::string(caches) + "/OrvaneCopyFolder";
    std::filesystem::remove_all(copies);
    QApplication::clipboard()->clear();
  }
  ~Clipboard() override { QApplication::clipboard()->clear(); }

  static void PutFiles(const char* format, const std::string& text) {
    auto* data = new QMimeData;
    data->setData(format, QByteArray::fromStdString(text));
    QApplication::clipboard()->setMimeData(data);
  }
  static std::string On(const char* format) {
    return QApplication::clipboard()->mimeData()->data(format).toStdString();
  }
  void Choose(const char* text) {
    ui::ChooseFromNextMenu(text);
    Main().Command(kCommandRemoteRightClick, 0);
    ui::Pump(200);
  }
  /// For a name that needs no escape.
  std::string AddressOf(const char* name) const { return "file://" + copies + "/" + name; }

  std::string copies;
};

TEST_F(Clipboard, RowsAreCopiedAsFilesOfThisMachineAndPastedElsewhereOnTheServer) {
  for (const char* name : {"d/sub/x.txt", "a.txt", "b c.txt", "there/z"}) MakeRemote(name, name);
  StartConnected();
  Select(kRemoteList, {"a.txt"});
  Choose("コピー");
  EXPECT_EQ(On(kAddresses), AddressOf("a.txt") + "\r\n");
  EXPECT_EQ(On(kCopied), "copy\n" + AddressOf("a.txt"));

  Select(kRemoteList, {"d", "b c.txt"});
  Choose("コピー");
  EXPECT_EQ(ContentOf(copies + "/d/sub/x.txt"), "d/sub/x.txt");
  EXPECT_EQ(ContentOf(copies + "/b c.txt"), "b c.txt");
  EXPECT_FALSE(Exists(copies + "/a.txt")) << "of the last copy";
  EXPECT_THAT(On(kAddresses), AllOf(HasSubstr(AddressOf("d") + "\r\n"), HasSubstr(AddressOf("b%20c.txt") + "\r\n"),
                                    Not(HasSubstr("a.txt"))));
  EXPECT_THAT(Names(kLocalList), testing::IsEmpty());
  EXPECT_TRUE(Main().IsTimerSet(MainDialog::kTimerWatch));

  Open(kRemoteList, "there");
  Choose("貼付け");
  EXPECT_EQ(ContentOf(Remote("there/d/sub/x.txt")), "d/sub/x.txt");
  EXPECT_EQ(ContentOf(Remote("there/b c.txt")), "b c.txt");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("d", "b c.txt", "z"));
  EXPECT_EQ(Setting("CurrentRunHadUpload"), "1");
  EXPECT_TRUE(Main().IsTimerSet(MainDialog::kTimerWatch));
}

TEST_F(Clipboard, FilesOfOtherProgramsArePastedWithoutTheWarningOfTheFilter) {
  const std::string here = "file://" + Local("from/");
  const std::string tooLong = "file://" + Local("from/") + std::string(300, 'x');
  const struct {
    const char* format;
    std::string text;
    std::vector<std::string> arrived;
  } rows[] = {
      {kAddresses,
       "# two of them\r\nhttp://example.com/y\r\n" + here + "d/\r\n" + tooLong + "\r\n" + here + "%E8%A1%A8.txt\r\n",
       {"d/x.zip", "表.txt"}},
      {kCopied, "copy\n" + here + "d", {"d/x.zip"}},
      {kCopied, "cut\n" + here + "%E8%A1%A8.txt", {"表.txt"}},
  };
  for (const char* name : {"from/d/x.zip", "from/表.txt"}) MakeLocal(name, name);
  Put("Settings/FiltersOn", "1");
  StartConnected();
  ui::TypeAndReturn(Window(), kLocalFilter, "*.txt");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    PutFiles(row.format, row.text);
    Choose("貼付け");
    for (const std::string& name : row.arrived) {
      EXPECT_EQ(ContentOf(Remote(name)), "from/" + name);
      EXPECT_EQ(ContentOf(Local("from/" + name)), "from/" + name) << "nothing is cut";
      std::filesystem::remove_all(Remote(name.substr(0, name.find('/'))));
    }
    EXPECT_TRUE(std::filesystem::is_empty(Remote()));
  }
}

TEST_F(Clipboard, NothingIsCopiedOrPastedWithoutAConnectionOrAPlaceForTheCopies) {
  const std::string before = "file://" + Local("a.txt") + "\r\n";
  PutFiles(kAddresses, before);
  StartConnected({"b.txt"}, {"a.txt"});
  Select(kRemoteList, {"b.txt"});
  WriteFile(copies, "no folder");
  Choose("コピー");
  EXPECT_EQ(On(kAddresses), before);
  EXPECT_THAT(Messages(), Contains("フォルダを作成できません：" + copies));

  Main().CmDisconnect(true);
  const size_t sent = history.Commands().size();
  for (const int command : {kCommandRemoteCopy, kCommandRemotePaste}) Main().Command(command, 0);
  EXPECT_EQ(history.Commands().size(), sent);
  EXPECT_EQ(On(kAddresses), before);
}

}  // namespace
