// PASV, the only way to a data connection.
#include <cstdlib>

#include "ftp/commands.h"
#include "ftp/timeouts.h"

namespace {

constexpr int kNumbers = 6;  ///< Four of the address and two of the port, high byte first.

/// The numbers behind the bracket and the five commas that follow it; false if one of the marks is missing.
bool ReadNumbers(const char* reply, int (&numbers)[kNumbers]) {
  const char* cursor = reply;
  for (int i = 0; i < kNumbers; ++i) {
    cursor = strchr(cursor, i == 0 ? '(' : ',');
    if (!cursor) return false;
    numbers[i] = static_cast<int>(strtol(++cursor, nullptr, 10));
  }
  return true;
}

}  // namespace

LProcessResult ProcessFtpPassive(LProcessInterface& process, LFileTransferProtocol& session,
                                 char (&address)[kTextSize]) {
  address[0] = 0;
  unsigned short code;
  char text[kTextSize];
  LProcessResult result = ProcessFtpSendCommand(process, session, "PASV\r\n", gFtpTimeouts.sendDirectMs);
  // A send that was stopped has sent nothing: a reply would be awaited in vain, and without a pump.
  if (result == LProcessResultOk) result = ProcessFtpTakeReply(process, session, code, text, gFtpTimeouts.replyMs);
  if (result != LProcessResultOk) return result;
  int numbers[kNumbers];
  if (code != 227 || !ReadNumbers(text, numbers)) return LProcessResultFailed;
  unsigned parts[kNumbers];
  for (int i = 0; i < kNumbers; ++i) parts[i] = static_cast<unsigned>(numbers[i]);
  // The address is the server's word, also where it is a private one behind a router.
  TextFormat(address, "%u.%u.%u.%u:%d", parts[0], parts[1], parts[2], parts[3],
             static_cast<int>(parts[4] * 256 + parts[5]));
  return LProcessResultOk;
}
