// Names that are hard on a parser, a server or a shell; and what else is done to a file by its name.
#include <map>
#include <sys/stat.h>

#include "ftp/dir_iterator.h"
#include "ftp/permissions.h"
#include "ftp/transfer.h"
#include "servers/server_fixture.h"

namespace {

/// `%` is the number that tells two names of a form apart.
constexpr const char* kForms[] = {
    "a b%",    "two  blanks%",  "trail% ", "\"quoted\"%",  "it's%",     "[brackets]%", "{braces}%",
    "st*r%",   "qu?stion%",     ".dot%",   "..two dots%",  ".. blank%", "-dash%",      "-rw-r--r--%",
    "日本語%", "ファイル 名%",  "x->y%",   "a;size=7; b%", "100 Jan%",  "12:30 am%",   "$HOME`x`%",
    "#hash&%", "comma, (par)%", " blank%", "   blanks%",
};
constexpr int kNumbers = 20;  ///< With each form and the long names these are 500 names and more.
constexpr size_t kLongName = 200;
/// A listing's line is read up to here.
constexpr size_t kListedLine = 259;

std::string NameOfForm(const std::string& form, int number) {
  std::string name = form;
  return name.replace(name.find('%'), 1, std::to_string(number));
}

/// Begins with its number, so that it is known when its end is cut.
std::string LongName(int number) {
  std::string name = std::to_string(100 + number) + " ";
  while (name.size() + 3 <= kLongName) name += "長";
  return name + std::string(kLongName - name.size(), 'x');
}

class ServerNames : public ServerTest {
 protected:
  LProcessResult Say(const std::string& command) {
    return ProcessFtpSendAndWaitForReply(process, session, (command + "\r\n").c_str(), nullptr, nullptr);
  }
  std::map<std::string, uint64_t> List() {
    std::map<std::string, uint64_t> sizes;
    LFileTransferProtocol::DirIterator iterator;
    EXPECT_EQ(LProcessResultOk, iterator._LoadList(process, session, "*"));
    for (iterator.First(); iterator.Current(); iterator.Next()) {
      const std::string name = iterator.Name();
      if (name == "." || name == "..") continue;
      EXPECT_TRUE(sizes.emplace(name, iterator.Current()->size).second) << name;
    }
    return sizes;
  }
  bool ListsByFacts() const { return session.Has(LFileTransferProtocol::bHasMlsd); }
};

TEST_P(ServerNames, AFolderOfOddNamesIsListed) {
  std::map<std::string, uint64_t> expected;
  uint64_t size = 0;
  LogOn();
  (void)List();
  for (const char* form : kForms) {
    for (int number = 0; number < kNumbers; ++number) {
      const std::string name = NameOfForm(form, number);
      PutRemote(name, std::string(size, 'x'));
      // Behind facts a name begins with the first byte that is no blank.
      expected[ListsByFacts() ? name.substr(name.find_first_not_of(' ')) : name] = size++;
    }
  }
  for (int number = 0; number < kNumbers; ++number) {
    PutRemote(LongName(number), std::string(size, 'x'));
    expected[LongName(number)] = size++;
  }
  ASSERT_GE(expected.size(), 500U);
  std::map<std::string, uint64_t> listed = List();
  EXPECT_EQ(expected.size(), listed.size());
  for (const auto& [name, bytes] : expected) {
    // What stands before the name is less than what the line has left.
    auto found = listed.find(name);
    if (found == listed.end() && name.size() == kLongName) {
      found = listed.lower_bound(name.substr(0, 7));  // The number and the first sign.
      ASSERT_TRUE(found != listed.end() && name.rfind(found->first, 0) == 0) << name;
      EXPECT_GT(found->first.size(), kLongName / 2) << "more is missing than a line's length explains";
      EXPECT_LT(found->first.size() + kListedLine - kLongName, kListedLine);
    }
    ASSERT_TRUE(found != listed.end()) << "[" << name << "]";
    EXPECT_EQ(bytes, found->second) << name;
  }
}

TEST_P(ServerNames, AFileOfAnOddNameIsFetchedRenamedAndDeleted) {
  LogOn();
  for (const char* form : kForms) {
    const std::string name = NameOfForm(form, 1);
    // A blank in front or behind is the command's for some servers.
    if (name.front() == ' ' || name.back() == ' ') continue;
    SCOPED_TRACE(name);
    const std::string from = local.Write("from", name);
    ASSERT_EQ(LProcessResultOk, ProcessFtpUpload(process, session, name.c_str(), from.c_str(), nullptr, false));
    EXPECT_EQ(name, GetRemote(name));
    ASSERT_EQ(LProcessResultOk, ProcessFtpDownload(process, session, name.c_str(), local.Path("to").c_str(), nullptr));
    EXPECT_EQ(name, local.Read("to"));
    EXPECT_EQ(LProcessResultOk, Say("RNFR " + name));
    EXPECT_EQ(LProcessResultOk, Say("RNTO new " + name));
    EXPECT_EQ(LProcessResultOk, Say("DELE new " + name));
  }
  EXPECT_TRUE(std::filesystem::is_empty(server.Folder()));
}

TEST_P(ServerNames, PermissionsAreSetWhereTheServerCan) {
  LogOn();
  const std::string from = local.Write("from", "x");
  ASSERT_EQ(LProcessResultOk, ProcessFtpUpload(process, session, "a file", from.c_str(), nullptr, false));
  // vsftpd lets no anonymous user set them, and busybox does not know the command.
  const bool canSet = GetParam().kind != ServerKind::kVsftpd && GetParam().kind != ServerKind::kBusybox;
  for (const auto& [digits, mode] : {std::pair("640", 0640), std::pair("200", 0200)}) {
    EXPECT_EQ(canSet, Say(std::string("SITE CHMOD ") + digits + " a file") == LProcessResultOk);
    struct stat status = {};
    ASSERT_EQ(0, stat(Remote("a file").c_str(), &status));
    EXPECT_EQ(canSet ? mode : 0644, status.st_mode & 0777);
  }
  // Only in a listing of a single line is the file found; without an answer it counts as readable.
  EXPECT_EQ(GetParam().kind != ServerKind::kPyftpdlib, FTPTestUserHasReadPermissions(process, session, "a file"));
}

SERVER_SUITE(ServerNames);

}  // namespace
