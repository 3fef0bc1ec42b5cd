// The servers of other makers as the parameter of a test: which there are, and their names.
#pragma once

#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "support/real_server.h"

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
