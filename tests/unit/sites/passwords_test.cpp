#include "sites/store/passwords.h"

#include <cstdint>
#include <memory>
#include <openssl/evp.h>
#include <openssl/provider.h>
#include <random>

#include "sites/store/blowfish.h"
#include "support/settings_fixture.h"

namespace {

constexpr const char* kPhrase = "commonphrasekey47";

// The cipher

/// The other implementation: one block with that key, as big-endian words.
class ReferenceBlowfish {
 public:
  ReferenceBlowfish() : legacy(OSSL_PROVIDER_load(nullptr, "legacy")), context(EVP_CIPHER_CTX_new()) {}
  ReferenceBlowfish(const ReferenceBlowfish&) = delete;
  ReferenceBlowfish& operator=(const ReferenceBlowfish&) = delete;
  ~ReferenceBlowfish() {
    EVP_CIPHER_CTX_free(context);
    OSSL_PROVIDER_unload(legacy);
  }

  bool Encipher(const std::string& key, uint32_t& left, uint32_t& right) {
    unsigned char block[8];
    for (int i = 0; i < 4; ++i) {
      block[i] = static_cast<unsigned char>(left >> (24 - 8 * i));
      block[4 + i] = static_cast<unsigned char>(right >> (24 - 8 * i));
    }
    const auto bytes = reinterpret_cast<const unsigned char*>(key.data());
    int size = 0;
    if (EVP_EncryptInit_ex(context, EVP_bf_ecb(), nullptr, nullptr, nullptr) != 1 ||
        EVP_CIPHER_CTX_set_key_length(context, static_cast<int>(key.size())) != 1 ||
        EVP_EncryptInit_ex(context, nullptr, nullptr, bytes, nullptr) != 1 ||
        EVP_CIPHER_CTX_set_padding(context, 0) != 1 || EVP_EncryptUpdate(context, block, &size, block, 8) != 1) {
      return false;
    }
    left = right = 0;
    for (int i = 0; i < 4; ++i) {
      left = left << 8 | block[i];
      right = right << 8 | block[4 + i];
    }
    return size == 8;
  }

 private:
  OSSL_PROVIDER* legacy;
  EVP_CIPHER_CTX* context;
};

TEST(BlowFish, AgreesWithAnotherImplementation) {
  ReferenceBlowfish reference;
  std::mt19937 random(4711);
  LBlowFish cipher;  // Takes each key anew.
  for (int round = 0; round < 60; ++round) {
    std::string key = kPhrase;
    if (round != 0) key.resize(1 + random() % 56);
    for (size_t i = 0; round != 0 && i < key.size(); ++i) key[i] = static_cast<char>(1 + random() % 255);
    const uint32_t plain[2] = {static_cast<uint32_t>(random()), static_cast<uint32_t>(random())};
    uint32_t expected[2] = {plain[0], plain[1]};
    ASSERT_TRUE(reference.Encipher(key, expected[0], expected[1]));
    cipher.SetKey(key.c_str());
    cipher.SetKey("");  // Which is none.
    uint32_t block[2] = {plain[0], plain[1]};
    cipher.Blowfish_encipher(block[0], block[1]);
    EXPECT_EQ(block[0], expected[0]) << "round " << round;
    EXPECT_EQ(block[1], expected[1]) << "round " << round;
    cipher.Blowfish_decipher(block[0], block[1]);
    EXPECT_EQ(block[0], plain[0]) << "round " << round;
    EXPECT_EQ(block[1], plain[1]) << "round " << round;
  }
}

// The stored text

std::string Encrypt(const char* text) {
  LStringLongTemplate<char> out;
  LSettingEncrypt(out, text);
  return out.Text();
}

std::string Decrypt(const std::string& stored) {
  char buffer[kTextSize];
  TextCopy(buffer, stored.c_str());
  LSettingDecrypt(buffer);
  return buffer;
}

std::string Secret(size_t length) {
  std::string secret(length, ' ');
  for (size_t i = 0; i < length; ++i) secret[i] = static_cast<char>('!' + i % 90);
  return secret;
}

TEST(Passwords, AreStoredInWholeBlocksWithRoomForAZero) {
  const struct {
    size_t length, stored;
  } cases[] = {{0, 0}, {1, 12}, {7, 12}, {8, 24}, {15, 24}, {16, 32}, {55, 76}, {56, 90}, {183, 254}, {184, 262}};
  for (const auto& row : cases) EXPECT_EQ(Encrypt(Secret(row.length).c_str()).size(), row.stored) << row.length;
  EXPECT_EQ(Encrypt(nullptr), "");
}

TEST(Passwords, ComeBackUpToTheLengthThatFits) {
  for (size_t length = 0; length <= 183; ++length) {
    const std::string secret = Secret(length);
    EXPECT_EQ(Decrypt(Encrypt(secret.c_str())), secret);
  }
  EXPECT_EQ(Decrypt(Encrypt("パスワード\xff")), "パスワード\xff");
  for (const size_t length : {184, 190, 191}) {
    const std::string secret = Secret(length);
    const std::string back = Decrypt(Encrypt(secret.c_str()));
    EXPECT_NE(back, secret);
    EXPECT_EQ(back.substr(0, 184), secret.substr(0, 184)) << "only the last block is damaged";
  }
}

/// What the other implementation stores for a block of two words, first word and lowest byte first.
std::string StoredBlock(uint32_t left, uint32_t right) {
  EXPECT_TRUE(ReferenceBlowfish().Encipher(kPhrase, left, right));
  unsigned char bytes[8];
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<unsigned char>(left >> (8 * i));
  for (int i = 0; i < 4; ++i) bytes[4 + i] = static_cast<unsigned char>(right >> (8 * i));
  unsigned char text[16];
  EVP_EncodeBlock(text, bytes, 8);
  return reinterpret_cast<const char*>(text);
}

TEST(Passwords, HaveLittleEndianWordsAndAnyPaddingBehindTheirZero) {
  EXPECT_EQ(Encrypt("secret"), StoredBlock(0x72636573, 0x00007465));
  const std::string stored = StoredBlock(0x72636573, 0xaa007465);
  EXPECT_EQ(Decrypt(stored), "secret");
  EXPECT_EQ(Decrypt("\r\n " + stored.substr(0, 5) + "-_%" + stored.substr(5) + "==="), "secret");
}

TEST(Passwords, GiveGarbageForGarbageWithoutHarm) {
  std::mt19937 random(5);
  for (int round = 0; round < 500; ++round) {
    std::string stored(random() % 259 + 1, ' ');
    for (char& c : stored) c = static_cast<char>(round % 2 ? 1 + random() % 255 : "ABCabc019+/"[random() % 11]);
    EXPECT_LE(Decrypt(stored).size(), 200u);
  }
  EXPECT_EQ(Decrypt("===="), "");
}

class StoredPasswords : public SettingsFixture {};

TEST_F(StoredPasswords, LieUnderTheProtectedKey) {
  LUserSettingSetString("Settings", "ProxyPassword", "plain");
  EXPECT_TRUE(LUserSettingSetPassword("Settings", "ProxyPassword", "secret"));
  EXPECT_EQ(Raw("Settings/__ProxyPassword"), Encrypt("secret"));
  EXPECT_EQ(ReadFile(StoreFile()).find("secret"), std::string::npos);
  char out[kTextSize] = "before";
  EXPECT_TRUE(LUserSettingGetPassword("Settings", "ProxyPassword", "ignored", out));
  EXPECT_STREQ(out, "secret");

  LUserSettingDeleteItem("Settings", "ProxyPassword");
  EXPECT_TRUE(All().empty());
  EXPECT_FALSE(LUserSettingGetPassword("Settings", "ProxyPassword", "ignored", out));
  EXPECT_STREQ(out, "");

  EXPECT_TRUE(LUserSettingSetPassword("Settings", "ProxyPassword", ""));
  EXPECT_EQ(Raw("Settings/__ProxyPassword"), "");
  EXPECT_TRUE(LUserSettingGetPassword("Settings", "ProxyPassword", "ignored", out));
  EXPECT_STREQ(out, "");
}

}  // namespace
