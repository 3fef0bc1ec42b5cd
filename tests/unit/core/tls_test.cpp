#include "platform/tls.h"

#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <ctime>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <netinet/tcp.h>
#include <string>
#include <thread>
#include <vector>

#include "core/sockets.h"
#include "stoppable.h"
#include "support/test_files.h"
#include "support/tls_test_server.h"

namespace {

using platform::TlsState;
using platform::TlsStatus;
using ::testing::HasSubstr;

constexpr unsigned kEnough = 10000;  ///< Never reached unless something is wrong.
constexpr size_t kPiece = 256 * 1024;

void Pause(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

/// A client socket and a server that it talks to.
class Tls : public ::testing::Test {
 protected:
  void Serve(TlsTestServer::Behaviour behaviour) {
    socket.CloseSocket();  // Ends the server before, if there is one.
    server_ = std::make_unique<TlsTestServer>(std::move(behaviour));
  }
  /// The same, with a good handshake first.
  void ServeSecure(TlsTestServer::Behaviour behaviour, TestCertificate certificate = TestCertificate::kGood) {
    Serve([behaviour = std::move(behaviour), certificate](TlsTestPeer& peer) {
      if (peer.StartTls(certificate)) behaviour(peer);
    });
  }
  void Connect(const char* name = "127.0.0.1") {
    const LIPAddressWithPort address = {htonl(INADDR_LOOPBACK), htons(server_->Port())};
    ASSERT_EQ(ProcessConnect(process, socket, name, address, kEnough), LProcessResultOk);
  }
  void ConnectSecure() {
    Connect();
    ASSERT_TRUE(socket.ConvertSocketToSSLTimeOut(kEnough)) << platform::TlsErrorText(socket.pContext);
  }
  /// Waits for the server's function to end: before what it refers to goes.
  void EndServer() {
    socket.CloseSocket();
    server_.reset();
  }

  std::string ReceiveLine() {
    char text[kTextSize];
    LFixedLengthStringWriterTemplate<char> writer(text);
    EXPECT_EQ(ProcessRecvLineToWriter(process, socket, writer, kEnough), LProcessResultOk);
    return std::string(text, writer.length);
  }
  LProcessResult ReceiveReady(std::string& text) {
    text.assign(64, '\0');
    size_t received = 0;
    const LProcessResult result = ProcessRecvReady(process, socket, text.data(), text.size(), received, kEnough);
    text.resize(received);
    return result;
  }
  /// Reads by single attempts up to the end of the stream; gives what ended it.
  TlsStatus ReadToEnd(std::string& all) {
    std::string piece(kPiece, '\0');
    for (;;) {
      size_t got = 0;
      const TlsStatus status = socket.ReadAvailable(piece.data(), piece.size(), got);
      all.append(piece, 0, got);
      if (status == TlsStatus::kWouldBlock) {
        EXPECT_EQ(ProcessWaitForDataOrClose(process, socket, kEnough), LProcessResultOk);
      } else if (status != TlsStatus::kOk) {
        return status;
      }
    }
  }
  std::unique_ptr<TlsTestServer> server_;  // Outlives the socket, whose close is what ends it.
  Stoppable process;
  LSSLSocketTCP socket;
};

// Certificates

TEST_F(Tls, CertificatesAreCheckedAgainstChainNameAndTime) {
  struct Row {
    TestCertificate certificate;
    const char* name;
    const char* error;  ///< Null where the handshake succeeds.
  };
  const Row rows[] = {
      {TestCertificate::kGood, "127.0.0.1", nullptr},
      {TestCertificate::kGood, "127.0.0.1:990", nullptr},
      {TestCertificate::kGood, "localhost", nullptr},
      {TestCertificate::kGood, "LOCALHOST:21", nullptr},
      {TestCertificate::kTls12, "localhost", nullptr},
      {TestCertificate::kWithChain, "127.0.0.1", nullptr},
      {TestCertificate::kChainMissing, "127.0.0.1", "unable to get local issuer certificate"},
      {TestCertificate::kNameOnly, "localhost", nullptr},
      {TestCertificate::kNameOnly, "127.0.0.1", "IP address mismatch"},
      {TestCertificate::kAddressAsName, "127.0.0.1", "IP address mismatch"},
      {TestCertificate::kGood, "localhost.example", "hostname mismatch"},
      {TestCertificate::kGood, "127.0.0.2", "IP address mismatch"},
      {TestCertificate::kWrongName, "localhost", "hostname mismatch"},
      {TestCertificate::kWrongName, "", nullptr},  // Without a name the chain alone counts.
      {TestCertificate::kExpired, "localhost", "certificate has expired"},
      {TestCertificate::kNotYetValid, "localhost", "not yet valid"},
      {TestCertificate::kSelfSigned, "localhost", "self-signed certificate"},
      {TestCertificate::kForClients, "localhost", "certificate purpose"},
      {TestCertificate::kOldTls, "localhost", "protocol version"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.name) + " with certificate " + std::to_string(static_cast<int>(row.certificate)));
    ServeSecure([](TlsTestPeer& peer) { peer.Send("in\n"); }, row.certificate);
    Connect(row.name);
    EXPECT_EQ(socket.ConvertSocketToSSLTimeOut(kEnough), row.error == nullptr);
    ASSERT_TRUE(socket.IsSecure());
    if (row.error) {
      EXPECT_THAT(platform::TlsErrorText(socket.pContext), HasSubstr(row.error));
    } else {
      EXPECT_STREQ(platform::TlsErrorText(socket.pContext), "");
      EXPECT_EQ(ReceiveLine(), "in");
    }
  }
}

TEST_F(Tls, FailedHandshakeLeavesASocketOnWhichEverythingFails) {
  ServeSecure([](TlsTestPeer&) {}, TestCertificate::kExpired);
  Connect();
  EXPECT_FALSE(socket.ConvertSocketToSSLTimeOut(kEnough));
  EXPECT_TRUE(socket.IsSecure());
  EXPECT_TRUE(socket.IsValid());
  EXPECT_EQ(socket.GetBytesReady(), 0u);
  EXPECT_EQ(ProcessSend(process, socket, "USER x\r\n", 8, kEnough), LProcessResultFailed);
  std::string text;
  EXPECT_EQ(ReceiveReady(text), LProcessResultFailed);
  EXPECT_FALSE(socket.InitSSL()) << "A context is made once";
  size_t moved = 0;
  EXPECT_EQ(socket.ReadAvailable(text.data(), text.size(), moved), TlsStatus::kFailed);
  EXPECT_FALSE(socket.ShutdownSend());
  socket.CloseSocket();
  EXPECT_FALSE(socket.IsSecure());
}

TEST_F(Tls, ServerNameIsSentForNamesOnly) {
  std::atomic<bool> hasName = false;
  const auto look = [&](TlsTestPeer& peer) {
    const char* name = SSL_get_servername(peer.Tls(), TLSEXT_NAMETYPE_host_name);
    hasName = name && std::string(name) == "localhost";
    peer.Send("in\n");
  };
  for (const char* name : {"localhost:21", "127.0.0.1:21"}) {
    ServeSecure(look);
    Connect(name);
    ASSERT_TRUE(socket.ConvertSocketToSSLTimeOut(kEnough));
    EXPECT_EQ(ReceiveLine(), "in");
    EXPECT_EQ(hasName, name[0] == 'l') << name;
    EndServer();
  }
}

TEST_F(Tls, NewestVersionAndAFullHandshakeEachTime) {
  const auto tell = [](TlsTestPeer& peer) {
    peer.Send(std::string(SSL_get_version(peer.Tls())) + (SSL_session_reused(peer.Tls()) ? " again\n" : " new\n"));
    peer.Receive(1);
  };
  ServeSecure(tell);
  ConnectSecure();
  EXPECT_EQ(ReceiveLine(), "TLSv1.3 new");
  ConnectSecure();
  EXPECT_EQ(ReceiveLine(), "TLSv1.3 new");
  ServeSecure(tell, TestCertificate::kTls12);
  ConnectSecure();
  EXPECT_EQ(ReceiveLine(), "TLSv1.2 new");
}

// The handshake

TEST_F(Tls, HandshakeWithASilentServerTimesOutWithoutBurningTime) {
  Serve([](TlsTestPeer& peer) { peer.ReceiveToEnd(); });
  Connect();
  const Stopwatch watch;
  const clock_t cpu = clock();
  EXPECT_FALSE(socket.ConvertSocketToSSLTimeOut(700));
  EXPECT_GE(watch.Ms(), 690);
  EXPECT_LT(watch.Ms(), 5000);
  EXPECT_LT((clock() - cpu) * 1000 / CLOCKS_PER_SEC, 350);
  EXPECT_FALSE(socket.ConvertSocketToSSLTimeOut(0));
}

// What the TLS layer holds

TEST_F(Tls, DecryptedDataIsFoundWhileTheDescriptorIsDry) {
  ServeSecure([](TlsTestPeer& peer) {
    const int on = 1;
    setsockopt(peer.Fd(), IPPROTO_TCP, TCP_CORK, &on, sizeof on);
    for (const char* record : {"first", "second", "third"}) peer.Send(record);
    const int off = 0;
    setsockopt(peer.Fd(), IPPROTO_TCP, TCP_CORK, &off, sizeof off);
    peer.Receive(1);
  });
  ConnectSecure();
  char start[3];
  EXPECT_EQ(ProcessRecvBytes(process, socket, start, 3, kEnough), LProcessResultOk);
  Pause(30);
  std::string rest;
  while (rest.size() < 13) {
    EXPECT_EQ(platform::NetBytesReady(socket.fd), 0u) << "Everything is in the TLS layer";
    ASSERT_GT(socket.GetBytesReady(), 0u);
    const Stopwatch watch;
    EXPECT_EQ(ProcessWaitForDataOrClose(process, socket, kEnough), LProcessResultOk);
    std::string text;
    ASSERT_EQ(ReceiveReady(text), LProcessResultOk);
    EXPECT_LT(watch.Ms(), 1000);
    rest += text;
  }
  EXPECT_EQ(rest, "stsecondthird");
  EXPECT_EQ(socket.GetBytesReady(), 0u);
  EXPECT_EQ(ProcessWaitForDataOrClose(process, socket, 1), LProcessResultFailed);
}

TEST_F(Tls, CloseNoticeBehindDataEndsTheStreamThoughTheDescriptorStaysOpen) {
  ServeSecure([](TlsTestPeer& peer) {
    peer.Send("last");
    peer.SendCloseNotice();
    // Neither closes nor sends anything until the client goes.
    char bytes[64];
    do {
      peer.WaitReadable(kEnough);
    } while (recv(peer.Fd(), bytes, sizeof bytes, 0) > 0);
  });
  ConnectSecure();
  Pause(50);
  const Stopwatch watch;
  std::string text;
  EXPECT_EQ(ReceiveReady(text), LProcessResultOk);
  EXPECT_EQ(text, "last");
  EXPECT_EQ(ReceiveReady(text), LProcessResultFailed);
  EXPECT_LT(watch.Ms(), 5000);
  EXPECT_TRUE(platform::TlsPeerClosedCleanly(socket.pContext));
  EXPECT_EQ(platform::TlsGetState(socket.pContext), TlsState::kClosed);
  socket.CloseSocket();
}

TEST_F(Tls, EndsOfTheStreamAreToldApart) {
  struct Row {
    const char* name;
    TlsTestServer::Behaviour end;
    TlsStatus status;
    bool isClean;
  };
  const Row rows[] = {
      {"notice and close", [](TlsTestPeer& peer) { peer.SendCloseNotice(); }, TlsStatus::kClosedGracefully, true},
      {"close alone", [](TlsTestPeer&) {}, TlsStatus::kClosedGracefully, false},
      {"half a record", [](TlsTestPeer& peer) { (void)send(peer.Fd(), "\x17\x03\x03\x01\x00rubbish", 12, 0); },
       TlsStatus::kClosedGracefully, false},
      {"broken record",
       [](TlsTestPeer& peer) {
         (void)send(peer.Fd(),
                    "\x17\x03\x03\x00\x12"
                    "0123456789abcdefgh",
                    23, 0);
         peer.ReceiveToEnd();
       },
       TlsStatus::kFailed, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const std::string data = TestBytes(100000);
    ServeSecure([&](TlsTestPeer& peer) {
      peer.Send(data);
      row.end(peer);
    });
    ConnectSecure();
    std::string all;
    EXPECT_EQ(ReadToEnd(all), row.status);
    EXPECT_TRUE(all == data);
    EXPECT_EQ(platform::TlsPeerClosedCleanly(socket.pContext), row.isClean);
    size_t got = 0;
    EXPECT_EQ(socket.ReadAvailable(all.data(), 1, got), row.status) << "An end is told again";
    EndServer();
  }
}

TEST_F(Tls, ResetIsAnAbort) {
  ServeSecure([](TlsTestPeer& peer) {
    peer.ReceiveLine();
    peer.Reset();
  });
  ConnectSecure();
  EXPECT_EQ(ProcessSend(process, socket, "go\n", 3, kEnough), LProcessResultOk);
  std::string all;
  EXPECT_EQ(ReadToEnd(all), TlsStatus::kClosedAbort);
  EXPECT_EQ(platform::TlsGetState(socket.pContext), TlsState::kAborted);
  EXPECT_EQ(ProcessSend(process, socket, "x", 1, kEnough), LProcessResultFailed);
}

TEST_F(Tls, SessionTicketsAreNoData) {
  ServeSecure([](TlsTestPeer& peer) {
    EXPECT_EQ(SSL_get_num_tickets(peer.Tls()), 2u);
    peer.Receive(1);
    peer.Send("data\n");
  });
  ConnectSecure();
  std::string piece(64, '\0');
  size_t received = 0;
  EXPECT_EQ(ProcessRecvReady(process, socket, piece.data(), 64, received, 300), LProcessResultFailed)
      << "The tickets came, and no data";
  EXPECT_EQ(received, 0u);
  EXPECT_EQ(ProcessSend(process, socket, "x", 1, kEnough), LProcessResultOk);
  EXPECT_EQ(ReceiveLine(), "data");
}

TEST_F(Tls, KeyUpdatesGoUnnoticed) {
  ServeSecure([](TlsTestPeer& peer) {
    for (int i = 0; i < 20; ++i) {
      SSL_key_update(peer.Tls(), SSL_KEY_UPDATE_REQUESTED);
      peer.Send("line\n");
    }
    EXPECT_EQ(peer.ReceiveLine(), "answer\n");
    peer.Send("end\n");
  });
  ConnectSecure();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(ReceiveLine(), "line");
  EXPECT_EQ(ProcessSend(process, socket, "answer\n", 7, kEnough), LProcessResultOk);
  EXPECT_EQ(ReceiveLine(), "end");
}

TEST_F(Tls, RenegotiationGoesUnnoticed) {
  ServeSecure(
      [](TlsTestPeer& peer) {
        peer.Send("before\n");
        EXPECT_EQ(SSL_renegotiate(peer.Tls()), 1);
        EXPECT_EQ(SSL_do_handshake(peer.Tls()), 1);
        EXPECT_EQ(peer.ReceiveLine(), "written\n");
        EXPECT_EQ(SSL_renegotiate_pending(peer.Tls()), 0);
        peer.Send("after\n");
      },
      TestCertificate::kTls12);
  ConnectSecure();
  EXPECT_EQ(ReceiveLine(), "before");
  // Takes the request off the connection, so that the write falls into the middle of the handshake.
  Pause(30);
  char byte;
  size_t got = 0;
  EXPECT_EQ(socket.ReadAvailable(&byte, 1, got), TlsStatus::kWouldBlock);
  EXPECT_EQ(ProcessSend(process, socket, "written\n", 8, kEnough), LProcessResultOk);
  EXPECT_EQ(ReceiveLine(), "after");
}

// Sending and closing

TEST_F(Tls, BlockedSendGoesOnUntilTheStop) {
  std::atomic<bool> mayRead = false;
  std::string got;
  const std::string data = TestBytes(8 << 20);
  ServeSecure([&](TlsTestPeer& peer) {
    while (!mayRead) Pause(10);
    got = peer.ReceiveToEnd();
  });
  ConnectSecure();
  Stoppable stopping(4);
  EXPECT_EQ(ProcessSend(stopping, socket, data.data(), data.size(), 100), LProcessResultStopped)
      << "The time-out does not count while the TLS layer has something left to push out";
  EXPECT_LE(stopping.WidestGapMs(), kWidestSliceMs);
  mayRead = true;
  EXPECT_EQ(ProcessSend(process, socket, "end", 3, kEnough), LProcessResultOk);
  EXPECT_EQ(ProcessShutdownSend(process, socket, kEnough), LProcessResultOk);
  EndServer();
  ASSERT_GT(got.size(), 3u);
  EXPECT_EQ(got.substr(got.size() - 3), "end");
  EXPECT_TRUE(data.compare(0, got.size() - 3, got, 0, got.size() - 3) == 0)
      << "What was taken over went out whole, in order and once";
}

TEST_F(Tls, CloseSendsTheNotice) {
  std::atomic<bool> hasNotice = false;
  ServeSecure([&](TlsTestPeer& peer) {
    peer.ReceiveToEnd();
    hasNotice = peer.HasCloseNotice();
  });
  ConnectSecure();
  // Nobody has read the tickets, which must not turn the close into a reset.
  Pause(30);
  EndServer();
  EXPECT_TRUE(hasNotice);
}

// The stream over a transport of the test's

/// A transport that counts its calls.
struct CountingTransport {
  int fd = -1;
  int reads = 0;
  int writes = 0;

  static TlsStatus Moved(ssize_t result, size_t& size) {
    const size_t wanted = size;
    size = result > 0 ? static_cast<size_t>(result) : 0;
    if (result == 0) return TlsStatus::kClosedGracefully;
    return size == wanted ? TlsStatus::kOk : TlsStatus::kWouldBlock;
  }
  static TlsStatus Read(void* connection, void* data, size_t& size) {
    auto& self = *static_cast<CountingTransport*>(connection);
    ++self.reads;
    return Moved(platform::NetReceive(self.fd, data, size), size);
  }
  static TlsStatus Write(void* connection, const void* data, size_t& size) {
    auto& self = *static_cast<CountingTransport*>(connection);
    ++self.writes;
    return Moved(platform::NetSend(self.fd, data, size), size);
  }
};

class TlsOverTransport : public Tls {
 protected:
  ~TlsOverTransport() override {
    platform::TlsDestroy(stream_);
    socket.CloseSocket();
  }
  void Open() {
    Connect();
    transport_.fd = socket.fd;
    stream_ = platform::TlsCreate({&transport_, &CountingTransport::Read, &CountingTransport::Write});
    ASSERT_TRUE(stream_);
    ASSERT_TRUE(platform::TlsSetPeerName(stream_, "localhost"));
    TlsStatus status;
    while ((status = platform::TlsHandshake(stream_)) == TlsStatus::kWouldBlock) Wait();
    ASSERT_EQ(status, TlsStatus::kOk) << platform::TlsErrorText(stream_);
    transport_.reads = transport_.writes = 0;
  }
  void Wait() {
    pollfd entry = {socket.fd, static_cast<short>(platform::TlsWantsWrite(stream_) ? POLLOUT : POLLIN), 0};
    ASSERT_EQ(platform::NetPoll(&entry, 1, kEnough), 1);
  }

  CountingTransport transport_;
  platform::TlsStream* stream_ = nullptr;
};

TEST_F(TlsOverTransport, BulkDataTakesFewCalls) {
  const std::string data = TestBytes(8 << 20);
  std::string got;
  ServeSecure([&](TlsTestPeer& peer) {
    while (got.size() < data.size()) got += peer.Receive(65536);
    peer.Send(got);
    peer.Receive(1);
  });
  Open();
  size_t done = 0;
  size_t moved = 0;
  for (; done < data.size(); done += moved) {
    const size_t wanted = std::min(kPiece, data.size() - done);
    const TlsStatus status = platform::TlsWrite(stream_, data.data() + done, wanted, moved);
    if (status == TlsStatus::kWouldBlock) Wait();
    ASSERT_TRUE(status == TlsStatus::kOk || status == TlsStatus::kWouldBlock);
  }
  while (platform::TlsFlush(stream_) == TlsStatus::kWouldBlock) Wait();
  const size_t records = data.size() / 16384;
  EXPECT_LT(static_cast<size_t>(transport_.writes), records / 2) << "Several records travel in one call";
  std::string back(data.size(), '\0');
  for (done = 0; done < data.size(); done += moved) {
    // A receiver of bulk data finds more than a record when it comes.
    while (platform::NetBytesReady(socket.fd) == 0) Wait();
    Pause(1);
    const TlsStatus status = platform::TlsRead(stream_, back.data() + done, data.size() - done, moved);
    ASSERT_TRUE(status == TlsStatus::kOk || status == TlsStatus::kWouldBlock);
  }
  EXPECT_TRUE(back == data);
  EXPECT_LT(static_cast<size_t>(transport_.reads), records / 2);
  EndServer();
}

}  // namespace
