// What the tests on real servers start from: a server of one kind, a session, a process that records, the
// history. Both sides live in Japan's time, so that a time that is off by the zone shows.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

#include "ftp/logon.h"
#include "ftp/protocol.h"
#include "support/history_capture.h"
#include "support/real_server.h"
#include "support/recording_interface.h"
#include "support/scratch_folder.h"

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
  void PutRemote(const std::string& name, const std::string& content) const {
    std::ofstream(Remote(name), std::ios::binary) << content;
  }
  std::string GetRemote(const std::string& name) const {
    std::ifstream file(Remote(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  bool HistoryHas(const std::string& part) const {
    for (const std::string& line : history.Lines()) {
      if (line.find(part) != std::string::npos) return true;
    }
    return false;
  }

  RealServer server{GetParam()};
  LFileTransferProtocol session;
  RecordingInterface process;
  HistoryCapture history;
  ScratchFolder local;
};

/// Every kind of server with every kind of security that it offers on this machine, as far as `takes` wants it.
template <typename Rule>
std::vector<ServerSetup> OfferedServersThat(Rule takes) {
  std::vector<ServerSetup> setups;
  for (const ServerKind kind : {ServerKind::kVsftpd, ServerKind::kProftpd, ServerKind::kPureFtpd,
                                ServerKind::kPyftpdlib, ServerKind::kInetutils, ServerKind::kBusybox}) {
    for (const ServerSecurity security :
         {ServerSecurity::kPlain, ServerSecurity::kExplicitTls, ServerSecurity::kImplicitTls}) {
      const ServerSetup setup = {kind, security};
      if (RealServer::IsOffered(setup) && takes(setup)) setups.push_back(setup);
    }
  }
  return setups;
}
inline std::vector<ServerSetup> OfferedServers() {
  return OfferedServersThat([](const ServerSetup&) { return true; });
}

inline std::string NameOf(const ServerSetup& setup) {
  const char* const kinds[] = {"Vsftpd", "Proftpd", "PureFtpd", "Pyftpdlib", "Inetutils", "Busybox"};
  const char* const securities[] = {"Plain", "ExplicitTls", "ImplicitTls"};
  return std::string(kinds[static_cast<int>(setup.kind)]) + securities[static_cast<int>(setup.security)];
}

/// A failed row of a table names its server.
inline void PrintTo(const ServerSetup& setup, std::ostream* out) { *out << NameOf(setup); }

inline std::string NameOfParameter(const testing::TestParamInfo<ServerSetup>& parameter) {
  return NameOf(parameter.param);
}

#define SERVER_SUITE_THAT(name, takes) \
  INSTANTIATE_TEST_SUITE_P(Each, name, testing::ValuesIn(OfferedServersThat(takes)), NameOfParameter)
#define SERVER_SUITE(name) INSTANTIATE_TEST_SUITE_P(Each, name, testing::ValuesIn(OfferedServers()), NameOfParameter)
