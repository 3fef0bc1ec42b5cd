// What is taken for a server, and what is kept of it.
#include "sites/dialogs/host_name.h"

#include <gtest/gtest.h>
#include <string>

namespace {

constexpr const char* kRefused = "(refused)";

template <typename Scrub>
std::string Scrubbed(Scrub scrub, const std::string& typed) {
  char text[kTextSize];
  TextCopy(text, typed.c_str());
  return scrub(text) ? text : kRefused;
}

struct Row {
  const char* typed;
  const char* kept;
};

TEST(HostName, AnAddressIsFilledToFourParts) {
  const Row rows[] = {
      {"192.168.0.32", "192.168.0.32"},
      {"192.168", "192.168.."},
      {"1.2.3.4.5", "1.2.3.4"},
      {"1.a.b.2.c", "1.2.c."},
      {"3d.example.com", "3d.com.."},
      {"256.0.0.1", kRefused},
      {"1.2.3.99999999999999999999", kRefused},
      {"", "..."},
  };
  for (const Row& row : rows) EXPECT_EQ(Scrubbed(ScrubIpV4Address, row.typed), row.kept) << row.typed;
}

TEST(HostName, AHostIsCutOutOfWhatStandsAroundIt) {
  const Row rows[] = {
      {"ftp.example.com", "ftp.example.com"},
      {"  FTP.Example.COM\n", "ftp.example.com"},
      {"ftp.example.com:2121", "ftp.example.com:2121"},
      {"ftp://anna@ftp.example.com/pub", "ftp.example.com"},
      {"256.0.0.1", "256.0.0.1"},
      {"1host.com", "1host.com.."},
      {"localhost", kRefused},
      {"", kRefused},
      {".com", kRefused},
      {"a .b", kRefused},
      {"サーバー.jp", kRefused},
      {"\xE2\x80\xAE"
       "abc",
       kRefused},
      {"h\xF0\x9F\x98\x80st.example.com", "st.example.com"},
      {"host.exa\nmple", "host.exa"},
  };
  for (const Row& row : rows) EXPECT_EQ(Scrubbed(ScrubIpOrHostName, row.typed), row.kept) << row.typed;
  EXPECT_EQ(Scrubbed(ScrubIpOrHostName, std::string(10000, 'a')), kRefused);
  EXPECT_EQ(Scrubbed(ScrubIpOrHostName, "a." + std::string(10000, 'b')), "a." + std::string(257, 'b'));
}

TEST(HostName, SchemeAndPortAreCutOff) {
  const Row rows[] = {
      {"ftp.example.com", "ftp.example.com"},
      {"ftp://ftp.example.com", "ftp.example.com"},
      {"ftp.example.com:21", "ftp.example.com"},
      {"a://b://c.d:1", "b://c.d"},
      {"ftp://ftp.example.com:2121/pub", "ftp.example.com"},
      {"::", ":"},
  };
  for (const Row& row : rows) {
    char text[kTextSize];
    TextCopy(text, row.typed);
    StripAddressOfProtocolAndPort(text);
    EXPECT_STREQ(text, row.kept) << row.typed;
  }
}

TEST(HostName, ATypedServerIsTakenApart) {
  const struct {
    const char *address, *port;
    const char *shown, *server, *path;
  } rows[] = {
      {"ftp.example.com", "", "ftp.example.com", "ftp.example.com", ""},
      {"ftp.example.com", "990", "ftp.example.com", "ftp.example.com:990", ""},
      {"ftp.example.com:2121", "", "ftp.example.com", "ftp.example.com", ""},
      {"ftp.example.com/pub/a ", "", "ftp.example.com/pub/a", "ftp.example.com", "/pub/a"},
      {"ftp://ftp.example.com:2121/pub", "", "ftp.example.com", "ftp.example.com", "/pub"},
      {"ftp://ftp.example.com:2121/pub", "21", "ftp.example.com", "ftp.example.com:21", "/pub"},
      // The port of the box is put behind the path, and goes with it.
      {"ftp.example.com/pub", "21", "ftp.example.com/pub", "ftp.example.com", "/pub:21"},
  };
  for (const auto& row : rows) {
    const TypedServer typed = ReadTypedServer(row.address, row.port);
    EXPECT_STREQ(typed.szAddress, row.shown) << row.address;
    EXPECT_STREQ(typed.szServer, row.server) << row.address;
    EXPECT_STREQ(typed.szPath, row.path) << row.address;
  }
}

}  // namespace
