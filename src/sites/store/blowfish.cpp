#include "sites/store/blowfish.h"

#include <cstring>
#include <utility>

namespace {

constexpr int kRounds = 16;
constexpr int kWordsInP = kRounds + 2;

}  // namespace

LBlowFish::LBlowFish() { ResetTables(); }

void LBlowFish::ResetTables() {
  memcpy(P, kBlowfishInitialP, sizeof P);
  memcpy(S, kBlowfishInitialS, sizeof S);
}

void LBlowFish::SetKey(const char* text) {
  const size_t length = strlen(text);
  if (length == 0) return;
  ResetTables();
  size_t next = 0;
  for (uint32_t& word : P) {
    uint32_t part = 0;
    for (int i = 0; i < 4; ++i, next = (next + 1) % length) part = part << 8 | static_cast<unsigned char>(text[next]);
    word ^= part;
  }
  uint32_t left = 0;
  uint32_t right = 0;
  for (int i = 0; i < kWordsInP; i += 2) {
    Blowfish_encipher(left, right);
    P[i] = left;
    P[i + 1] = right;
  }
  for (auto& box : S) {
    for (int i = 0; i < 256; i += 2) {
      Blowfish_encipher(left, right);
      box[i] = left;
      box[i + 1] = right;
    }
  }
}

uint32_t LBlowFish::Round(uint32_t half) const {
  return ((S[0][half >> 24] + S[1][half >> 16 & 0xff]) ^ S[2][half >> 8 & 0xff]) + S[3][half & 0xff];
}

void LBlowFish::Blowfish_encipher(uint32_t& left, uint32_t& right) const {
  for (int i = 0; i < kRounds; ++i) {
    left ^= P[i];
    right ^= Round(left);
    std::swap(left, right);
  }
  std::swap(left, right);  // The last round does not swap.
  right ^= P[kRounds];
  left ^= P[kRounds + 1];
}

void LBlowFish::Blowfish_decipher(uint32_t& left, uint32_t& right) const {
  for (int i = kWordsInP - 1; i > 1; --i) {
    left ^= P[i];
    right ^= Round(left);
    std::swap(left, right);
  }
  std::swap(left, right);
  right ^= P[1];
  left ^= P[0];
}
