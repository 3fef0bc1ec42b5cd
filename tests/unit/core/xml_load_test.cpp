#include <gtest/gtest.h>

#include "support/recording_interface.h"
#include "support/scratch_folder.h"
#include "support/xml.h"
#include "support/xml_text.h"

namespace {

class XmlFile : public testing::Test {
 protected:
  LProcessResult Load(const std::string& path) { return document.LoadFromFile(process, path.c_str(), error); }

  ScratchFolder folder;
  RecordingInterface process;
  LXMLDocument document;
  char error[kTextSize] = "old";
};

TEST_F(XmlFile, GivesItsTreeAndTheErrorInIt) {
  const struct {
    std::string content;
    const char* error;
    const char* tree;
  } rows[] = {
      {"\xEF\xBB\xBF<a>あ</a>", "", "a['あ']"},
      {std::string("<a/>\0<b/>", 9), "", "a"},
      {"", "", ""},
      {"<a/>\n</b>", "Ln 2, Col 5: Misplaced </b> which does not match a <b>.", "a"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Load(folder.Write("a.xml", row.content)), LProcessResultOk);
    EXPECT_STREQ(error, row.error);
    EXPECT_EQ(XmlTree(document), row.tree);
  }
}

TEST_F(XmlFile, ThatIsNotThereOrNoFileOrTooLargeFails) {
  const std::string path = folder.Path("none.xml");
  EXPECT_EQ(Load(path), LProcessResultFailed);
  EXPECT_EQ(error, "ファイル" + path + "がありません");
  // A folder can be opened, but not read.
  EXPECT_EQ(Load(folder.Path()), LProcessResultFailed);
  EXPECT_EQ(error, "xmlファイル" + folder.Path() + "を開くことができません");
  EXPECT_EQ(process.Questions(), 1) << "of the folder, before it is opened";
  // Too large for the memory: a hole costs no disk, and its size counts.
  const std::string large = folder.Write("a.xml", "");
  std::filesystem::resize_file(large, uint64_t{1} << 42);
  EXPECT_EQ(Load(large), LProcessResultFailed);
  EXPECT_EQ(error, large + "を読み込むには容量が不足しています");
}

TEST_F(XmlFile, CanBeStoppedBeforeAndWhileItIsRead) {
  // Five blocks of 512 bytes behind the opening tag's first: questions 3 to 7, and one behind the parse.
  const std::string path = folder.Write("a.xml", "<a/>" + std::string(5 * 512, 'x'));
  EXPECT_EQ(Load(path), LProcessResultOk);
  EXPECT_EQ(process.Questions(), 2 + 5 + 1);
  const std::string whole = XmlTree(document);

  for (int question = 1; question <= 8; ++question) {
    RecordingInterface stopping(question);
    LXMLDocument part;
    char text[kTextSize] = "old";
    EXPECT_EQ(part.LoadFromFile(stopping, path.c_str(), text), LProcessResultStopped);
    EXPECT_STREQ(text, question < 3 ? "old" : "");
    EXPECT_EQ(XmlTree(part), question < 3 ? "" : question < 8 ? "a" : whole);
    EXPECT_LE(stopping.Questions(), question + 1);
  }
}

}  // namespace
