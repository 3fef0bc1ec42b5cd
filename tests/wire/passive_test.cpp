#include "wire/wire_fixture.h"

namespace {

class Passive : public WireTest {
 protected:
  LProcessResult Ask() { return ProcessFtpPassive(process, session, address); }

  char address[kTextSize] = "former";
};
WIRE_SUITE(Passive);

TEST_P(Passive, GivesTheAddressAsTheServerToldIt) {
  const struct {
    const char* reply;
    const char* address;  ///< Null where the reply is no good.
  } rows[] = {
      {"227 Entering Passive Mode (192,168,1,2,195,80)", "192.168.1.2:50000"},
      {"227 =(10, 0, 0, 1, 255, 255)", "10.0.0.1:65535"},
      {"227 ok (1,2,3,4,5,6,7,8)", "1.2.3.4:1286"},
      {"227 (300,2,3,4,1,1)", "300.2.3.4:257"},
      {"227 10,0,0,1,0,21", nullptr},
      {"227 (10,0,0,1,21)", nullptr},
      {"227 ,,,,,(1", nullptr},
      {"229 Entering Extended Passive Mode (|||6446|)", nullptr},
      {"250 (10,0,0,1,0,21)", nullptr},
  };
  Connect();
  for (const auto& row : rows) {
    SCOPED_TRACE(row.reply);
    server.Expect("PASV").Reply(row.reply);
    EXPECT_EQ(Ask(), row.address ? LProcessResultOk : LProcessResultFailed);
    EXPECT_STREQ(address, row.address ? row.address : "");
  }
}

TEST_P(Passive, WaitsForAReplyAlsoWhenTheStopCameBeforeTheCommand) {
  Connect();
  gFtpTimeouts.drainReplyMs = kShortMs;
  process.StopNow();
  EXPECT_EQ(Ask(), LProcessResultStopped);
  EXPECT_THAT(server.Commands(), testing::IsEmpty());
}

}  // namespace
