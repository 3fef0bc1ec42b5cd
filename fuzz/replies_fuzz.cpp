// Replies from a hostile server, one after another until the stream ends: as single replies, and as the lines of a long
// one. Both readers take the same bytes off the connection, and never one behind a line's end.
#include <cstring>

#include "fuzz_target.h"
#include "input.h"
#include "wire_input.h"

namespace {

/// A server that says so much is another test's.
constexpr size_t kMostBytes = 16384;

size_t CountLines(const std::string& bytes) {
  size_t lines = 1;
  for (const char c : bytes) lines += c == '\n';
  return lines;
}

void CheckReplies(const std::string& bytes) {
  FuzzSession session(bytes);
  LProcessInterfaceVoid process;
  size_t replies = 0;
  unsigned short code = 1;
  char text[kTextSize];
  while (ProcessFtpWaitForReplyTimeout(process, session, code, text, 1000) == LProcessResultOk) {
    FUZZ_CHECK(memchr(text, 0, sizeof text) != nullptr);
    FUZZ_CHECK(strlen(text) <= 255 && !strpbrk(text, "\r\n"));
    ++replies;
  }
  FUZZ_CHECK(code == 0 && text[0] == 0);
  FUZZ_CHECK(replies <= CountLines(bytes));
}

void CheckLines(const std::string& bytes) {
  FuzzSession session(bytes);
  LProcessInterfaceVoid process;
  LStringListTemplate<char> lines;
  const LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, "FEAT\r\n", lines);
  FUZZ_CHECK(result != LProcessResultStopped);
  FUZZ_CHECK(lines.count <= CountLines(bytes));
  for (size_t i = 0; i < lines.count; ++i)
    FUZZ_CHECK(lines.strings[i][0] != 0 || bytes.find('\0') != std::string::npos);
}

}  // namespace

ORVANE_FUZZ_TARGET(replies) {
  FuzzInput input(data, size);
  const std::string bytes = input.Rest().substr(0, kMostBytes);
  CheckReplies(bytes);
  CheckLines(bytes);
}
