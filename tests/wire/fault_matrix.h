// The conversations into which the fault matrix puts its faults, and what must be true of each of them whatever the
// server does.
#pragma once

#include <string>
#include <vector>

#include "ftp/logon.h"
#include "ftp/timeouts.h"
#include "support/fault_server.h"
#include "support/recording_interface.h"

enum class FaultSecurity { kPlain, kExplicit, kImplicit };

/// One run of a conversation. Everything is made anew for it.
struct FaultCell {
  FaultServer& server;
  LFileTransferProtocol& session;
  RecordingInterface& process;
  ServerFault fault;
  std::string local_path;     ///< Of the local file.
  std::string local_content;  ///< What it holds before the run; empty for none.
  std::vector<std::string> problems;

  // What the run gave.
  std::vector<std::string> names;
  uint64_t number = 0;
  std::string text;

  void Require(bool holds, const std::string& what) {
    if (!holds) problems.push_back(what);
  }
};

struct FaultScenario {
  std::string name;
  FaultSecurity security;
  ServerManner manner;
  int proxy;            ///< An LFtpProxyType.
  bool starts_offline;  ///< The conversation begins with the logon itself.
  LProcessResult (*run)(FaultCell&);
  void (*check)(FaultCell&, LProcessResult);

  bool IsSecure() const { return security != FaultSecurity::kPlain; }
};

const std::vector<FaultScenario>& FaultScenarios();
/// Bytes of the local file that an upload sends; what a server holds up is more than fits into the buffers.
size_t FaultLocalSize(const FaultScenario& scenario);

/// The logon of every scenario.
LProcessResult FaultLogOn(LProcessInterface& process, LFileTransferProtocol& session, const FaultServer& server,
                          FaultSecurity security);
/// The names of the current directory, in the server's order.
LProcessResult FaultList(LProcessInterface& process, LFileTransferProtocol& session, std::vector<std::string>& names);
