// Files to each server and back, compared byte for byte on both disks.
#include "ftp/transfer.h"

#include <algorithm>
#include <ctime>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>

#include "ftp/queries.h"
#include "servers/server_fixture.h"

namespace {

class ServerTransfer : public ServerTest {
 protected:
  LProcessResult Upload(const std::string& name, const std::string& from, bool append = false) {
    return ProcessFtpUpload(process, session, name.c_str(), from.c_str(), &error, append);
  }
  LProcessResult Download(const std::string& name, const std::string& to) {
    return ProcessFtpDownload(process, session, name.c_str(), to.c_str(), &error);
  }
  char error[kTextSize] = "untouched";
};

TEST_P(ServerTransfer, FilesOfAllSizesComeThroughUnchanged) {
  LogOn();
  for (const size_t size : {0, 1, 1023, 1024, 1025, 5 * 1024 * 1024}) {
    SCOPED_TRACE(size);
    const std::string bytes = TestBytes(size);
    const std::string name = "ファイル " + std::to_string(size) + ".bin";
    const std::string from = local.Write("from", bytes);
    ASSERT_EQ(LProcessResultOk, Upload(name, from)) << error;
    EXPECT_STREQ("", error);
    EXPECT_TRUE(bytes == GetRemote(name)) << "the upload differs";
    ASSERT_EQ(LProcessResultOk, Download(name, local.Path("to"))) << error;
    EXPECT_TRUE(bytes == local.Read("to")) << "the download differs";
  }
}

TEST_P(ServerTransfer, BytesThatLookLikeTextAreLeftAlone) {
  LogOn();
  const std::string bytes = "a\r\nb\nc\rd\0e\xFF\xF4\x1A" + std::string(3, '\0') + "\r\n";
  ASSERT_EQ(LProcessResultOk, Upload("lines", local.Write("from", bytes)));
  EXPECT_EQ(bytes, GetRemote("lines"));
  ASSERT_EQ(LProcessResultOk, Download("lines", local.Path("to")));
  EXPECT_EQ(bytes, local.Read("to"));
}

TEST_P(ServerTransfer, AShorterFileReplacesALongerOne) {
  LogOn();
  ASSERT_EQ(LProcessResultOk, Upload("file", local.Write("from", "a long content")));
  ASSERT_EQ(LProcessResultOk, Upload("file", local.Write("from", "short")));
  EXPECT_EQ("short", GetRemote("file"));
  const std::string to = local.Write("to", "what stood here before");
  ASSERT_EQ(LProcessResultOk, Download("file", to));
  EXPECT_EQ("short", local.Read("to"));
}

TEST_P(ServerTransfer, AFileThatIsNotThere) {
  LogOn();
  EXPECT_EQ(LProcessResultFailed, Download("not there", local.Path("to")));
  EXPECT_STRNE("", error);
  EXPECT_TRUE(local.Has("to"));
  EXPECT_EQ("", local.Read("to"));
  EXPECT_EQ(LProcessResultFailed, Upload("no folder/file", local.Write("from", "x")));
  EXPECT_STRNE("", error);
  // The session goes on.
  ASSERT_EQ(LProcessResultOk, Upload("file", local.Path("from")));
  EXPECT_EQ("x", GetRemote("file"));
}

TEST_P(ServerTransfer, TheDateFollowsWhereTheServerCanSetIt) {
  constexpr int64_t kDate = 1582945445;
  LogOn();
  const std::string from = local.Write("from", "dated");
  const timespec times[2] = {{kDate, 0}, {kDate, 0}};
  ASSERT_EQ(0, utimensat(AT_FDCWD, from.c_str(), times, 0));
  ASSERT_EQ(LProcessResultOk, Upload("dated", from));
  struct stat status = {};
  ASSERT_EQ(0, stat(Remote("dated").c_str(), &status));
  const ServerKind kind = GetParam().kind;
  const bool canSet = kind == ServerKind::kProftpd || kind == ServerKind::kPureFtpd || kind == ServerKind::kPyftpdlib;
  EXPECT_EQ(canSet, session.Has(LFileTransferProtocol::bHasMfmt));
  if (canSet) {
    EXPECT_EQ(kDate, status.st_mtime);
  } else {
    EXPECT_NEAR(static_cast<double>(time(nullptr)), static_cast<double>(status.st_mtime), 60);
  }
}

SERVER_SUITE(ServerTransfer);

/// The size is asked for while the server waits for data, and the other servers answer nothing before the data have
/// come.
class ServerAppend : public ServerTransfer {};

TEST_P(ServerAppend, SendsOnlyTheRest) {
  LogOn();
  const std::string bytes = TestBytes(100000);
  ASSERT_EQ(LProcessResultOk, Upload("file", local.Write("from", bytes.substr(0, 70000))));
  ASSERT_EQ(LProcessResultOk, Upload("file", local.Write("from", bytes), true));
  EXPECT_TRUE(bytes == GetRemote("file"));
  EXPECT_TRUE(HistoryHas("APPE"));
}

SERVER_SUITE_THAT(ServerAppend, [](const ServerSetup& setup) { return setup.kind == ServerKind::kPyftpdlib; });

}  // namespace
