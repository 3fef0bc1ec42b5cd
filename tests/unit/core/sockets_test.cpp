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

/// The engine's socket, plain and under TLS: what holds for the one holds for the other.
class Sockets : public ::testing::TestWithParam<bool> {
 protected:
  bool IsTls() const { return GetParam(); }
  void Serve(TlsTestServer::Behaviour behaviour) {
    socket.CloseSocket();  // Ends the server before, if there is one.
    server_ = std::make_unique<TlsTestServer>([this, behaviour = std::move(behaviour)](TlsTestPeer& peer) {
      if (IsTls() && !peer.StartTls(TestCertificate::kGood)) return;
      behaviour(peer);
    });
  }
  LProcessResult ConnectTo(LProcessInterface& waiting, uint16_t port, unsigned ms) {
    const LProcessResult result = ProcessConnect(waiting, socket, "127.0.0.1", Loopback(port), ms);
    if (result != LProcessResultOk || !IsTls()) return result;
    return socket.ConvertSocketToSSLTimeOut(ms) ? LProcessResultOk : LProcessResultFailed;
  }
  void Connect() { ASSERT_EQ(ConnectTo(process, server_->Port(), kEnough), LProcessResultOk); }
  /// Waits for the server's function to end: before what it refers to goes.
  void EndServer() {
    socket.CloseSocket();
    server_.reset();
  }

  struct Line {
    LProcessResult result;
    std::string text;
  };
  Line ReceiveLine() {
    char text[kTextSize];
    LFixedLengthStringWriterTemplate<char> writer(text);
    const LProcessResult result = ProcessRecvLineToWriter(process, socket, writer, kEnough);
    return {result, std::string(text, writer.length)};
  }

  std::unique_ptr<TlsTestServer> server_;  // Outlives the socket, whose close is what ends it.
  Stoppable process;
  LSSLSocketTCP socket;
};

INSTANTIATE_TEST_SUITE_P(Kinds, Sockets, ::testing::Bool(),
                         [](const auto& kind) { return kind.param ? "Tls" : "Plain"; });

// Connecting

TEST_P(Sockets, ConnectIsNonBlockingAndCloseOnExec) {
  Serve([](TlsTestPeer& peer) { peer.ReceiveToEnd(); });
  Connect();
  EXPECT_TRUE(fcntl(socket.fd, F_GETFL) & O_NONBLOCK);
  EXPECT_TRUE(fcntl(socket.fd, F_GETFD) & FD_CLOEXEC);
  int size = 0;
  socklen_t length = sizeof size;
  getsockopt(socket.fd, SOL_SOCKET, SO_SNDBUF, &size, &length);
  EXPECT_GE(size, 262144);
}

TEST_P(Sockets, ConnectTimesOutInSlices) {
  SilentPort port;
  const Stopwatch watch;
  EXPECT_EQ(ConnectTo(process, port.Port(), 500), LProcessResultFailed);
  EXPECT_GE(watch.Ms(), 590);
  EXPECT_EQ(process.Questions(), 4) << "One before, and three slices of 200 ms";
  EXPECT_LE(process.WidestGapMs(), kWidestSliceMs);
  EXPECT_EQ(socket.fd, -1);
}

TEST_P(Sockets, StoppedConnectCloses) {
  SilentPort port;
  for (const int question : {1, 2, 3}) {
    SCOPED_TRACE(question);
    Stoppable stopping(question);
    EXPECT_EQ(ConnectTo(stopping, port.Port(), kEnough), LProcessResultStopped);
    EXPECT_EQ(stopping.Questions(), question);
    EXPECT_LE(stopping.WidestGapMs(), kWidestSliceMs);
    EXPECT_EQ(socket.fd, -1);
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
      ASSERT_EQ(ProcessConnect(process, socket, "x", Loopback(server.Port()), kEnough), LProcessResultOk);
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

TEST_P(Sockets, LinesOfEveryShape) {
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
    Serve([&](TlsTestPeer& peer) {
      for (const std::string& segment : row.segments) {
        peer.Send(segment);
        Pause(row.segments.size() > 1 ? 40 : 0);
      }
    });
    Connect();
    for (const std::string& line : row.lines) {
      const auto got = ReceiveLine();
      EXPECT_EQ(got.result, LProcessResultOk);
      EXPECT_EQ(got.text, line);
    }
    EXPECT_EQ(ReceiveLine().result, LProcessResultFailed);
    EXPECT_EQ(ReceiveLine().text, "");
    EndServer();
  }
}

TEST_P(Sockets, NothingBehindALineIsTaken) {
  Serve([](TlsTestPeer& peer) { peer.Send("150 Here\r\nDATA"); });
  Connect();
  EXPECT_EQ(ReceiveLine().text, "150 Here");
  Pause(20);
  if (!IsTls()) {
    EXPECT_EQ(platform::NetBytesReady(socket.fd), 4u);
  }
  char bytes[4];
  size_t received = 0;
  EXPECT_EQ(ProcessRecvBytes(process, socket, bytes, 4, received, kEnough), LProcessResultOk);
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

// Waiting and stopping

TEST_P(Sockets, WaitForDataOrClose) {
  Serve([](TlsTestPeer& peer) { peer.Receive(1); });
  Connect();
  const Stopwatch watch;
  EXPECT_EQ(ProcessWaitForDataOrClose(process, socket, 300), LProcessResultFailed);
  EXPECT_GE(watch.Ms(), 390) << "Two slices of 200 ms";
  EXPECT_LE(process.WidestGapMs(), kWidestSliceMs);
  EXPECT_EQ(ProcessSendString(process, socket, "x", kEnough), LProcessResultOk);
  EXPECT_EQ(ProcessWaitForDataOrClose(process, socket, kEnough), LProcessResultOk) << "A close ends the wait";
}

TEST_P(Sockets, InvalidDescriptorFailsAtOnceUnlessThereIsNothingToDo) {
  char byte = 0;
  size_t received = 0;
  const Stopwatch watch;
  EXPECT_EQ(ProcessWaitForDataOrClose(process, socket, kEnough), LProcessResultFailed);
  EXPECT_EQ(ProcessRecvReady(process, socket, &byte, 1, received, kEnough), LProcessResultFailed);
  EXPECT_EQ(ProcessRecvToCharacter(process, socket, &byte, 1, received, "\n", kEnough), LProcessResultFailed);
  EXPECT_EQ(ProcessSend(process, socket, "x", 1, kEnough), LProcessResultFailed);
  EXPECT_EQ(ProcessSend(process, socket, "", 0, kEnough), LProcessResultOk);
  Stoppable stopping(1);
  EXPECT_EQ(ProcessSend(stopping, socket, "", 0, kEnough), LProcessResultStopped);
  EXPECT_LT(watch.Ms(), 1000);
}

TEST_P(Sockets, StopEndsEveryWaitAndLeavesTheSocketOpen) {
  Gate gate;
  Serve([&](TlsTestPeer&) { gate.Wait(); });
  Connect();
  const std::string much(8 << 20, 'm');
  char buffer[4];
  size_t received = 0;
  char text[kTextSize];
  LFixedLengthStringWriterTemplate<char> writer(text);
  const std::vector<std::pair<const char*, std::function<LProcessResult(LProcessInterface&)>>> operations = {
      {"wait", [&](LProcessInterface& p) { return ProcessWaitForDataOrClose(p, socket, kEnough); }},
      {"ready", [&](LProcessInterface& p) { return ProcessRecvReady(p, socket, buffer, 4, received, kEnough); }},
      {"bytes", [&](LProcessInterface& p) { return ProcessRecvBytes(p, socket, buffer, 4, received, kEnough); }},
      {"line", [&](LProcessInterface& p) { return ProcessRecvLineToWriter(p, socket, writer, kEnough); }},
      {"send", [&](LProcessInterface& p) { return ProcessSend(p, socket, much.data(), much.size(), kEnough); }},
  };
  for (const auto& [name, operation] : operations) {
    for (const int question : {1, 2}) {
      SCOPED_TRACE(std::string(name) + " at question " + std::to_string(question));
      Stoppable stopping(question);
      EXPECT_EQ(operation(stopping), LProcessResultStopped);
      EXPECT_EQ(stopping.Questions(), question);
      EXPECT_LE(stopping.WidestGapMs(), kWidestSliceMs);
      EXPECT_TRUE(socket.IsValid());
    }
  }
  gate.Open();
  EndServer();
}

// Sending

/// Not under TLS: what that has taken over is pushed out without a limit of time.
TEST(SocketsSend, PeerThatReadsNothingTimesOut) {
  Gate gate;
  TlsTestServer server([&](TlsTestPeer&) { gate.Wait(); });
  Stoppable process;
  LSSLSocketTCP socket;
  ASSERT_EQ(ProcessConnect(process, socket, "x", Loopback(server.Port()), kEnough), LProcessResultOk);
  const std::string much(8 << 20, 'm');
  const Stopwatch watch;
  EXPECT_EQ(ProcessSend(process, socket, much.data(), much.size(), 500), LProcessResultFailed);
  EXPECT_GE(watch.Ms(), 490);
  EXPECT_LE(process.WidestGapMs(), kWidestSliceMs);
  gate.Open();
}

TEST_P(Sockets, SendToAPeerThatHasGoneFailsWithoutASignal) {
  Serve([](TlsTestPeer& peer) {
    peer.Receive(1);
    peer.Reset();
  });
  Connect();
  EXPECT_EQ(ProcessSendString(process, socket, "x", kEnough), LProcessResultOk);
  Pause(50);
  char byte;
  size_t received = 0;
  EXPECT_EQ(ProcessRecvReady(process, socket, &byte, 1, received, kEnough), LProcessResultFailed);
  signal(SIGPIPE, SIG_DFL);  // A signal would end the test program.
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(ProcessSend(process, socket, "x", 1, kEnough), LProcessResultFailed);
  }
  signal(SIGPIPE, SIG_IGN);
}

TEST_P(Sockets, LargeTransferBothWaysThroughASlowReader) {
  const std::string data = TestBytes(4 << 20);
  Serve([&](TlsTestPeer& peer) {
    std::string got;
    while (got.size() < data.size()) got += peer.Receive(10000);
    peer.Send(got);
  });
  Connect();
  EXPECT_EQ(ProcessSend(process, socket, data.data(), data.size(), kEnough), LProcessResultOk);
  std::string back(data.size(), '\0');
  size_t received = 0;
  EXPECT_EQ(ProcessRecvBytes(process, socket, back.data(), back.size(), received, kEnough), LProcessResultOk);
  EXPECT_TRUE(back == data);
  EndServer();
}

// One direction

TEST(SocketsAttempt, ShutdownSendEndsOneDirectionOnly) {
  TlsTestServer server([](TlsTestPeer& peer) { peer.Send("got " + peer.ReceiveToEnd()); });
  Stoppable process;
  LSSLSocketTCP socket;
  ASSERT_EQ(ProcessConnect(process, socket, "x", Loopback(server.Port()), kEnough), LProcessResultOk);
  ASSERT_EQ(ProcessSend(process, socket, "all", 3, kEnough), LProcessResultOk);
  EXPECT_TRUE(socket.ShutdownSend());
  char buffer[7];
  EXPECT_EQ(ProcessRecvBytes(process, socket, buffer, 7, kEnough), LProcessResultOk);
  EXPECT_EQ(std::string(buffer, 7), "got all");
}

}  // namespace
