// The text of paths, the wildcard rule, sizes, handles and whole files of text.
#include "support/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <sys/file.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

#include "support/file_handles.h"
#include "support/scratch_folder.h"
#include "support/settable_clock.h"

namespace {

using Text = char[kTextSize];
using std::string;

TEST(FilePaths, Join) {
  const struct {
    const char* folder;
    const char* name;
    const char* ext;
    const char* path;
  } rows[] = {
      {"/a", "b", ".c", "/a/b.c"}, {"/a/", "b", "", "/a/b"}, {"a\\", "b", "", "a\\b"},
      {"", "b", ".c", "b.c"},      {"/", "b", "", "/b"},     {"/a", "", "", "/a/"},
  };
  for (const auto& row : rows) {
    Text out;
    LFile::_MakeFilePath(out, row.folder, row.name, row.ext);
    EXPECT_STREQ(out, row.path);
    TextCopy(out, row.folder);
    LFile::_MakeFilePath(out, out, row.name, row.ext);
    EXPECT_STREQ(out, row.path) << "into the folder's own text";
  }
}

TEST(FilePaths, JoinTakes258BytesOfTheFolder) {
  for (const size_t length : {257u, 258u, 259u, 300u}) {
    const string folder(length, 'f');
    Text out;
    LFile::_MakeFilePath(out, folder.c_str(), "name", ".ext");
    EXPECT_EQ(out, (folder.substr(0, 258) + "/name.ext").substr(0, 259)) << length;
  }
}

TEST(FilePaths, TakenApart) {
  const struct {
    const char* path;
    const char* folder;
    const char* base;
    const char* file;
    const char* name;
    const char* ext;
  } rows[] = {
      {"/home/hana/a.txt", "/home/hana", "/home", "a.txt", "a", ".txt"},
      {"/home/hana/a.tar.gz", "/home/hana", "/home", "a.tar.gz", "a.tar", ".gz"},
      {"/home/.profile", "/home", "/home", ".profile", ".profile", ".profile"},
      {"/home/.a.b", "/home", "/home", ".a.b", ".a", ".b"},
      {"/home.d/readme", "/home.d", "/home.d", "readme", "readme", ""},
      {"/home/", "/home", "/home", "", "", ""},
      {"/", "/", "/", "", "", ""},
      {"//a", "/", "//a", "a", "a", ""},
      {"a.txt", "", "a.txt", "a.txt", "a", ".txt"},
      {"dir\\a.txt", "dir", "dir", "a.txt", "a", ".txt"},
      {"\\a", "/", "\\a", "a", "a", ""},
      {"a.", "", "a.", "a.", "a", "."},
  };
  for (const auto& row : rows) {
    Text out;
    LFile::_GetFolderFromPath(out, row.path);
    EXPECT_STREQ(out, row.folder) << row.path;
    LFile::_GetBaseFolderFromPath(out, row.path);
    EXPECT_STREQ(out, row.base) << row.path;
    LFile::_GetFileFromPath(out, row.path);
    EXPECT_STREQ(out, row.file) << row.path;
    LFile::_GetFileNameFromPath(out, row.path);
    EXPECT_STREQ(out, row.name) << row.path;
    LFile::_GetFileExtensionFromPath(out, row.path);
    EXPECT_STREQ(out, row.ext) << row.path;
    TextCopy(out, row.path);
    LFile::_GetFolderFromPath(out, out);
    EXPECT_STREQ(out, row.folder) << "in place of " << row.path;
    TextCopy(out, row.path);
    LFile::_GetFileFromPath(out, out);
    EXPECT_STREQ(out, row.file) << "in place of " << row.path;
  }
}

TEST(FilePaths, TheWayBetweenFolders) {
  const struct {
    const char* from;
    const char* to;
    const char* way;
  } rows[] = {
      {"/a/b", "/a/c", "../c"}, {"/a/b/", "/a/b/c", "c"},
      {"/a/b", "/a/b", "../"},  {"/a/b/c", "/a", "../../../"},
      {"/a", "/b", "../b"},     {"/a/b", "/x/y", "../../x/y"},
      {"", "/x", "x"},          {"/a/bc", "/a/bd", "../d"},  // Common bytes, not common components.
      {"a", "/x", "../x"},
  };
  for (const auto& row : rows) {
    Text out;
    LFile::MakeRelativeFolder(out, row.from, row.to);
    EXPECT_STREQ(out, row.way) << row.from << " to " << row.to;
  }
}

TEST(FilePaths, AFreeNameIsNumberedFromZero) {
  const ScratchFolder scratch;
  Text out;
  for (const char* expected : {"a.txt", "a_0.txt", "a_1.txt"}) {
    LFile::MakeUniqueOrderedFilePath(out, scratch.Path().c_str(), "a", ".txt");
    EXPECT_EQ(out, scratch.Path(expected));
    ASSERT_EQ(symlink("nowhere", scratch.Path(expected).c_str()), 0);
  }
  const string folder = scratch.MakeFolder(string(110, 'd'));
  const string name(259 - folder.size() - 1, 'n');
  scratch.Write(string(110, 'd') + "/" + name, "");
  LFile::MakeUniqueOrderedFilePath(out, folder.c_str(), name.c_str(), "");
  EXPECT_STREQ(out, "") << "no name is looked for where its number would be cut";
}

TEST(FileMatch, Wildcards) {
  const struct {
    const char* pattern;
    const char* name;
    bool match;
  } rows[] = {
      {"*", "", true},
      {"a*c", "abcbc", true},
      {"?bc", "bc", false},
      {"*.txt", ".txt", true},
      {"*.TXT", "a.txt", false},
      {"あ*", "あいう", true},
      {"??", "あ", false},
      {"???", "あ", true},
      {"a*b", "a*xb", false},  // The star meets the byte like itself and stands for
                               // it alone.
      {"*", "*x", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(LFile::IsMatch(row.pattern, row.name), row.match) << row.pattern << " | " << row.name;
  }
}

/// The rule word by word, at any cost.
bool PlainMatch(const char* pattern, const char* name) {
  if (!*name) return *(pattern + strspn(pattern, "*")) == 0;
  if (!*pattern) return false;
  if (*pattern == '?' || *pattern == *name) return PlainMatch(pattern + 1, name + 1);
  if (*pattern != '*') return false;
  if (!pattern[1]) return true;
  for (; *name; ++name) {
    if (PlainMatch(pattern + 1, name)) return true;
  }
  return false;
}

TEST(FileMatch, AgreesWithThePlainRule) {
  std::mt19937 random(7);
  const auto text = [&random](const char* alphabet, size_t most) {
    string made(random() % (most + 1), ' ');
    for (char& c : made) c = alphabet[random() % strlen(alphabet)];
    return made;
  };
  int matches = 0;
  for (int i = 0; i < 200000; ++i) {
    const string pattern = text("ab*?*", 8), name = text("aab*", 10);
    const bool match = LFile::IsMatch(pattern.c_str(), name.c_str());
    ASSERT_EQ(match, PlainMatch(pattern.c_str(), name.c_str())) << pattern << " | " << name;
    matches += match;
  }
  EXPECT_GT(matches, 1000);
}

TEST(FileMatch, ManyStarsTakeNoTime) {
  string pattern;
  for (int i = 0; i < 100; ++i) pattern += "*a";
  EXPECT_FALSE(LFile::IsMatch((pattern + "b").c_str(), string(255, 'a').c_str()));
}

TEST(FileSizes, WholeUnits) {
  string texts;
  for (const uint64_t size : {0ull, 1023ull, 1024ull, 1048575ull, 1048576ull, 1ull << 30, 1ull << 40, ~0ull}) {
    Text out;
    LFile::GetSizeFormattedBytes(size, out);
    texts += string(out) + "|";
  }
  EXPECT_EQ(texts, "0 Bytes|1023 Bytes|1 KB|1023 KB|1 MB|1 GB|1 TB|16777215 TB|");
}

TEST(FileSizes, RoundedUpWithCommas) {
  const struct {
    uint64_t size;
    int unit;
    const char* text;
  } rows[] = {{0, 0, "0 B"},
              {0, 1, "0 KB"},
              {1024, 1, "1 KB"},
              {1025, 1, "2 KB"},
              {999, 0, "999 B"},
              {1000, 0, "1,000 B"},
              {1048577, 2, "2 MB"},
              {UINT64_MAX, 0, "18,446,744,073,709,551,615 B"},
              {UINT64_MAX, 1, "18,014,398,509,481,984 KB"}};
  for (const auto& row : rows) {
    Text out;
    FormatFileSize(out, row.size, row.unit);
    EXPECT_STREQ(out, row.text);
  }
}

TEST(FileLocks, TriesAreSpreadOverTheLimit) {
  const ScratchFolder scratch;
  const string path = scratch.Write("a", "");
  const int holder = open(path.c_str(), O_RDWR | O_CLOEXEC);
  const int other = open(path.c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(holder, LOCK_EX), 0);
  const struct {
    unsigned limit;
    std::vector<unsigned> sleeps;
  } rows[] = {
      {500, {16, 32, 64, 128, 256}}, {1000, {32, 64, 128, 256, 512}}, {0, {}}, {1, {}}, {64, {3, 6, 12, 24, 48}}};
  for (const auto& row : rows) {
    const SettableClock clock(0);
    EXPECT_EQ(flocktimed(other, LOCK_EX | LOCK_NB, row.limit), -1);
    EXPECT_EQ(clock.Sleeps(), row.sleeps) << row.limit;
  }
  {
    const SettableClock clock(0);
    EXPECT_EQ(flocktimed(-1, LOCK_EX | LOCK_NB, 500), -1);
    EXPECT_TRUE(clock.Sleeps().empty());
  }
  close(holder);
  EXPECT_EQ(flocktimed(other, LOCK_EX | LOCK_NB, 0), 0);
  close(other);
}

TEST(FileHandles, LongLinesAreCutToTheBufferAndCrossTheReadersOwn) {
  const ScratchFolder scratch;
  for (const size_t length : {0u, 258u, 259u, 260u, 261u, 8191u, 8192u, 8193u}) {
    SCOPED_TRACE(length);
    const string whole(length, 'x');
    const int file = open(scratch.Write("lines", whole + "\r\nnext").c_str(), O_RDONLY | O_CLOEXEC);
    LReadFileRef ref(file);
    LReadFileBuffered buffered(file);
    const auto expectLines = [&](auto& reader) {
      Text line;
      for (const string& expected : {whole.substr(0, 259), string("next")}) {
        EXPECT_TRUE(reader.ReadLine(line, sizeof line));
        EXPECT_EQ(line, expected);
      }
      EXPECT_FALSE(reader.ReadLine(line, sizeof line));
      lseek(file, 0, SEEK_SET);
    };
    expectLines(ref);
    expectLines(buffered);
    LStringLongTemplate<char> line;
    EXPECT_TRUE(ref.ReadLine(line));
    EXPECT_EQ(line.Text(), whole);
    close(file);
  }
}

TEST(FileHandles, AWriterEmptiesTheFileOnceItIsLocked) {
  const ScratchFolder scratch;
  const string path = scratch.Write("a", "old content");
  {
    LWriteFile file(path.c_str(), 100);
    ASSERT_NE(file.descriptor, -1);
    EXPECT_NE(fcntl(file.descriptor, F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_TRUE(file.WriteString("new"));
    LWriteFile second(path.c_str(), 1);
    EXPECT_EQ(second.descriptor, -1);
    EXPECT_FALSE(second.WriteString("x"));
    EXPECT_TRUE(second.WriteString(""));
  }
  EXPECT_EQ(scratch.Read("a"), "new");
  EXPECT_EQ(LWriteFile(scratch.Path("no/such/folder").c_str(), 100).descriptor, -1);
}

TEST(FileText, LoadsByTheByteOrderMark) {
  const ScratchFolder scratch;
  const string u8Mark = "\xEF\xBB\xBF", little = "\xFF\xFE", big = "\xFE\xFF";
  const struct {
    const char* name;
    string content;
    string text;
  } rows[] = {
      {"empty", "", ""},
      {"no mark", "あ", "あ"},
      {"UTF-8 mark", u8Mark + "あ", "あ"},
      {"two bytes of the UTF-8 mark", "\xEF\xBB", "\xEF\xBB"},
      {"little endian", little + string("a\0\x42\x30\xE9\0", 6), "aあé"},
      {"big endian", big + string("\0a\x30\x42", 4), "aあ"},
      {"pair", little + string("\x3D\xD8\x00\xDE", 4), "😀"},
      {"odd byte at the end", little + string("a\0b", 3), "a"},
      {"mark and one byte", little + "a", ""},
      {"half a pair goes with nothing", little + string("a\0\x3D\xD8", 4), "a\xF0\x9F\x90\x80"},
      {"a late half goes with what follows", big + string("\xDC\x01\0A\0b", 6),
       "\xF0\x90\x91\x81"
       "b"},
      {"ends at a zero unit", little + string("a\0\0\0b\0", 6), "a"},
  };
  for (const auto& row : rows) {
    const string path = scratch.Write("text", row.content);
    LStringLongTemplate<char> raw, text;
    ASSERT_TRUE(LLoadText(path.c_str(), raw)) << row.name;
    EXPECT_EQ(string(raw.Text(), raw.length), row.content) << row.name;
    ASSERT_TRUE(LLoadTextAutoChar(path.c_str(), text)) << row.name;
    EXPECT_EQ(string(text.Text(), text.length), row.text) << row.name;
  }
}

TEST(FileText, AFailedLoadLeavesTheTextAsItWas) {
  const ScratchFolder scratch;
  LStringLongTemplate<char> text("kept");
  EXPECT_FALSE(LLoadText(scratch.Path("none").c_str(), text));
  EXPECT_FALSE(LLoadText(scratch.Path().c_str(), text));
  const string large = scratch.Write("large", "");
  ASSERT_EQ(truncate(large.c_str(), 3000000001), 0);
  EXPECT_FALSE(LLoadText(large.c_str(), text));
  EXPECT_FALSE(LLoadTextAutoChar(large.c_str(), text));

  const string locked = scratch.Write("locked", "x");
  const int holder = open(locked.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(holder, LOCK_EX), 0);
  const SettableClock clock(0);
  EXPECT_FALSE(LLoadText(locked.c_str(), text));
  ASSERT_EQ(flock(holder, LOCK_SH), 0);
  EXPECT_STREQ(text, "kept");
  EXPECT_TRUE(LLoadText(locked.c_str(), text)) << "other readers do not hinder";
  close(holder);
}

string EncodingMark(const string& path) {
  char value[64];
  const ssize_t length = getxattr(path.c_str(), "user.com.apple.TextEncoding", value, sizeof value);
  return length < 0 ? "" : string(value, static_cast<size_t>(length));
}

TEST(FileText, SavesAndMarksAsUtf8) {
  const ScratchFolder scratch;
  const string path = scratch.Write("text", "something longer than the new text");
  EXPECT_TRUE(LSaveText(path.c_str(), "履歴"));
  EXPECT_EQ(scratch.Read("text"), "履歴");
  const bool marks = setxattr(path.c_str(), "user.probe", "", 0, 0) == 0;
  if (marks) {
    EXPECT_EQ(EncodingMark(path), "utf-8;134217984");
  }
  EXPECT_TRUE(LSaveTextAsUTF8(scratch.Path("new").c_str(), LStringLongTemplate<char>("新")));
  EXPECT_EQ(scratch.Read("new"), "新");
  EXPECT_FALSE(LSaveText(scratch.Path("no/folder").c_str(), "x"));

  const string locked = scratch.Write("locked", "old");
  const int holder = open(locked.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(holder, LOCK_SH), 0);
  const SettableClock clock(0);
  EXPECT_FALSE(LSaveText(locked.c_str(), "new"));
  EXPECT_EQ(scratch.Read("locked"), "old");
  if (marks) {
    EXPECT_EQ(EncodingMark(locked), "utf-8;134217984") << "marked although not written";
  }
  close(holder);
}

}  // namespace
