#include <arpa/inet.h>
#include <cstdlib>

#include "core/sockets.h"

void LIPAddressMultiHomed::Resolve(const char* host) {
  in_addr dotted;
  if (inet_pton(AF_INET, host, &dotted) == 1) {
    addresses[0] = dotted.s_addr;
    count = 1;
    return;
  }
  count = platform::NetResolve(host, addresses);
}

uint16_t SplitPortFromAddr(const char* address, char (&host)[kTextSize], uint16_t defaultPort) {
  TextCopy(host, address);
  char* colon = strchr(host, ':');
  if (!colon) return defaultPort;
  *colon = 0;
  // Too large a number wraps, nothing at all is 0: the rule for a server address.
  return static_cast<uint16_t>(strtoull(colon + 1, nullptr, 10));
}
