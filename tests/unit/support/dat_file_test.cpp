#include "support/dat_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/scratch_folder.h"
#include "support/settable_clock.h"

namespace {

using std::string;

class DatFileTest : public testing::Test {
 protected:
  /// What a new object reads from the file, "none" for no entry.
  string Stored(const char* section, const char* key) {
    LDatFileNativeFile file(path.c_str());
    EXPECT_TRUE(file.Load());
    const char* value = file.Get(section, key);
    return value ? value : "none";
  }

  ScratchFolder scratch;
  const string path = scratch.Path("store.dat");
};

TEST_F(DatFileTest, WritesSectionsAndEntriesInTheirOrder) {
  const string much(300, 'x'), cut(259, 'x');
  LDatFileNativeFile file(path.c_str());
  file.Set("second", "b", "2");
  file.Set(much.c_str(), much.c_str(), much.c_str());
  file.Set("second\r\nx=1", "a\nk2=2", "値\r\n[t]");  // A line end begins nothing else.
  file.Set("second", "b", "");
  EXPECT_TRUE(file.bDirty);
  file.Save();
  EXPECT_FALSE(file.bDirty);
  EXPECT_EQ(scratch.Read("store.dat"),
            "[second]\r\nb=\r\na=値\r\n\r\n[" + cut + "]\r\n" + cut + "=" + cut + "\r\n\r\n");
  EXPECT_EQ(Stored(cut.c_str(), cut.c_str()), cut);
  EXPECT_FALSE(file.IsChangedOnDisk());
}

TEST_F(DatFileTest, ReadsWhatOthersWrite) {
  scratch.Write("store.dat",
                "early=0\n[s]\nk=v=w\n=empty key\nno sign\n\n\n[t]\r\n k = v \r\nk2=\r\n[s]\rk3=3\r[]\n[half\nlast=1");
  const struct {
    const char* section;
    const char* key;
    const char* value;
  } rows[] = {{"", "early", "0"},       {"s", "k", "v=w"},   {"s", "", "empty key"},
              {"s", "no sign", "none"}, {"t", " k ", " v "}, {"t", "k2", ""},
              {"s", "k3", "3"},         {"", "last", "1"},   {"S", "k", "none"}};
  for (const auto& row : rows) EXPECT_EQ(Stored(row.section, row.key), row.value) << row.key;
}

TEST_F(DatFileTest, ALockedFileIsLeftAsItIs) {
  scratch.Write("store.dat", "[s]\r\nk=old\r\n");
  const int holder = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(holder, LOCK_EX), 0);
  const SettableClock clock(0);
  LDatFileNativeFile file(path.c_str());
  EXPECT_FALSE(file.Load());
  file.Set("s", "k", "new");
  file.Save();
  EXPECT_TRUE(file.bDirty);
  EXPECT_EQ(scratch.Read("store.dat"), "[s]\r\nk=old\r\n");
  ASSERT_EQ(flock(holder, LOCK_UN), 0);
  file.Save();
  EXPECT_FALSE(file.bDirty);
  EXPECT_EQ(Stored("s", "k"), "new");
  close(holder);
}

TEST_F(DatFileTest, TheSystemSeesWhatOthersWroteUnlessItHasChangesOfItsOwn) {
  LDatFileNativeSystem system;
  char value[kTextSize];
  EXPECT_FALSE(system.Read(path.c_str(), "s", "k", value));
  EXPECT_STREQ(value, "");
  scratch.Write("store.dat", "[s]\r\nk=1\r\n");
  EXPECT_TRUE(system.Read(path.c_str(), "s", "k", value));
  EXPECT_STREQ(value, "1");
  scratch.Write("store.dat", "[s]\r\nk=22\r\n");
  EXPECT_TRUE(system.Read(path.c_str(), "s", "k", value));
  EXPECT_STREQ(value, "22");
  system.Write(path.c_str(), "s", "k2", "mine");
  scratch.Write("store.dat", "[s]\r\nk=333\r\n");
  EXPECT_TRUE(system.Read(path.c_str(), "s", "k", value));
  EXPECT_STREQ(value, "22");
  EXPECT_EQ(scratch.Read("store.dat"), "[s]\r\nk=333\r\n") << "nothing is written before it must be";
  system.Clear();
  EXPECT_EQ(Stored("s", "k2"), "mine");
}

TEST_F(DatFileTest, TheEndOfTheProcessWritesWhatIsDirty) {
  const pid_t child = fork();
  if (child == 0) {
    gLDatFileNativeSystem.Write(path.c_str(), "s", "k", "at exit");
    exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Stored("s", "k"), "at exit");
}

}  // namespace
