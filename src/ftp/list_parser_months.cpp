// Month names of listings, each in the bytes that a server of that language sends.
#include <cstring>

#include "ftp/list_parser.h"
#include "support/strings.h"

// clang-format off
const LFTPListInfoParser::Month LFTPListInfoParser::mMonths[] = {
    // English
    {"jan", 1}, {"feb", 2}, {"mar", 3}, {"apr", 4}, {"may", 5}, {"jun", 6}, {"june", 6}, {"jul", 7}, {"july", 7},
    {"aug", 8}, {"sep", 9}, {"sept", 9}, {"oct", 10}, {"nov", 11}, {"dec", 12},
    // Digits
    {"01", 1}, {"1", 1}, {"02", 2}, {"2", 2}, {"03", 3}, {"3", 3}, {"04", 4}, {"4", 4}, {"05", 5}, {"5", 5},
    {"06", 6}, {"6", 6}, {"07", 7}, {"7", 7}, {"08", 8}, {"8", 8}, {"09", 9}, {"9", 9}, {"10", 10}, {"11", 11},
    {"12", 12},
    // German, ISO 8859-1
    {"mrz", 3}, {"m\xE4" "r", 3}, {"m\xE4" "rz", 3}, {"mai", 5}, {"juni", 6}, {"juli", 7}, {"okt", 10},
    {"dez", 12},
    // French and others, ISO 8859-1
    {"j\xE4" "n", 1}, {"janv", 1}, {"f\xE9" "b", 2}, {"f\xE9" "v", 2}, {"fev", 2}, {"f\xE9" "vr", 2}, {"fevr", 2},
    {"mars", 3}, {"mrs", 3}, {"avr", 4}, {"juin", 6}, {"juil", 7}, {"jui", 7}, {"ao\xFB", 8}, {"ao\xFB" "t", 8},
    {"aout", 8}, {"d\xE9" "c", 12}, {"dec", 12},
    // Italian
    {"gen", 1}, {"mag", 5}, {"giu", 6}, {"lug", 7}, {"ago", 8}, {"set", 9}, {"ott", 10}, {"dic", 12},
    // Spanish
    {"ene", 1}, {"fbro", 2}, {"mzo", 3}, {"ab", 4}, {"abr", 4}, {"agto", 8}, {"sbre", 9}, {"obre", 9}, {"nbre", 9},
    {"dbre", 9},
    // Polish
    {"sty", 1}, {"lut", 2}, {"kwi", 4}, {"maj", 5}, {"cze", 6}, {"lip", 7}, {"sie", 8}, {"wrz", 9}, {"pa", 10},
    {"lis", 11}, {"gru", 12},
    // Russian, Windows-1251
    {"\xFF\xED\xE2", 1}, {"\xF4\xE5\xE2", 2}, {"\xEC\xE0\xF0", 3}, {"\xE0\xEF\xF0", 4}, {"\xEC\xE0\xE9", 5},
    {"\xE8\xFE\xED", 6}, {"\xE8\xFE\xEB", 7}, {"\xE0\xE2\xE3", 8}, {"\xF1\xE5\xED", 9}, {"\xEE\xEA\xF2", 10},
    {"\xED\xEE\xFF", 11}, {"\xE4\xE5\xEA", 12},
    // Dutch and Portuguese
    {"mrt", 3}, {"mei", 5}, {"out", 10},
    // Japanese, Shift JIS
    {"1\x8C\x8E", 1}, {"2\x8C\x8E", 2}, {"3\x8C\x8E", 3}, {"4\x8C\x8E", 4}, {"5\x8C\x8E", 5}, {"6\x8C\x8E", 6},
    {"7\x8C\x8E", 7}, {"8\x8C\x8E", 8}, {"9\x8C\x8E", 9}, {"10\x8C\x8E", 10}, {"11\x8C\x8E", 11},
    {"12\x8C\x8E", 12},
    // The two-byte mark C6 D4
    {"1\xC6\xD4", 1}, {"2\xC6\xD4", 2}, {"3\xC6\xD4", 3}, {"4\xC6\xD4", 4}, {"5\xC6\xD4", 5}, {"6\xC6\xD4", 6},
    {"7\xC6\xD4", 7}, {"8\xC6\xD4", 8}, {"9\xC6\xD4", 9}, {"10\xC6\xD4", 10}, {"11\xC6\xD4", 11},
    {"12\xC6\xD4", 12},
    // Korean, EUC-KR
    {"1\xBF\xF9", 1}, {"2\xBF\xF9", 2}, {"3\xBF\xF9", 3}, {"4\xBF\xF9", 4}, {"5\xBF\xF9", 5}, {"6\xBF\xF9", 6},
    {"7\xBF\xF9", 7}, {"8\xBF\xF9", 8}, {"9\xBF\xF9", 9}, {"10\xBF\xF9", 10}, {"11\xBF\xF9", 11},
    {"12\xBF\xF9", 12},
    // Finnish, ISO 8859-1
    {"tammi", 1}, {"helmi", 2}, {"maalis", 3}, {"huhti", 4}, {"touko", 5}, {"kes\xE4", 6}, {"hein\xE4", 7},
    {"elo", 8}, {"syys", 9}, {"loka", 10}, {"marras", 11}, {"joulu", 12},
    // A month glued to the last digit of its number
    {"jan1", 1}, {"feb2", 2}, {"mar3", 3}, {"apr4", 4}, {"may5", 5}, {"jun6", 6}, {"jul7", 7}, {"aug8", 8},
    {"sep9", 9}, {"sept9", 9}, {"oct0", 10}, {"nov1", 11}, {"dec2", 12},
    {"avg", 8},
    {nullptr, 0}};
// clang-format on

int LFTPListInfoParser::GetMonth(const char* key) {
  for (const Month* row = mMonths; row->number != 0; ++row) {
    if (strcmp(row->key, key) == 0) return row->number;
  }
  return 0;
}

int LFTPListInfoParser::GetMonthOfToken(const char* token, unsigned long length) {
  char key[kTextSize];
  TextCopyPart(key, token, length);
  TextLowerAscii(key);
  return GetMonth(key);
}
