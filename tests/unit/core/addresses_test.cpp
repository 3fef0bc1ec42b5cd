#include <arpa/inet.h>
#include <cstring>
#include <gtest/gtest.h>
#include <netdb.h>
#include <string>
#include <vector>

#include "core/sockets.h"
#include "stoppable.h"
#include "support/tls_test_server.h"

// The system's resolver, replaced: the tests ask no name server and know how often one would have been asked.

namespace {

struct KnownHost {
  const char* name;
  std::vector<const char*> addresses;
};

const std::vector<KnownHost>& KnownHosts() {
  static const std::vector<KnownHost> hosts = {
      {"six.test", {"192.0.2.6", "192.0.2.2", "192.0.2.5", "192.0.2.1", "192.0.2.4", "192.0.2.3"}},
      {"one.test", {"192.0.2.9"}},
      {"loopback.test", {"127.0.0.1"}},
      {"second.test", {"127.0.0.2", "127.0.0.1"}},
  };
  return hosts;
}

int lookUps = 0;

}  // namespace

extern "C" int getaddrinfo(const char* name, const char*, const addrinfo* hints, addrinfo** result) {
  ++lookUps;
  EXPECT_EQ(hints->ai_family, AF_INET);
  for (const KnownHost& host : KnownHosts()) {
    if (strcmp(host.name, name) != 0) continue;
    *result = nullptr;
    addrinfo** next = result;
    for (const char* text : host.addresses) {
      auto* address = new sockaddr_in();
      address->sin_family = AF_INET;
      inet_pton(AF_INET, text, &address->sin_addr);
      *next = new addrinfo();
      (*next)->ai_addr = reinterpret_cast<sockaddr*>(address);
      next = &(*next)->ai_next;
    }
    return 0;
  }
  return EAI_NONAME;
}

extern "C" void freeaddrinfo(addrinfo* list) {
  while (list) {
    addrinfo* next = list->ai_next;
    delete reinterpret_cast<sockaddr_in*>(list->ai_addr);
    delete list;
    list = next;
  }
}

namespace {

std::vector<std::string> Resolved(const char* host) {
  LIPAddressMultiHomed found;
  found.count = 99;
  found.Resolve(host);
  std::vector<std::string> texts;
  for (uint64_t i = 0; i < found.count; ++i) {
    char text[INET_ADDRSTRLEN];
    texts.emplace_back(inet_ntop(AF_INET, &found.addresses[i], text, sizeof text));
  }
  return texts;
}

TEST(Addresses, SplitPort) {
  struct Row {
    std::string address;
    std::string host;
    uint16_t port;
  };
  const Row rows[] = {
      {"server:2121", "server", 2121},
      {"server", "server", 21},
      {"server:", "server", 0},
      {"server:x", "server", 0},
      {"server:70000", "server", 4464},  // Cut to 16 bits.
      {"server:22:33", "server", 22},
      {":990", "", 990},
      {"", "", 21},
      {std::string(400, 'h') + ":2121", std::string(259, 'h'), 21},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.address);
    char host[kTextSize];
    EXPECT_EQ(SplitPortFromAddr(row.address.c_str(), host, 21), row.port);
    EXPECT_EQ(host, row.host);
  }
}

TEST(Addresses, NamesGiveTheFirstFourInOrder) {
  lookUps = 0;
  EXPECT_EQ(Resolved("one.test"), std::vector<std::string>{"192.0.2.9"});
  const std::vector<std::string> firstFour = {"192.0.2.6", "192.0.2.2", "192.0.2.5", "192.0.2.1"};
  EXPECT_EQ(Resolved("six.test"), firstFour);
  EXPECT_EQ(lookUps, 2);
  EXPECT_EQ(Resolved("192.0.2.77"), std::vector<std::string>{"192.0.2.77"});
  EXPECT_EQ(lookUps, 2) << "a dotted address is never looked up";
}

TEST(ConnectByName, UnknownNameFails) {
  EXPECT_TRUE(Resolved("unknown.test").empty());
  EXPECT_TRUE(Resolved("192.0.2.300").empty());
  Stoppable process;
  LSSLSocketTCP socket;
  EXPECT_EQ(ProcessConnect<char>(process, socket, "unknown.test:21", 21, 1000, true), LProcessResultFailed);
  EXPECT_FALSE(socket.IsValid());
}

TEST(ConnectByName, TriesTheAddressesInTurnAndRemembersTheName) {
  TlsTestServer server([](TlsTestPeer& peer) { peer.Send("hello\n"); });
  Stoppable process;
  // Nothing listens at the first address of the second name.
  for (const std::string name : {"loopback.test", "second.test"}) {
    LSSLSocketTCP socket;
    const std::string address = name + ":" + std::to_string(server.Port());
    ASSERT_EQ(ProcessConnect<char>(process, socket, address.c_str(), 21, 5000, false), LProcessResultOk);
    EXPECT_EQ(socket.szPeerName, name);
    char bytes[6];
    EXPECT_EQ(ProcessRecvBytes(process, socket, bytes, 6, 5000), LProcessResultOk);
  }
}

TEST(ConnectByName, StopEndsTheRowOfAddresses) {
  Stoppable process(1);
  LSSLSocketTCP socket;
  EXPECT_EQ(ProcessConnect<char>(process, socket, "second.test:1", 21, 5000, true), LProcessResultStopped);
  EXPECT_EQ(process.Questions(), 1);
  EXPECT_FALSE(socket.IsValid());
}

}  // namespace
