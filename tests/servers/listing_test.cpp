// Directories as each server lists them.
#include <chrono>
#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>

#include "ftp/dir_iterator.h"
#include "ftp/queries.h"
#include "servers/server_fixture.h"

namespace {

constexpr int64_t kMinute = 60;
constexpr int64_t kHour = 3600;
constexpr int64_t kDay = 24 * kHour;
constexpr int64_t kZone = 9 * kHour;           ///< Of the whole test program.
constexpr int64_t kLongAgo = 1582945445;       ///< 2020-02-29 03:04:05 UTC, 12:04:05 in Japan.
constexpr int64_t kThatMidnight = 1582902000;  ///< 2020-02-29 00:00 in Japan.

class ServerListing : public ServerTest {
 protected:
  struct Entry {
    bool isDirectory;
    uint64_t size;
    int64_t modified;
  };

  void MakeFiles() {
    PutRemote("empty", "");
    PutRemote("日本語 ファイル.txt", std::string(1234, 'x'));
    PutRemote("two  blanks .txt", "abc");
    PutRemote("old.txt", "12345");
    std::filesystem::create_directory(Remote("フォルダ"));
    for (const char* name : {"empty", "日本語 ファイル.txt", "two  blanks .txt", "フォルダ"}) SetTime(name, recent);
    SetTime("old.txt", kLongAgo);
  }
  void SetTime(const char* name, int64_t seconds) const {
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    ASSERT_EQ(0, utimensat(AT_FDCWD, Remote(name).c_str(), times, 0));
  }
  std::map<std::string, Entry> List(const char* pattern = "*") {
    std::map<std::string, Entry> entries;
    LFileTransferProtocol::DirIterator iterator;
    EXPECT_EQ(LProcessResultOk, iterator._LoadList(process, session, pattern));
    for (iterator.First(); iterator.Current(); iterator.Next()) {
      const auto& item = *iterator.Current();
      if (iterator.Name() == std::string(".") || iterator.Name() == std::string("..")) continue;
      EXPECT_TRUE(item.typeKnown && item.modifiedKnown) << item.name;
      entries[item.name] = {item.isDirectory, item.sizeKnown ? item.size : 0, item.modified};
    }
    return entries;
  }
  void ExpectFiles(int64_t recentTime, int64_t oldTime) {
    const std::map<std::string, Entry> expected = {
        {"empty", {false, 0, recentTime}},
        {"日本語 ファイル.txt", {false, 1234, recentTime}},
        {"two  blanks .txt", {false, 3, recentTime}},
        {"old.txt", {false, 5, oldTime}},
        {"フォルダ", {true, 0, recentTime}},
    };
    std::map<std::string, Entry> listed = List();
    for (const auto& [name, entry] : expected) {
      ASSERT_TRUE(listed.count(name)) << name;
      EXPECT_EQ(entry.isDirectory, listed[name].isDirectory) << name;
      EXPECT_EQ(entry.modified, listed[name].modified) << name;
      if (!entry.isDirectory) {
        EXPECT_EQ(entry.size, listed[name].size) << name;
      }
      listed.erase(name);
    }
    EXPECT_TRUE(listed.empty()) << listed.begin()->first;
  }
  /// A listing line says no zone: it is taken for local time, also from the servers that write it in UTC.
  int64_t AsListed(int64_t time) const {
    const bool isUtc = GetParam().kind == ServerKind::kPyftpdlib || GetParam().kind == ServerKind::kVsftpd;
    return isUtc ? time - kZone : time;
  }

  const int64_t recent = time(nullptr) - kDay;
};

TEST_P(ServerListing, ByLines) {
  MakeFiles();
  LogOn();
  (void)ProcessFtpCheckFeatures(process, session);
  session.Set(LFileTransferProtocol::bMlsdFailed);
  const int64_t listed = AsListed(recent);
  ExpectFiles(listed - listed % kMinute, kThatMidnight);
  EXPECT_TRUE(HistoryHas("LIST"));

  PutRemote("  leading blanks", "");
  EXPECT_EQ(1U, List().count("  leading blanks"));
}

TEST_P(ServerListing, ByPattern) {
  MakeFiles();
  LogOn();
  EXPECT_EQ(3U, List("*.TXT").size());
  EXPECT_EQ(1U, List("*ファイル*").size());
  EXPECT_TRUE(List("none*").empty());
}

TEST_P(ServerListing, AnEmptyFolderAndAnotherOne) {
  MakeFiles();
  LogOn();
  ASSERT_TRUE(session.SetCurrentDirectory("フォルダ"));
  EXPECT_TRUE(List().empty());
  ASSERT_TRUE(session.SetCurrentDirectory(".."));
  EXPECT_EQ(5U, List().size());
  EXPECT_FALSE(session.SetCurrentDirectory("not there"));
}

TEST_P(ServerListing, QuestionsAboutOneFile) {
  MakeFiles();
  LogOn();
  uint64_t size = 0;
  ASSERT_EQ(LProcessResultOk, ProcessFtpGetFileSize(process, session, "日本語 ファイル.txt", size));
  EXPECT_EQ(1234U, size);
  int64_t modified = 0;
  ASSERT_EQ(LProcessResultOk, ProcessFtpGetFileModifiedTime(process, session, "old.txt", modified));
  EXPECT_EQ(kLongAgo, modified);
  signed char kind = kFtpKindUnknown;
  ASSERT_EQ(LProcessResultOk, ProcessFtpIsDirectory(process, session, "フォルダ", kind));
  EXPECT_EQ(kFtpKindDirectory, kind);
  ASSERT_EQ(LProcessResultOk, ProcessFtpIsDirectory(process, session, "old.txt", kind));
  EXPECT_EQ(kFtpKindFile, kind);
  EXPECT_TRUE(session.ContainDirectory("two  blanks .txt"));
  EXPECT_FALSE(session.ContainDirectory("not there"));
}

TEST_P(ServerListing, FoldersAreMadeAndDeletedWhole) {
  LogOn();
  EXPECT_TRUE(session.CreateDirectory("新しい フォルダ"));
  EXPECT_TRUE(std::filesystem::is_directory(Remote("新しい フォルダ")));
  ASSERT_TRUE(session.SetCurrentDirectory("新しい フォルダ"));
  EXPECT_TRUE(session.CreateDirectory("inner"));
  ASSERT_TRUE(session.SetCurrentDirectory(".."));
  PutRemote("新しい フォルダ/a", "1");
  PutRemote("新しい フォルダ/.hidden", "2");
  std::filesystem::permissions(Remote("新しい フォルダ"), std::filesystem::perms::all);
  EXPECT_EQ(LProcessResultOk, ProcessFtpDeleteDirectoryAndFiles(process, session, "新しい フォルダ"));
  EXPECT_FALSE(std::filesystem::exists(Remote("新しい フォルダ")));
}

SERVER_SUITE(ServerListing);

/// pyftpdlib breaks off a data connection on which TLS begins before the command, as it does for MLSD.
class ServerFacts : public ServerListing {};

TEST_P(ServerFacts, AnswerMlsdOrFallBackToList) {
  MakeFiles();
  LogOn();
  (void)ProcessFtpCheckFeatures(process, session);
  // ProFTPD and pyftpdlib know the command, but their FEAT speaks of MLST alone; the others know neither.
  const ServerKind kind = GetParam().kind;
  EXPECT_EQ(kind == ServerKind::kPureFtpd, session.Has(LFileTransferProtocol::bHasMlsd));
  session.Set(LFileTransferProtocol::bHasMlsd);
  const bool answers = kind == ServerKind::kProftpd || kind == ServerKind::kPureFtpd || kind == ServerKind::kPyftpdlib;
  const int64_t listed = AsListed(recent);
  const auto start = std::chrono::steady_clock::now();
  ExpectFiles(answers ? recent : listed - listed % kMinute, answers ? kLongAgo : kThatMidnight);
  // A server that begins its side of TLS behind the answer must not cost the time of a handshake that fails.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
  EXPECT_TRUE(HistoryHas("MLSD"));
  EXPECT_EQ(!answers, HistoryHas("LIST"));
}

SERVER_SUITE_THAT(ServerFacts, [](const ServerSetup& setup) {
  return setup.kind != ServerKind::kPyftpdlib || setup.security == ServerSecurity::kPlain;
});

}  // namespace
