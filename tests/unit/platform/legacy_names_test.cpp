#include "platform/qt/legacy_names.h"

#include <gtest/gtest.h>

#include "platform/qt/kept_bytes.h"
#include "platform/qt/text.h"

namespace {

using platform::KeptBytes;
using platform::ShownName;
using platform::ShownText;

TEST(LegacyNames, ANameIsShownByTheEncodingItIsIn) {
  struct {
    const char* name;
    QByteArray bytes;
    const char* shown;
  } rows[] = {
      {"empty", "", ""},
      {"ASCII", "read me~\\.txt", "read me~\\.txt"},
      {"UTF-8", "資料é𠮷.txt", "資料é𠮷.txt"},
      {"CP932", "\x8e\x91\x97\xbf.txt", "資料.txt"},
      {"CP932 with second bytes that are letters and backslashes", "\x83\x65\x83X\x83g\x95\\", "テスト表"},
      {"CP932 in both widths", "\x8e\x91\x97\xbf\xc3\xde\xb0\xc0", "資料ﾃﾞｰﾀ"},
      {"CP932 in half width that is not EUC-JP", "\xc3\xbd\xc4\xb1\xb2.txt", "ﾃｽﾄｱｲ.txt"},
      {"EUC-JP that is all of CP932's half-width katakana", "\xa5\xc6\xa5\xb9\xa5\xc8.txt", "テスト.txt"},
      {"EUC-JP that is katakana and user-defined characters in CP932", "\xbb\xf1\xce\xc1", "資料"},
      {"EUC-JP that is not CP932", "\xc6\xfc\xcb\xdc", "日本"},
      {"EUC-JP with half-width katakana", "\xa4\xa2\x8e\xb1", "あｱ"},
      {"either: CP932 goes first", "\xe0\xa1\xe0\xa2", "爍爐"},
      {"user-defined character", "\xf0\x40", "\xee\x80\x80"},
      {"a path through all encodings", "/家/\x8e\x91\x97\xbf/\xc6\xfc\xcb\xdc/caf\xe9/", "/家/資料/日本/caf\\xE9/"},
      {"Latin-1", "caf\xe9.txt", "caf\\xE9.txt"},
      {"a byte that has no meaning anywhere", "\x83\x65\xff", "\\x83e\\xFF"},
      {"two encodings", "資料\x83\x65\xff", "資料\\x83e\\xFF"},
      {"UTF-8 that was cut", "資料\xe3\x81", "資料\\xE3\\x81"},
      {"control characters", "a\x01\x1a\x1c\x7f\tb", "a␁␚␜␡␉b"},
      {"control characters in CP932", "\x8e\x91\x01\x1a\x1c\x7f", "資␁␚␜␡"},
      {"marks of direction", "a\u202Etxt.exe", "a\uFFFDtxt.exe"},
  };
  for (const auto& row : rows) EXPECT_EQ(ShownName(row.bytes).toStdString(), row.shown) << row.name;
}

TEST(LegacyNames, NamesAreFoundInTheProgramsOwnWords) {
  struct {
    const char* name;
    QByteArray bytes;
    const char* shown;
  } rows[] = {
      {"UTF-8", "資料を削除しています\n続き", "資料を削除しています\n続き"},
      {"a name alone", "\x8e\x91\x97\xbf.txt", "資料.txt"},
      {"in quotes", "ファイル：\n\"\x8e\x91\x97\xbf.txt\"を削除", "ファイル：\n\"資料.txt\"を削除"},
      {"a path", "/\x8e\x91\x97\xbf/\xc6\xfc\xcb\xdcへ", "/資料/日本へ"},
      {"lines of several encodings", "応答: \x8e\x91\x97\xbf\n応答: \xa5\xc6\xa5\xb9\n応答: caf\xe9\n",
       "応答: 資料\n応答: テス\n応答: caf\\xE9\n"},
      {"two names in a line", "\x8e\x91\x97\xbf を \x83\x65\x83X に", "資料 を テス に"},
      {"a sentence that was cut", "ファイル「資料\xe3\x80", "ファイル「資料\\xE3\\x80"},
  };
  for (const auto& row : rows) EXPECT_EQ(ShownText(row.bytes, true).toStdString(), row.shown) << row.name;
}

TEST(LegacyNames, ANameIsNoMarkup) {
  EXPECT_EQ(platform::ToolTipText("a & b <1>.txt"), "a & b <1>.txt");
  EXPECT_EQ(platform::ToolTipText("<b>a</b>.txt"), "<p>&lt;b&gt;a&lt;/b&gt;.txt</p>");
}

TEST(LegacyNames, AFieldStandsForItsBytesUpToWhereItIsChanged) {
  struct {
    const char* bytes;
    const char* typed;  ///< Null if the text is left as it is.
    const char* meant;
  } rows[] = {
      {"", "資料", "資料"},
      {"/資料", nullptr, "/資料"},
      {"/\x8e\x91\x97\xbf", nullptr, "/\x8e\x91\x97\xbf"},
      {"/caf\xe9/a\u202E\x01", nullptr, "/caf\xe9/a\u202E\x01"},
      {"/\x8e\x91\x97\xbf", "", ""},
      {"/\x8e\x91\x97\xbf", "/資料/下", "/\x8e\x91\x97\xbf/下"},
      {"/\x8e\x91\x97\xbf/\x83\x65", "/資料", "/\x8e\x91\x97\xbf"},
      {"/\x8e\x91\x97\xbf/\x83\x65", "/資料室/テ", "/資料室/テ"},
      {"\x8e\x91\x97\xbf.txt", "資料.tx", "資料.tx"},
  };
  for (const auto& row : rows) {
    KeptBytes kept;
    const QString shown = kept.Keep(row.bytes);
    EXPECT_EQ(kept.Of(row.typed ? QString(row.typed) : shown), row.meant) << shown.toStdString();
  }
}

}  // namespace
