// Replies to PASV: an address made of numbers, or none.
#include <cstdio>
#include <cstring>

#include "fuzz_target.h"
#include "input.h"
#include "wire_input.h"

ORVANE_FUZZ_TARGET(passive_reply) {
  FuzzInput input(data, size);
  const std::string text = input.Text().substr(0, 4096);
  FuzzSession session("227 " + text + "\r\n");
  LProcessInterfaceVoid process;
  char address[kTextSize] = "former";
  const LProcessResult result = ProcessFtpPassive(process, session, address);
  if (result != LProcessResultOk) {
    FUZZ_CHECK(address[0] == 0);
    return;
  }
  FUZZ_CHECK(address[strspn(address, "0123456789.:-")] == 0);
  const char* colon = strchr(address, ':');
  FUZZ_CHECK(colon != nullptr && strchr(colon + 1, ':') == nullptr);
  FUZZ_CHECK(strlen(address) <= 4 * 10 + 3 + 1 + 11);
}
