// Both sides in Japan's time: set before the first server and the first date. The text needs no zone files,
// which a server that has changed its root could not read.
#include <ctime>
#include <stdlib.h>

namespace {

const bool kIsSet = [] {
  setenv("TZ", "JST-9", 1);
  tzset();
  return true;
}();

}  // namespace
