// Every text that a user or a server can put into a command, tried with one that holds a second command.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "ftp/commands.h"
#include "ftp/dir_iterator.h"
#include "ftp/logon.h"
#include "ftp/proxy_settings.h"
#include "ftp/queries.h"
#include "ftp/timeouts.h"
#include "ftp/transfer.h"
#include "support/fault_server.h"
#include "support/history_file.h"
#include "support/recording_interface.h"
#include "support/scratch_folder.h"

namespace {

using Session = LFileTransferProtocol;
using testing::Contains;

constexpr char kHasLineEnd[] = "コマンドの途中に改行があるか、または行末がないため送信しませんでした。";
constexpr char kTooLong[] = "コマンドが長すぎるため送信しませんでした。";
constexpr char kUserNotSent[] = "へのユーザー名送信に失敗しました。接続を確認しています。";
constexpr char kProxyUserNotSent[] = "にユーザー名を送信できませんでした。接続を確認してください。";
constexpr char kProxyPasswordNotSent[] = "にパスワードを送信できませんでした。接続を確認してください。";
constexpr char kRoutingNotSent[] = "へサイトコマンドを送信できませんでした。接続を確認してください。";
/// Every kind of a line end, in front of a command, inside and at the end of a text.
const char* const kSmugglers[] = {"a\r\nDELE b", "a\nDELE b", "a\rDELE b", "a\r\n", "a\n", "a\r", "\r\nDELE b", "\n"};

class SmuggledCommands : public testing::Test {
 public:
  SmuggledCommands() : former_timeouts(gFtpTimeouts) {}
  ~SmuggledCommands() override {
    gFtpTimeouts = former_timeouts;
    LNetSetFtpProxySettings("", "", "", kFtpProxyNone);
  }

  LProcessResult LogOn(const char* address, const char* user, const char* password) {
    return ProcessFtpLogOnServer(process, session, address, user, password, false, false);
  }
  LProcessResult LogOnThroughProxy(int type, const char* user, const char* password, const char* target) {
    LNetSetFtpProxySettings(server->Address().c_str(), user, password, static_cast<LFtpProxyType>(type));
    return LogOn(target, "anna", "secret");
  }
  LProcessResult Ask(const char* command) {
    return ProcessFtpSendAndWaitForReply(process, session, command, nullptr, nullptr);
  }

  std::unique_ptr<FaultServer> server;
  Session session;
  RecordingInterface process;
  ScratchFolder folder;
  std::string local = folder.Write("local", "12345");
  char error[kTextSize] = {};
  uint64_t number = 0;
  int64_t time = 0;
  signed char kind = 0;
  char text[kTextSize] = {};
  const FtpTimeouts former_timeouts;
};

struct Row {
  const char* name;
  LProcessResult (*run)(SmuggledCommands& test, const char* text);
  uint32_t capabilities = 0;  ///< Of the session; what logs on by itself has none.
  bool logs_on = true;
  LProcessResult result = LProcessResultFailed;
  const char* told = nullptr;  ///< Behind the complaint, by a logon: what was not sent, behind host and port.
};

template <size_t N>
LProcessResult AskWith(SmuggledCommands& test, const char (&format)[N], const char* text) {
  char command[kFtpLongCommand];
  std::string whole = format;
  whole.replace(whole.find("%s"), 2, text);
  FtpFormatCommand(command, "%s", whole.c_str());
  return test.Ask(command);
}

LProcessResult AskSize(SmuggledCommands& test, const char* name) {
  return ProcessFtpGetFileSize(test.process, test.session, name, test.number);
}
LProcessResult AskTime(SmuggledCommands& test, const char* name) {
  return ProcessFtpGetFileModifiedTime(test.process, test.session, name, test.time);
}
LProcessResult AskKind(SmuggledCommands& test, const char* name) {
  return ProcessFtpIsDirectory(test.process, test.session, name, test.kind);
}

const Row kRows[] = {
    {"user", [](SmuggledCommands& t, const char* x) { return t.LogOn(t.server->Address().c_str(), x, "secret"); }, 0,
     false, LProcessResultFailed, kUserNotSent},
    {"password", [](SmuggledCommands& t, const char* x) { return t.LogOn(t.server->Address().c_str(), "anna", x); }, 0,
     false},
    {"proxy user", [](SmuggledCommands& t, const char* x) { return t.LogOnThroughProxy(1, x, "pw", "ftp.example:21"); },
     0, false, LProcessResultFailed, kProxyUserNotSent},
    {"proxy password",
     [](SmuggledCommands& t, const char* x) { return t.LogOnThroughProxy(4, "pia", x, "ftp.example:21"); }, 0, false,
     LProcessResultFailed, kProxyPasswordNotSent},
    {"server behind SITE", [](SmuggledCommands& t, const char* x) { return t.LogOnThroughProxy(1, "pia", "pw", x); }, 0,
     false, LProcessResultFailed, kRoutingNotSent},
    {"server behind OPEN", [](SmuggledCommands& t, const char* x) { return t.LogOnThroughProxy(2, "", "", x); }, 0,
     false, LProcessResultFailed, kRoutingNotSent},
    {"server behind USER", [](SmuggledCommands& t, const char* x) { return t.LogOnThroughProxy(3, "", "", x); }, 0,
     false, LProcessResultFailed, kRoutingNotSent},
    {"CWD", [](SmuggledCommands& t,
               const char* x) { return t.session.SetCurrentDirectory(x) ? LProcessResultOk : LProcessResultFailed; }},
    {"CWD with progress",
     [](SmuggledCommands& t, const char* x) {
       TextCopyPart(t.text, x, strlen(x));
       LProcessSecureFtpChangeDirectory change = {&t.session, &t.text};
       return Process(t.process, change);
     }},
    {"MKD", [](SmuggledCommands& t, const char* x) { return ProcessFtpCreateDirectory(t.process, t.session, x); }},
    // A folder that cannot be entered counts as deleted.
    {"folder to delete",
     [](SmuggledCommands& t, const char* x) { return ProcessFtpDeleteDirectoryAndFiles(t.process, t.session, x); }, 0,
     true, LProcessResultOk},
    {"size by MLST", AskSize, Session::bMlstSize},
    {"size by SIZE", AskSize, Session::bHasSize},
    {"size by MLSD", [](SmuggledCommands& t, const char* x) { return AskSize(t, (x + std::string("/r")).c_str()); },
     Session::bHasMlsd},
    {"time by MDTM", AskTime, Session::bHasMdtm},
    {"time by MLST", AskTime, Session::bMlstModify},
    {"kind by MLST", AskKind, Session::bMlstType},
    {"kind by MLSD", AskKind, Session::bHasMlsd},
    {"mode by MLSD",
     [](SmuggledCommands& t, const char* x) { return ProcessFtpGetFileAttribute(t.process, t.session, x, t.text); },
     Session::bHasMlsd},
    {"RETR",
     [](SmuggledCommands& t, const char* x) {
       return ProcessFtpDownload(t.process, t.session, x, t.folder.Path("new").c_str(), &t.error);
     }},
    {"STOR", [](SmuggledCommands& t,
                const char* x) { return ProcessFtpUpload(t.process, t.session, x, t.local.c_str(), &t.error, false); }},
    {"APPE", [](SmuggledCommands& t,
                const char* x) { return ProcessFtpUpload(t.process, t.session, x, t.local.c_str(), &t.error, true); }},
    {"DELE", [](SmuggledCommands& t, const char* x) { return AskWith(t, "DELE %s\r\n", x); }},
    {"RNFR", [](SmuggledCommands& t, const char* x) { return AskWith(t, "RNFR %s\r\n", x); }},
    {"RNTO", [](SmuggledCommands& t, const char* x) { return AskWith(t, "RNTO %s\r\n", x); }},
    {"SITE chmod", [](SmuggledCommands& t, const char* x) { return AskWith(t, "SITE chmod 644 %s\r\n", x); }},
};

/// Runs the row against a server of its own; what it says in the history, and all that went out.
void RunRow(SmuggledCommands& test, const Row& row, const char* text, const char* complaint) {
  SCOPED_TRACE(row.name + (": " + testing::PrintToString(text)));
  HistoryFile history;
  ServerManner manner;
  manner.proxy = !row.logs_on;
  test.server = std::make_unique<FaultServer>(manner, nullptr);
  LNetSetFtpProxySettings("", "", "", kFtpProxyNone);
  if (row.logs_on) {
    ASSERT_EQ(test.LogOn(test.server->Address().c_str(), "anna", "secret"), LProcessResultOk);
    test.session.uCapabilities = Session::bFeaturesKnown | row.capabilities;
  }
  EXPECT_EQ(row.run(test, text), row.result);
  EXPECT_THAT(history.Messages(), Contains(complaint));
  if (row.told) {
    EXPECT_EQ(history.Messages().back(), "サーバー" + PeerInHistory(test.server->Address()) + row.told);
  }
  if (strstr(row.name, "password")) {
    EXPECT_EQ(history.Count("DELE"), 0u) << "a password in the history";
  }
  for (const std::string& command : test.server->Commands()) {
    EXPECT_EQ(command.find_first_of("\r\n"), std::string::npos) << command;
    EXPECT_NE(command.substr(0, 4), "DELE");
    EXPECT_EQ(command.find("xxx"), std::string::npos) << command;
  }
}

TEST_F(SmuggledCommands, NeverGoOut) {
  for (const Row& row : kRows) {
    for (const char* smuggler : kSmugglers) RunRow(*this, row, smuggler, kHasLineEnd);
  }
}

/// Cut short it would name something else.
TEST_F(SmuggledCommands, AndTextsThatDoNotFitNeverGoOut) {
  const std::string tooLong(kFtpLongCommand, 'x');
  for (const Row& row : kRows) {
    // Settings, a folder to change to and the folder of a path are of a fixed length before they come here.
    if (strstr(row.name, "proxy") || strstr(row.name, "progress") || strstr(row.name, "by MLSD")) continue;
    RunRow(*this, row, tooLong.c_str(), kTooLong);
  }
}

}  // namespace
