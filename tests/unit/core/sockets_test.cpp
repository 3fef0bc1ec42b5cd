#include "core/sockets.h"

#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "stoppable.h"
#include "support/history_file.h"
#include "support/test_files.h"
#include "support/tls_test_server.h"

namespace {

constexpr unsigned kEnough = 10000;  ///< Never reached unless something is wrong.

void Pause(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

LIPAddressWithPort Loopback(uint16_t port) { return {htonl(INADDR_LOOPBACK), htons(port)}; }

/// Holds a server's function back.
class Gate {
 public:
  void Open() { isOpen_ = true; }
  void Wait() const {
    while (!isOpen_) Pause(5);
  }

 private:
  std::atomic<bool> isOpen_ = false;
};

/// A port of this machine at which nobody answers: a listener whose queue is full.
class SilentPort {
 public:
  SilentPort() : listen_fd_(OpenLoopbackSocket(port_, 0)) {
    for (int& fd : clients_) {
      fd = platform::NetOpen();
      (void)platform::NetConnect(fd, htonl(INADDR_LOOPBACK), htons(port_));
    }
    Pause(20);
  }
  ~SilentPort() {
    for (const int fd : clients_) close(fd);
    close(listen_fd_);
  }
  uint16_t Port() const { return port_; }

 private:
  uint16_t port_ = 0;
  int listen_fd_;
  int clients_[4];
};

/// The kinds of socket, so that what holds for each is tested for each.
struct PlainKind {
  static constexpr bool kIsTls = false;
  using Owner = LIPSocketTCP;
  static LProcessResult Connect(LProcessInterface& process, Owner& socket, uint16_t port, unsigned ms) {
    return ProcessConnect(process, socket, Loopback(port), ms);
  }
  static LIPSocketTCPRef Use(Owner& socket) { return socket.Ref(); }
};
struct EngineKind {
  static constexpr bool kIsTls = false;
  using Owner = LSSLSocketTCP;
  static LProcessResult Connect(LProcessInterface& process, Owner& socket, uint16_t port, unsigned ms) {
    return ProcessConnect(process, socket, "127.0.0.1", Loopback(port), ms);
  }
  static LSSLSocketTCP& Use(Owner& socket) { return socket; }
};
struct TlsKind : EngineKind {
  static constexpr bool kIsTls = true;
  static LProcessResult Connect(LProcessInterface& process, Owner& socket, uint16_t port, unsigned ms) {
    const LProcessResult result = EngineKind::Connect(process, socket, port, ms);
    if (result != LProcessResultOk) return result;
    return socket.ConvertSocketToSSLTimeOut(ms) ? LProcessResultOk : LProcessResultFailed;
  }
};

template <typename Kind>
class Sockets : public ::testing::Test {
 protected:
  void Serve(TlsTestServer::Behaviour behaviour) {
    socket.CloseSocket();  // Ends the server before, if there is one.
    server_ = std::make_unique<TlsTestServer>([behaviour = std::move(behaviour)](TlsTestPeer& peer) {
      if (Kind::kIsTls && !peer.StartTls(TestCertificate::kGood)) return;
      behaviour(peer);
    });
  }
  void Connect() { ASSERT_EQ(Kind::Connect(process, socket, server_->Port(), kEnough), LProcessResultOk); }
  /// Waits for the server's function to end: before what it refers to goes.
  void EndServer() {
    socket.CloseSocket();
    server_.reset();
  }
  decltype(auto) Use() { return Kind::Use(socket); }

  struct Line {
    LProcessResult result;
    std::string text;
    bool operator==(const Line&) const = default;
  };
  Line ReceiveLine() {
    char text[kTextSize];
    LFixedLengthStringWriterTemplate<char> writer(text);
    auto&& used = Use();
    const LProcessResult result = ProcessRecvLineToWriter(process, used, writer, kEnough);
    return {result, std::string(text, writer.length)};
  }

  std::unique_ptr<TlsTestServer> server_;  // Outlives the socket, whose close is what ends it.
  Stoppable process;
  typename Kind::Owner socket;
};

using AllKinds = ::testing::Types<PlainKind, EngineKind, TlsKind>;
TYPED_TEST_SUITE(Sockets, AllKinds);

// Connecting

TYPED_TEST(Sockets, ConnectIsNonBlockingAndCloseOnExec) {
  this->Serve([](TlsTestPeer& peer) { peer.ReceiveToEnd(); });
  this->Connect();
  EXPECT_TRUE(fcntl(this->socket.fd, F_GETFL) & O_NONBLOCK);
  EXPECT_TRUE(fcntl(this->socket.fd, F_GETFD) & FD_CLOEXEC);
  int size = 0;
  socklen_t length = sizeof size;
  getsockopt(this->socket.fd, SOL_SOCKET, SO_SNDBUF, &size, &length);
  EXPECT_GE(size, 262144);
}

TYPED_TEST(Sockets, ConnectTimesOutInSlices) {
  SilentPort port;
  const Stopwatch watch;
  EXPECT_EQ(TypeParam::Connect(this->process, this->socket, port.Port(), 500), LProcessResultFailed);
  EXPECT_GE(watch.Ms(), 590);
  EXPECT_EQ(this->process.Questions(), 4) << "One before, and three slices of 200 ms";
  EXPECT_LE(this->process.WidestGapMs(), kWidestSliceMs);
  EXPECT_EQ(this->socket.fd, -1);
}

TYPED_TEST(Sockets, StoppedConnectCloses) {
  SilentPort port;
  for (const int question : {1, 2, 3}) {
    SCOPED_TRACE(question);
    Stoppable stopping(question);
    EXPECT_EQ(TypeParam::Connect(stopping, this->socket, port.Port(), kEnough), LProcessResultStopped);
    EXPECT_EQ(stopping.Questions(), question);
    EXPECT_LE(stopping.WidestGapMs(), kWidestSliceMs);
    EXPECT_EQ(this->socket.fd, -1);
  }
}

TEST(SocketsConnect, ClosesWhatWasOpenAndAClosedOneForgetsThePeersName) {
  TlsTestServer server([](TlsTestPeer& peer) {
    peer.Send("x");
    peer.ReceiveToEnd();
  });
  Stoppable process;
  LSSLSocketTCP socket;
  for (int round = 0; round < 2; ++round) {
    ASSERT_EQ(ProcessConnect(process, socket, "a.test:990", Loopback(server.Port()), kEnough), LProcessResultOk);
    EXPECT_STREQ(socket.szPeerName, "a.test");
  }
  char byte = 0;
  EXPECT_EQ(ProcessRecvBytes(process, socket, &byte, 1, kEnough), LProcessResultOk)
      << "The server has come to the second connection only if the first one closed";
  socket.CloseSocket();
  EXPECT_STREQ(socket.szPeerName, "");
  EXPECT_EQ(socket.fd, -1);
}

TEST(SocketsConnect, APlainSocketTriesTheAddressesInOrderAndTellsNothing) {
  TlsTestServer server([](TlsTestPeer& peer) { peer.ReceiveToEnd(); });
  const LIPAddressMultiHomedWithPort target = {server.Port(), {2, {inet_addr("127.0.0.2"), htonl(INADDR_LOOPBACK)}}};
  const HistoryFile history;
  Stoppable process;
  LIPSocketTCP plain;
  EXPECT_EQ(ProcessConnect(process, plain, target, kEnough), LProcessResultOk);
  EXPECT_EQ(ProcessSendString(process, plain.Ref(), "GET / HTTP/1.1\r\n", kEnough), LProcessResultOk);
  EXPECT_TRUE(history.Lines().empty());
  const LIPAddressMultiHomedWithPort nothing = {server.Port(), {}};
  EXPECT_EQ(ProcessConnect(process, plain, nothing, kEnough), LProcessResultFailed);
}

TEST(SocketsConnect, EventThatClosesTheSocketEndsTheConnectAndTheWait) {
  SilentPort port;
  TlsTestServer server([](TlsTestPeer& peer) { peer.Receive(1); });
  LSSLSocketTCP socket;
  for (const bool isConnected : {false, true}) {
    Stoppable process;
    if (isConnected) {
      ASSERT_EQ(EngineKind::Connect(process, socket, server.Port(), kEnough), LProcessResultOk);
    }
    const int before = process.Questions();
    process.OnQuestion([&] {
      if (process.Questions() == before + 2) socket.CloseSocket();
    });
    EXPECT_EQ(isConnected ? ProcessWaitForDataOrClose(process, socket, kEnough)
                          : ProcessConnect(process, socket, "x", Loopback(port.Port()), kEnough),
              LProcessResultFailed);
    EXPECT_EQ(process.Questions(), before + 2);
  }
}

// Lines

TYPED_TEST(Sockets, LinesOfEveryShape) {
  struct Row {
    const char* name;
    std::vector<std::string> segments;
    std::vector<std::string> lines;
  };
  const std::string long100 = std::string(100, 'a');
  const Row rows[] = {
      {"both ends give the same", {"one\r\ntwo\n"}, {"one", "two"}},
      {"cut into segments", {"220 Re", "ady\r", "\nnext\n"}, {"220 Ready", "next"}},
      {"an inner return stays", {"a\rb\n"}, {"a\rb"}},
      {"a return on which a piece ends goes", {"a\r", "b\n"}, {"ab"}},
      {"an empty line", {"\r\n\n"}, {"", ""}},
      {"longer than a piece", {long100 + "\r\nb\n"}, {long100, "b"}},
      {"48 bytes with the end", {std::string(47, 'c') + "\nd\n"}, {std::string(47, 'c'), "d"}},
      {"48 bytes and then the end", {std::string(48, 'c') + "\nd\n"}, {std::string(48, 'c'), "d"}},
      {"the return is the 48th byte", {std::string(47, 'c') + "\r\nd\n"}, {std::string(47, 'c'), "d"}},
      {"a zero byte inside", {std::string("a\0b\n", 4)}, {std::string("a\0b", 3)}},
      {"cut to the array", {std::string(300, 'e') + "\nf\n"}, {std::string(259, 'e'), "f"}},
      {"the last one has no end", {"first\nabc"}, {"first", "abc"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    this->Serve([&](TlsTestPeer& peer) {
      for (const std::string& segment : row.segments) {
        peer.Send(segment);
        Pause(row.segments.size() > 1 ? 40 : 0);
      }
    });
    this->Connect();
    for (const std::string& line : row.lines) {
      const auto got = this->ReceiveLine();
      EXPECT_EQ(got.result, LProcessResultOk);
      EXPECT_EQ(got.text, line);
    }
    EXPECT_EQ(this->ReceiveLine().result, LProcessResultFailed);
    EXPECT_EQ(this->ReceiveLine().text, "");
    this->EndServer();
  }
}

TYPED_TEST(Sockets, NothingBehindALineIsTaken) {
  this->Serve([](TlsTestPeer& peer) { peer.Send("150 Here\r\nDATA"); });
  this->Connect();
  EXPECT_EQ(this->ReceiveLine().text, "150 Here");
  Pause(20);
  if (!TypeParam::kIsTls) {
    EXPECT_EQ(platform::NetBytesReady(this->socket.fd), 4u);
  }
  char bytes[4];
  size_t received = 0;
  auto&& used = this->Use();
  EXPECT_EQ(ProcessRecvBytes(this->process, used, bytes, 4, received, kEnough), LProcessResultOk);
  EXPECT_EQ(std::string(bytes, 4), "DATA");
}

TEST(SocketsLine, GrowsAndAnyOfSeveralCharactersMayEndARead) {
  const std::string text(5000, 'g');
  TlsTestServer server([&](TlsTestPeer& peer) { peer.Send(text + std::string("\r\n\r\nab\0c;d,e", 12)); });
  Stoppable process;
  LIPSocketTCP socket;
  ASSERT_EQ(ProcessConnect(process, socket, Loopback(server.Port()), kEnough), LProcessResultOk);
  Pause(20);
  LStringLongTemplate<char> line("before");
  EXPECT_EQ(ProcessRecvLine(process, socket.Ref(), line, kEnough), LProcessResultOk);
  EXPECT_EQ(line.Text(), text);
  EXPECT_EQ(ProcessRecvLine(process, socket.Ref(), line, kEnough), LProcessResultOk);
  EXPECT_STREQ(line.Text(), "");
  char buffer[20];
  size_t received = 0;
  EXPECT_EQ(ProcessRecvToCharacter(process, socket.Ref(), buffer, 20, received, ",;", kEnough), LProcessResultOk);
  EXPECT_EQ(std::string(buffer, received), std::string("ab\0c;", 5)) << "A zero byte ends nothing";
  EXPECT_EQ(ProcessRecvToCharacter(process, socket.Ref(), buffer, 1, received, ",;", kEnough), LProcessResultOk);
  EXPECT_EQ(std::string(buffer, received), "d") << "No more than the buffer takes";
  EXPECT_EQ(ProcessRecvBytes(process, socket.Ref(), buffer, 9, received, kEnough), LProcessResultFailed);
  EXPECT_EQ(std::string(buffer, received), ",e") << "A close counts what came";
}

// Bytes

TYPED_TEST(Sockets, RecvReadyGivesWhatIsThere) {
  this->Serve([](TlsTestPeer& peer) {
    peer.Send("abcdef");
    peer.Receive(1);
  });
  this->Connect();
  Pause(20);
  char buffer[20];
  size_t received = 99;
  auto&& used = this->Use();
  EXPECT_EQ(ProcessRecvReady(this->process, used, buffer, 0, received, kEnough), LProcessResultOk);
  EXPECT_EQ(received, 0u);
  EXPECT_EQ(ProcessRecvReady(this->process, used, buffer, 4, received, kEnough), LProcessResultOk);
  EXPECT_EQ(std::string(buffer, received), "abcd");
  EXPECT_EQ(ProcessRecvReady(this->process, used, buffer, 20, received, kEnough), LProcessResultOk);
  EXPECT_EQ(std::string(buffer, received), "ef");
  EXPECT_EQ(ProcessRecvReady(this->process, used, buffer, 20, received, 100), LProcessResultFailed);
  EXPECT_EQ(received, 0u);
}

// Waiting and stopping

TYPED_TEST(Sockets, WaitForDataOrClose) {
  this->Serve([](TlsTestPeer& peer) { peer.Receive(1); });
  this->Connect();
  auto&& used = this->Use();
  const Stopwatch watch;
  EXPECT_EQ(ProcessWaitForDataOrClose(this->process, used, 300), LProcessResultFailed);
  EXPECT_GE(watch.Ms(), 390) << "Two slices of 200 ms";
  EXPECT_LE(this->process.WidestGapMs(), kWidestSliceMs);
  EXPECT_EQ(ProcessSendString(this->process, used, "x", kEnough), LProcessResultOk);
  EXPECT_EQ(ProcessWaitForDataOrClose(this->process, used, kEnough), LProcessResultOk) << "A close ends the wait";
}

TYPED_TEST(Sockets, InvalidDescriptorFailsAtOnceUnlessThereIsNothingToDo) {
  auto&& used = this->Use();
  char byte = 0;
  size_t received = 0;
  const Stopwatch watch;
  EXPECT_EQ(ProcessWaitForDataOrClose(this->process, used, kEnough), LProcessResultFailed);
  EXPECT_EQ(ProcessRecvReady(this->process, used, &byte, 1, received, kEnough), LProcessResultFailed);
  EXPECT_EQ(ProcessRecvToCharacter(this->process, used, &byte, 1, received, "\n", kEnough), LProcessResultFailed);
  EXPECT_EQ(ProcessSend(this->process, used, "x", 1, kEnough), LProcessResultFailed);
  EXPECT_EQ(ProcessSend(this->process, used, "", 0, kEnough), LProcessResultOk);
  Stoppable stopping(1);
  EXPECT_EQ(ProcessSend(stopping, used, "", 0, kEnough), LProcessResultStopped);
  EXPECT_LT(watch.Ms(), 1000);
}

TYPED_TEST(Sockets, StopEndsEveryWaitAndLeavesTheSocketOpen) {
  Gate gate;
  this->Serve([&](TlsTestPeer&) { gate.Wait(); });
  this->Connect();
  auto&& used = this->Use();
  const std::string much(8 << 20, 'm');
  char buffer[4];
  size_t received = 0;
  char text[kTextSize];
  LFixedLengthStringWriterTemplate<char> writer(text);
  const std::vector<std::pair<const char*, std::function<LProcessResult(LProcessInterface&)>>> operations = {
      {"wait", [&](LProcessInterface& p) { return ProcessWaitForDataOrClose(p, used, kEnough); }},
      {"ready", [&](LProcessInterface& p) { return ProcessRecvReady(p, used, buffer, 4, received, kEnough); }},
      {"bytes", [&](LProcessInterface& p) { return ProcessRecvBytes(p, used, buffer, 4, received, kEnough); }},
      {"line", [&](LProcessInterface& p) { return ProcessRecvLineToWriter(p, used, writer, kEnough); }},
      {"send", [&](LProcessInterface& p) { return ProcessSend(p, used, much.data(), much.size(), kEnough); }},
  };
  for (const auto& [name, operation] : operations) {
    for (const int question : {1, 2}) {
      SCOPED_TRACE(std::string(name) + " at question " + std::to_string(question));
      Stoppable stopping(question);
      EXPECT_EQ(operation(stopping), LProcessResultStopped);
      EXPECT_EQ(stopping.Questions(), question);
      EXPECT_LE(stopping.WidestGapMs(), kWidestSliceMs);
      EXPECT_TRUE(this->socket.IsValid());
    }
  }
  gate.Open();
  this->EndServer();
}

// Sending

/// Not under TLS: what that has taken over is pushed out without a limit of time.
TEST(SocketsSend, PeerThatReadsNothingTimesOut) {
  Gate gate;
  TlsTestServer server([&](TlsTestPeer&) { gate.Wait(); });
  Stoppable process;
  LSSLSocketTCP socket;
  ASSERT_EQ(EngineKind::Connect(process, socket, server.Port(), kEnough), LProcessResultOk);
  const std::string much(8 << 20, 'm');
  const Stopwatch watch;
  EXPECT_EQ(ProcessSend(process, socket, much.data(), much.size(), 500), LProcessResultFailed);
  EXPECT_GE(watch.Ms(), 490);
  EXPECT_LE(process.WidestGapMs(), kWidestSliceMs);
  gate.Open();
}

TYPED_TEST(Sockets, SendToAPeerThatHasGoneFailsWithoutASignal) {
  this->Serve([](TlsTestPeer& peer) {
    peer.Receive(1);
    peer.Reset();
  });
  this->Connect();
  auto&& used = this->Use();
  EXPECT_EQ(ProcessSendString(this->process, used, "x", kEnough), LProcessResultOk);
  Pause(50);
  char byte;
  size_t received = 0;
  EXPECT_EQ(ProcessRecvReady(this->process, used, &byte, 1, received, kEnough), LProcessResultFailed);
  signal(SIGPIPE, SIG_DFL);  // A signal would end the test program.
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(ProcessSend(this->process, used, "x", 1, kEnough), LProcessResultFailed);
  }
  signal(SIGPIPE, SIG_IGN);
}

TYPED_TEST(Sockets, LargeTransferBothWaysThroughASlowReader) {
  const std::string data = TestBytes(4 << 20);
  this->Serve([&](TlsTestPeer& peer) {
    std::string got;
    while (got.size() < data.size()) got += peer.Receive(10000);
    peer.Send(got);
  });
  this->Connect();
  auto&& used = this->Use();
  EXPECT_EQ(ProcessSend(this->process, used, data.data(), data.size(), kEnough), LProcessResultOk);
  std::string back(data.size(), '\0');
  size_t received = 0;
  EXPECT_EQ(ProcessRecvBytes(this->process, used, back.data(), back.size(), received, kEnough), LProcessResultOk);
  EXPECT_TRUE(back == data);
  this->EndServer();
}

// One direction

TEST(SocketsAttempt, ShutdownSendEndsOneDirectionOnly) {
  TlsTestServer server([](TlsTestPeer& peer) { peer.Send("got " + peer.ReceiveToEnd()); });
  Stoppable process;
  LSSLSocketTCP socket;
  ASSERT_EQ(EngineKind::Connect(process, socket, server.Port(), kEnough), LProcessResultOk);
  ASSERT_EQ(ProcessSend(process, socket, "all", 3, kEnough), LProcessResultOk);
  EXPECT_TRUE(socket.ShutdownSend());
  char buffer[7];
  EXPECT_EQ(ProcessRecvBytes(process, socket, buffer, 7, kEnough), LProcessResultOk);
  EXPECT_EQ(std::string(buffer, 7), "got all");
}

}  // namespace
