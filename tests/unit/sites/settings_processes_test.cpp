// Two running copies of the program that save settings at once.
#include <gtest/gtest.h>

#include "support/settings_fixture.h"

namespace {

constexpr int kSaves = 1000;

/// The store lies in memory where there is room for it: thousands of commits would measure the disk, and the
/// two meet each other more often without it.
class SettingsOfTwoCopies : public SettingsFixture {
 protected:
  SettingsOfTwoCopies() {
    char folder[] = "/dev/shm/orvane-preferences-XXXXXX";
    if (!mkdtemp(folder)) return;
    std::filesystem::remove_all(root);
    root = folder;
    setenv("XDG_CONFIG_HOME", folder, 1);
  }

  static std::string Number(int i) { return std::to_string(i); }
};

TEST_F(SettingsOfTwoCopies, LoseNoSave) {
  const auto saveAll = [](const char* section) {
    return [section] {
      bool isSaved = true;
      for (int i = 0; i < kSaves; ++i) {
        isSaved = LUserSettingSetString(section, Number(i).c_str(), Number(i * 7).c_str()) && isSaved;
        // A key that both write holds one of the two values at any time, never neither.
        isSaved = isSaved && LUserSettingSetString("Both", "last", section);
      }
      return isSaved;
    };
  };
  OtherProcess one(saveAll("One"));
  OtherProcess two(saveAll("Two"));
  one.Start();
  two.Start();
  int seen = 0;
  EXPECT_TRUE(one.Finish());
  EXPECT_TRUE(two.Finish());
  for (const char* section : {"One", "Two"}) {
    for (int i = 0; i < kSaves; ++i) {
      const std::string key = std::string(section) + "/" + Number(i);
      if (Raw(key) == Number(i * 7)) ++seen;
    }
  }
  EXPECT_EQ(seen, 2 * kSaves);
  EXPECT_EQ(All().size(), 2u * kSaves + 1);
}

}  // namespace
