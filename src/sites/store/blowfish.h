// The Blowfish cipher as its author published it: 16 rounds on blocks of two 32-bit words.
//
// A plain object of about 4 KB for the stack of whoever needs it; nothing is shared but the constant tables.
#pragma once

#include <cstdint>

class LBlowFish {
 public:
  /// Unkeyed: the tables hold nothing but the digits of pi.
  LBlowFish();

  /// The key is the text's bytes, without its terminator. An empty text leaves the object as it is.
  void SetKey(const char* text);
  void Blowfish_encipher(uint32_t& left, uint32_t& right) const;
  void Blowfish_decipher(uint32_t& left, uint32_t& right) const;

 private:
  uint32_t Round(uint32_t half) const;
  void ResetTables();

  uint32_t P[18];
  uint32_t S[4][256];
};

/// What the tables begin with: the fractional hexadecimal digits of pi.
extern const uint32_t kBlowfishInitialP[18];
extern const uint32_t kBlowfishInitialS[4][256];
