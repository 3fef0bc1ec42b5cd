#include "support/log_pane.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {

TEST(LogPane, AppendsLinesOfTimeTabAndText) {
  LStatusWindow pane;
  pane.DisplayStatus("14:03:22", "接続済み", kLogPlain);
  pane.DisplayStatus("14:03:23", "コマンド: PWD", kLogCommand);
  EXPECT_STREQ(pane.Text(), "14:03:22\t接続済み\n14:03:23\tコマンド: PWD\n");
}

TEST(LogPane, CutsALineAt259Bytes) {
  LStatusWindow pane;
  pane.DisplayStatus("00:00:00", std::string(400, 'x').c_str(), kLogPlain);
  EXPECT_EQ(strlen(pane.Text()), 259u);
  EXPECT_EQ(std::string(pane.Text()), "00:00:00\t" + std::string(250, 'x'));
}

/// Fills the pane up to the point where the next line drops the oldest half.
void FillWith(LStatusWindow& pane, const std::string& line) {
  while (strlen(pane.Text()) < LStatusWindow::kBufferSize - 260)
    pane.DisplayStatus("00:00:00", line.c_str(), kLogPlain);
}

TEST(LogPane, DropsTheOldestHalfWhenItIsFull) {
  LStatusWindow pane;
  FillWith(pane, "0123456789");
  const std::string full = pane.Text();
  pane.DisplayStatus("23:59:59", "new", kLogPlain);
  EXPECT_EQ(std::string(pane.Text()), full.substr(2048) + "23:59:59\tnew\n");
}

TEST(LogPane, DropsAtTheStartOfACharacter) {
  for (const char* first : {"", "x", "xx"}) {
    LStatusWindow pane;
    pane.DisplayStatus("00:00:00", first, kLogPlain);
    FillWith(pane, "あいうえおかきくけこ");
    pane.DisplayStatus("23:59:59", "あ", kLogPlain);
    EXPECT_NE(static_cast<unsigned char>(pane.Text()[0]) & 0xC0, 0x80) << "shifted by " << strlen(first);
  }
}

TEST(LogPane, NeverOverflowsWhateverComes) {
  LStatusWindow pane;
  for (int i = 0; i < 500; ++i) {
    pane.DisplayStatus("00:00:00", std::string(static_cast<size_t>(i * 37 % 600), 'y').c_str(), kLogError);
    ASSERT_LT(strlen(pane.Text()), LStatusWindow::kBufferSize);
  }
}

}  // namespace
