#include "ftp/line_pieces.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

std::vector<std::string> PiecesOf(const std::string& bytes) {
  FtpLinePieces pieces(bytes.data(), bytes.size());
  std::vector<std::string> all;
  char piece[kTextSize];
  while (pieces.Next(piece)) all.emplace_back(piece);
  return all;
}

TEST(LinePieces, EndAtLineEndsAndZeroBytes) {
  using Pieces = std::vector<std::string>;
  const std::string zero(1, '\0');
  const struct {
    std::string bytes;
    Pieces pieces;
  } rows[] = {
      {"", {}},
      {"a\nb", {"a", "b"}},
      {"a\r\nb\n\rc", {"a", "b", "c"}},
      {"a\n\nb\r\rc", {"a", "", "b", "", "c"}},
      {"a\r\n\r\nb", {"a", "", "b"}},
      {"a" + zero + "b" + zero, {"a", "b"}},
      {"a\r" + zero + "\nb", {"a", "", "", "b"}},
      {"\n", {""}},
      {std::string(300, 'x') + "\nnext", {std::string(259, 'x'), "next"}},
  };
  for (const auto& row : rows) EXPECT_EQ(PiecesOf(row.bytes), row.pieces) << testing::PrintToString(row.bytes);
}

}  // namespace
