// What the tests on real servers start from: a server of one kind, a session, a process that records, the
// history. Both sides live in Japan's time, so that a time that is off by the zone shows.
#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "ftp/logon.h"
#include "ftp/protocol.h"
#include "support/history_file.h"
#include "support/real_server.h"
#include "support/recording_interface.h"
#include "support/scratch_folder.h"
#include "support/server_setups.h"
#include "support/test_files.h"

class ServerTest : public testing::TestWithParam<ServerSetup> {
 protected:
  void SetUp() override { ASSERT_TRUE(server.IsRunning()) << server.Log(); }
  void TearDown() override {
    if (!HasFailure()) return;
    for (const std::string& line : history.Lines()) printf("%s\n", line.c_str());
    printf("%s\n", server.Log().c_str());
  }

  LProcessResult LogOnWith(const char* password) {
    return ProcessFtpLogOnServer(process, session, server.Address().c_str(), server.User(), password,
                                 GetParam().security != ServerSecurity::kPlain,
                                 GetParam().security == ServerSecurity::kImplicitTls);
  }
  void LogOn() { ASSERT_EQ(LProcessResultOk, LogOnWith(RealServer::Password())); }

  // The server's folder, as its owner sees it.
  std::filesystem::path Remote(const std::string& name) const { return std::filesystem::path(server.Folder()) / name; }
  void PutRemote(const std::string& name, const std::string& content) const { WriteFile(Remote(name), content); }
  std::string GetRemote(const std::string& name) const { return ReadFile(Remote(name)); }
  bool HistoryHas(const std::string& part) const { return history.Count(part) != 0; }

  RealServer server{GetParam()};
  LFileTransferProtocol session;
  RecordingInterface process;
  HistoryFile history;
  ScratchFolder local;
};

#define SERVER_SUITE_THAT(name, takes) \
  INSTANTIATE_TEST_SUITE_P(Each, name, testing::ValuesIn(OfferedServersThat(takes)), NameOfParameter)
#define SERVER_SUITE(name) INSTANTIATE_TEST_SUITE_P(Each, name, testing::ValuesIn(OfferedServers()), NameOfParameter)
