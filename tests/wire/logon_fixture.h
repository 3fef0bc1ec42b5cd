// What the tests of the logon share.
#pragma once

#include "ftp/logon.h"
#include "ftp/proxy_settings.h"
#include "wire/wire_fixture.h"

enum Security { kPlain, kExplicit, kImplicit };

class LogonTest : public WireTest {
 protected:
  /// Leaves no proxy to the next test.
  ~LogonTest() override {
    if (uses_proxy) LNetSetFtpProxySettings("", "", "", kFtpProxyNone);
  }

  void UseProxy(const std::string& host, const std::string& name, const std::string& word, int type) {
    uses_proxy = true;
    LNetSetFtpProxySettings(host.c_str(), name.c_str(), word.c_str(), static_cast<LFtpProxyType>(type));
  }

  LProcessResult LogOn(Security security = kPlain) { return LogOnTo(server.Address(), security); }
  LProcessResult LogOnTo(const std::string& address, Security security = kPlain) {
    return ProcessFtpLogOnServer(process, session, address.c_str(), user.c_str(), password.c_str(), security != kPlain,
                                 security == kImplicit);
  }
  /// A message that names the scripted server: `before`, the host and the port, `after`.
  std::string Message(const std::string& before, const std::string& after) const {
    return before + PeerInHistory(server.Address()) + after;
  }
  /// Half of the messages tell the user to look at the address.
  std::string MessageToCheckAddress(const std::string& before, const std::string& what) const {
    return Message(before, what + "正しいサーバーアドレスとポートが入力されていることを確認してください。");
  }

  bool uses_proxy = false;
  std::string user = "anna";
  std::string password = "secret";
};
