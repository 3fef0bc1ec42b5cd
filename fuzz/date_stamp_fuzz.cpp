// Date stamps of MDTM replies and of facts: any bytes give a time within the years that four digits can name, or leave
// the time as it was.
#include "ftp/facts.h"
#include "fuzz_target.h"
#include "input.h"

ORVANE_FUZZ_TARGET(date_stamp) {
  constexpr int64_t kUntouched = 4242424242424242;
  constexpr int64_t kYear = 366 * 86400;
  FuzzInput input(data, size);
  // A reply's text is no longer.
  const std::string stamp = input.Text().substr(0, kTextSize - 1);
  int64_t time = kUntouched;
  FtpTimeFromStamp(stamp.c_str(), time);
  // Months, days and seconds beyond the calendar are reckoned on: the longest run of seconds is an int's.
  FUZZ_CHECK(time == kUntouched || (time > -12000 * kYear && time < 12000 * kYear));
}
