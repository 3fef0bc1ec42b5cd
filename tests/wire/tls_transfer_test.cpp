// What TLS adds to a transfer's hazards: an end that throws away what is in flight, and handshakes that are cut.
#include <openssl/bio.h>

#include "ftp/logon.h"
#include "ftp/transfer.h"
#include "support/tls_test_server.h"
#include "wire/data_fixture.h"

namespace {

class SecureUpload : public DataTest {
 protected:
  /// 100 and more are for a patient hour: ORVANE_UPLOAD_REPEATS.
  static int Repeats() {
    const char* wanted = getenv("ORVANE_UPLOAD_REPEATS");
    return wanted ? atoi(wanted) : 10;
  }
  LProcessResult Upload(const std::string& local) {
    ExpectPassive("I");
    ExpectData("STOR r.bin").DataReceive().Reply("226 Done");
    return ProcessFtpUpload(process, session, "r.bin", local.c_str(), nullptr, false);
  }
};
INSTANTIATE_TEST_SUITE_P(Segments, SecureUpload, testing::Values(false), SegmentsName);

/// The server sends session tickets that the client never reads: a client that just closed its end would reset the
/// connection, and with it what the server has not read yet.
TEST_P(SecureUpload, EveryByteArrivesEveryTime) {
  for (const TestCertificate version : {TestCertificate::kTls12, TestCertificate::kGood}) {
    server.UseTls(TestServerContext(version));
    BeginSecure();
    for (const size_t size : {0, 1, 1023, 1024, 1025, 300000, 5000000}) {
      SCOPED_TRACE(std::to_string(size) + (version == TestCertificate::kTls12 ? " under 1.2" : " under 1.3"));
      const std::string content = TestBytes(size);
      const std::string local = folder.Write("l.bin", content);
      for (int i = 0; i < Repeats(); ++i) {
        ASSERT_EQ(Upload(local), LProcessResultOk);
        const std::vector<std::string> received = server.TakeReceived();
        ASSERT_TRUE(received.size() == 1 && received[0] == content) << "upload " << i;
      }
    }
  }
}

/// What a server does with its handshake behind the records that it sends.
enum class Cut { kClose, kReset, kStall };

/// The server's side of a handshake of which only the first `records` records go out. Returns how many it has sent.
int ShakeHandsInPart(TlsTestPeer& peer, TestCertificate certificate, int records, Cut cut) {
  SSL* tls = SSL_new(TestServerContext(certificate));
  BIO* out = BIO_new(BIO_s_mem());
  SSL_set0_rbio(tls, BIO_new_socket(peer.Fd(), BIO_NOCLOSE));
  SSL_set0_wbio(tls, out);
  int sent = 0;
  for (bool goesOn = true; goesOn;) {
    (void)peer.WaitReadable(20000);
    ERR_clear_error();
    const int result = SSL_accept(tls);
    goesOn = result != 1 && SSL_get_error(tls, result) == SSL_ERROR_WANT_READ;
    unsigned char header[5];
    while (sent < records && BIO_read(out, header, sizeof header) == sizeof header) {
      std::string record(header, header + sizeof header);
      std::string body(static_cast<size_t>(header[3]) * 256 + header[4], 0);
      (void)BIO_read(out, body.data(), static_cast<int>(body.size()));
      if (!peer.Send(record + body)) break;
      ++sent;
    }
    // The client waits for more, and so would the handshake.
    if (sent == records) break;
  }
  SSL_free(tls);
  if (cut == Cut::kStall) (void)peer.ReceiveToEnd();
  if (cut == Cut::kReset) peer.Reset();
  return sent;
}

class CutHandshake : public DataTest {};
INSTANTIATE_TEST_SUITE_P(Segments, CutHandshake, testing::Values(false), SegmentsName);

/// More records than any handshake here has: 1.2 sends five or so, 1.3 six and the tickets.
constexpr int kMostRecords = 12;

TEST_P(CutHandshake, OfTheControlConnectionFailsTheLogon) {
  SetTimeouts(kShortMs);
  for (const bool isExplicit : {false, true}) {
    for (const TestCertificate version : {TestCertificate::kTls12, TestCertificate::kGood}) {
      for (const Cut cut : {Cut::kClose, Cut::kReset, Cut::kStall}) {
        bool isWhole = false;
        for (int records = 0; !isWhole; ++records) {
          ASSERT_LT(records, kMostRecords);
          SCOPED_TRACE(testing::Message()
                       << (isExplicit ? "explicit" : "implicit") << ", version " << static_cast<int>(version)
                       << ", cut " << static_cast<int>(cut) << " behind record " << records);
          TlsTestServer peer([&](TlsTestPeer& connection) {
            if (isExplicit) {
              connection.Send("220 Ready\r\n");
              connection.ReceiveLine();
              connection.Send("234 Go\r\n");
            }
            isWhole = ShakeHandsInPart(connection, version, records, cut) < records;
          });
          EXPECT_LT(MillisecondsOf([&] {
                      EXPECT_EQ(ProcessFtpLogOnServer(process, session, peer.Address().c_str(), "anna", "secret", true,
                                                      !isExplicit),
                                LProcessResultFailed);
                    }),
                    static_cast<long>(kAmpleMs));
          session.CloseSocket();
        }
      }
    }
  }
}

TEST_P(CutHandshake, OfADataConnectionLeavesTheClosingReplyToDecide) {
  gFtpTimeouts.dataHandshakeMs = gFtpTimeouts.receiveBlockMs = kShortMs;
  for (const Cut cut : {Cut::kClose, Cut::kReset, Cut::kStall}) {
    for (int records = 0; records < 4; ++records) {
      SCOPED_TRACE(testing::Message() << "cut " << static_cast<int>(cut) << " behind record " << records);
      TlsTestServer peer(
          [&](TlsTestPeer& connection) { ShakeHandsInPart(connection, TestCertificate::kTls12, records, cut); });
      BeginSecure(Session::bHasSize);
      ExpectProtection();
      server.Expect("TYPE I").Reply("200 ok");
      server.Expect("PASV").Reply("227 x (127,0,0,1," + std::to_string(peer.Port() / 256) + "," +
                                  std::to_string(peer.Port() % 256) + ")");
      ExpectSize("r.bin", 5);
      server.Expect("RETR r.bin").Reply("150 Here").Delay(20).Reply("426 Cut");
      EXPECT_EQ(ProcessFtpDownload(process, session, "r.bin", folder.Path("l.bin").c_str(), nullptr),
                LProcessResultFailed);
      EXPECT_FALSE(folder.Has("l.bin"));
      ExpectInStep();
    }
  }
}

}  // namespace
