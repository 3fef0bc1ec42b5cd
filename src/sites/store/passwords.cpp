#include "sites/store/passwords.h"

#include <cstdint>

#include "sites/store/blowfish.h"
#include "sites/store/settings.h"
#include "support/codecs.h"

namespace {

constexpr const char* kPhrase = "commonphrasekey47";
constexpr size_t kBlock = 8;

// The words of a block are little-endian on every machine: stored texts travel between machines.

uint32_t ReadWord(const unsigned char* bytes) {
  return static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
         static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

void WriteWord(unsigned char* bytes, uint32_t word) {
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<unsigned char>(word >> (8 * i));
}

/// Electronic code book: each block by itself. `size` is a multiple of the block.
void TransformBlocks(unsigned char* data, size_t size,
                     void (LBlowFish::*transform)(uint32_t& left, uint32_t& right) const) {
  LBlowFish cipher;
  cipher.SetKey(kPhrase);
  for (size_t at = 0; at < size; at += kBlock) {
    uint32_t left = ReadWord(data + at);
    uint32_t right = ReadWord(data + at + 4);
    (cipher.*transform)(left, right);
    WriteWord(data + at, left);
    WriteWord(data + at + 4, right);
  }
}

}  // namespace

void LSettingEncrypt(LStringLongTemplate<char>& out, const char* text) {
  const size_t length = text ? strlen(text) : 0;
  if (length == 0) {
    out = "";
    return;
  }
  // The next multiple above the length, so that a zero always ends the text.
  const size_t size = (length + kBlock) / kBlock * kBlock;
  LSizedArray<unsigned char> work;
  work.SetArrayCapacityLarge(size);
  if (work.size == 0) {
    out = "";
    return;
  }
  memset(work.data, 0, size);
  memcpy(work.data, text, length);
  TransformBlocks(work.data, size, &LBlowFish::Blowfish_encipher);
  LBase64Encode(work.data, size, out, 0);
}

void LSettingDecrypt(char (&buffer)[kTextSize]) {
  if (buffer[0] == 0) return;
  LSizedArray<unsigned char> stored;
  LBase64Decode(buffer, strlen(buffer), stored);
  // At most 194 bytes come out of a fixed text; what fills up the last block is zero.
  unsigned char work[kTextSize + kBlock] = {};
  if (stored.size != 0) memcpy(work, stored.data, stored.size);
  TransformBlocks(work, (stored.size + kBlock - 1) / kBlock * kBlock, &LBlowFish::Blowfish_decipher);
  TextCopy(buffer, reinterpret_cast<const char*>(work));
}

bool LUserSettingSetPassword(const char* section, const char* key, const char* text) {
  char protectedKey[kJoinedPathSize];
  TextFormat(protectedKey, "__%s", key);
  LStringLongTemplate<char> stored;
  LSettingEncrypt(stored, text);
  return LUserSettingSetString(section, protectedKey, stored);
}

bool LUserSettingGetPassword(const char* section, const char* key, const char* /*ignored*/, char (&out)[kTextSize]) {
  char protectedKey[kJoinedPathSize];
  TextFormat(protectedKey, "__%s", key);
  if (!_LUserSettingGetString(section, protectedKey, "", out)) return false;
  LSettingDecrypt(out);
  return true;
}
