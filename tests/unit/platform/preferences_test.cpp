#include "platform/preferences.h"

#include <random>

#include "support/file_trouble.h"
#include "support/preference_folder.h"

namespace {

constexpr const char* kDomain = "com.example.one";
constexpr const char* kAbsent = "(absent)";

std::string Get(const char* key, const char* domain = kDomain) {
  std::string value = kAbsent;
  platform::PreferencesCopyValue(domain, key, [&value](const char* text) { value = text; });
  return value;
}

bool Set(const char* key, const char* value, const char* domain = kDomain) {
  return platform::PreferencesSetValue(domain, key, value) && platform::PreferencesSynchronize(domain);
}

std::vector<std::string> Keys(const char* domain = kDomain) {
  std::vector<std::string> keys;
  platform::PreferencesCopyKeyList(domain, [&keys](const char* key) { keys.emplace_back(key); });
  return keys;
}

class Preferences : public PreferenceFolder {
 protected:
  /// As after a restart of the program.
  static void Reopen() { platform::PreferencesClose(); }
};

TEST_F(Preferences, KeepsAnyTextUnderAnyKey) {
  const std::pair<std::string, std::string> cases[] = {
      {"Settings/FtpRetry", "3"},
      {"Settings/Empty", ""},
      {"FTPAccounts/サイト１/", "サイト１"},
      {"a//b///c", "doubled slashes"},
      {"/leading", "x"},
      {"", "the empty key"},
      {"not\xff\xfeUTF-8/\x80", "\xc3\x28\xa0\xa1\xed\xa0\x80"},
      {"line\nend'\"%_", "one\r\ntwo"},
      {"long/" + std::string(3000, 'k'), std::string(259, 'v')},
      {"huge", std::string(10 << 20, 'h') + "end"},
  };
  for (const auto& [key, value] : cases) EXPECT_TRUE(Set(key.c_str(), value.c_str()));
  for (const bool isReopened : {false, true}) {
    if (isReopened) Reopen();
    for (const auto& [key, value] : cases) EXPECT_TRUE(Get(key.c_str()) == value) << key.substr(0, 40);
    EXPECT_EQ(Keys().size(), std::size(cases));
  }
  for (const auto& [key, value] : cases) EXPECT_TRUE(Set(key.c_str(), nullptr));
  Reopen();
  EXPECT_TRUE(Keys().empty());
}

TEST_F(Preferences, TellsKeysApartByCaseAndDomainsByName) {
  Set("Key", "upper");
  Set("key", "lower");
  Set("Key", "other", "com.example.two");
  EXPECT_EQ(Get("Key"), "upper");
  EXPECT_EQ(Get("key"), "lower");
  EXPECT_EQ(Get("Key", "com.example.two"), "other");
  EXPECT_EQ(Keys(), (std::vector<std::string>{"Key", "key"}));
  EXPECT_FALSE(platform::PreferencesCopyKeyList("com.example.three", [](const char*) {}));
}

TEST_F(Preferences, SetsAndCopiesMany) {
  const char* const keys[] = {"a", "b", "c"};
  const char* const values[] = {"1", nullptr, "3"};
  Set("b", "to be removed");
  EXPECT_TRUE(platform::PreferencesSetMultiple(kDomain, keys, values, 3));
  EXPECT_TRUE(platform::PreferencesSynchronize(kDomain));
  Reopen();
  const char* const asked[] = {"c", "b", "a", nullptr};
  std::string seen;
  EXPECT_TRUE(platform::PreferencesCopyMultiple(
      kDomain, asked, [&seen](const char* key, const char* value) { seen += std::string(key) + value + " "; }));
  EXPECT_EQ(seen, "c3 a1 ");
}

TEST_F(Preferences, DropsWhatWasNotSynchronised) {
  Set("key", "old");
  platform::PreferencesSetValue(kDomain, "key", "new");
  platform::PreferencesSetValue(kDomain, "more", "new");
  EXPECT_EQ(Get("key"), "new");
  EXPECT_EQ(Keys().size(), 2u);
  Reopen();
  EXPECT_EQ(Get("key"), "old");
  EXPECT_EQ(Keys().size(), 1u);
}

TEST_F(Preferences, LetsVisitorsChangeTheStore) {
  for (const char* key : {"a", "b", "c"}) Set(key, "x");
  int visits = 0;
  platform::PreferencesCopyKeyList(kDomain, [&visits](const char* key) {
    ++visits;
    Set(key, nullptr);
    Set((std::string(key) + "2").c_str(), "y");
  });
  EXPECT_EQ(visits, 3);
  EXPECT_EQ(Keys(), (std::vector<std::string>{"a2", "b2", "c2"}));
}

TEST_F(Preferences, AreForTheUserAlone) {
  const mode_t before = umask(0);
  Set("key", "value");
  EXPECT_EQ(ModeOf(StoreFolder()), 0700u);
  for (const std::string& file : FilesNamed("preferences.sqlite")) EXPECT_EQ(ModeOf(file), 0600u) << file;

  Reopen();
  chmod(StoreFolder().c_str(), 0755);
  chmod(StoreFile().c_str(), 0644);
  EXPECT_EQ(Get("key"), "value");
  EXPECT_EQ(ModeOf(StoreFolder()), 0700u);
  EXPECT_EQ(ModeOf(StoreFile()), 0600u);
  umask(before);
}

TEST_F(Preferences, MakeTheWholePathOfFolders) {
  setenv("XDG_CONFIG_HOME", (root + "/not/there/yet").c_str(), 1);
  Reopen();
  EXPECT_TRUE(Set("key", "value"));
  EXPECT_EQ(ModeOf(root + "/not/there/yet/orvaneftp/preferences.sqlite"), 0600u);
}

TEST_F(Preferences, GoOnWhenTheFileIsRemovedMeanwhile) {
  Set("key", "old");
  std::filesystem::remove_all(StoreFolder());
  EXPECT_EQ(Get("key"), kAbsent);
  EXPECT_TRUE(Keys().empty());
  EXPECT_TRUE(Set("key", "new"));
  Reopen();
  EXPECT_EQ(Get("key"), "new");
}

// Walks

/// The next name as a scan of an unordered list finds it.
std::string NextNameByScan(const std::vector<std::string>& keys, const std::string& prefix,
                           const std::string& previous) {
  std::string out;
  for (const std::string& key : keys) {
    if (strncasecmp(key.c_str(), prefix.c_str(), prefix.size()) != 0) continue;
    std::string name = key.substr(prefix.size());
    name = name.substr(0, name.find('/'));
    if (name.empty() || strcasecmp(previous.c_str(), name.c_str()) >= 0) continue;
    if (out.empty() || strcasecmp(out.c_str(), name.c_str()) > 0) out = name;
  }
  return out;
}

TEST_F(Preferences, FindTheNextNameAsAScanWould) {
  // Bytes around "/" in the order of bytes, letters of both cases, what lies between the cases, and beyond
  // ASCII.
  const std::string letters = "//// aAbBzZ_-.!0\x01\xe3~";
  std::mt19937 random(20240501);
  const auto text = [&](size_t longest) {
    std::string made(random() % (longest + 1), ' ');
    for (char& c : made) c = letters[random() % letters.size()];
    return made;
  };
  for (int round = 0; round < 40; ++round) {
    const std::string domain = "com.example.walk" + std::to_string(round);
    std::vector<std::string> keys;
    for (size_t count = random() % 40; keys.size() < count;) {
      const std::string key = text(7);
      if (std::find(keys.begin(), keys.end(), key) != keys.end()) continue;
      keys.push_back(key);
      platform::PreferencesSetValue(domain.c_str(), key.c_str(), "");
      if (random() % 2) Keys(domain.c_str());  // Sometimes the index is there before the key, sometimes after.
    }
    for (int question = 0; question < 100; ++question) {
      const std::string prefix = text(3);
      std::string previous = text(3);
      previous = previous.substr(0, previous.find('/'));
      char next[platform::kFixedText];
      const bool isFound = platform::PreferencesNextName(domain.c_str(), prefix.c_str(), previous.c_str(), next);
      const std::string expected = NextNameByScan(keys, prefix, previous);
      EXPECT_EQ(isFound, !expected.empty());
      ASSERT_STRCASEEQ(next, expected.c_str()) << "prefix " << prefix << ", previous " << previous;
    }
  }
}

TEST_F(Preferences, VisitAPrefixFromAPosition) {
  for (const char* key : {"b/2", "B/1", "a/1", "b", "b c", "b/1"}) Set(key, "");
  const auto visited = [](const char* prefix, size_t from) {
    std::string seen;
    platform::PreferencesVisitKeys(kDomain, prefix, from, [&seen](size_t position, const char* key) {
      seen += std::to_string(position) + "=" + key + " ";
      return true;
    });
    return seen;
  };
  EXPECT_EQ(visited("", 0), "0=a/1 1=b 2=B/1 3=b/1 4=b/2 5=b c ");
  EXPECT_EQ(visited("b/", 3), "3=b/1 4=b/2 ");
  EXPECT_EQ(visited("b/", 6), "");
  EXPECT_EQ(visited("c", 0), "");
  EXPECT_EQ(platform::PreferencesKeyCount(kDomain), 6u);

  for (const size_t size : {258, 259, 260, 261}) Set(("p/" + std::string(size, 'n')).c_str(), "");
  std::vector<size_t> sizes;
  char name[platform::kFixedText] = {};
  while (platform::PreferencesNextName(kDomain, "p/", name, name) && sizes.size() < 10) sizes.push_back(strlen(name));
  EXPECT_EQ(sizes, (std::vector<size_t>{258, 259})) << "a name too long for a text ends the walk";
}

// Other processes

TEST_F(Preferences, ShowOtherProcessesWhatIsSynchronised) {
  OtherProcess writer([] { return Set("shared", "theirs") && Set("new", "theirs"); });
  OtherProcess reader([] { return Get("shared") == "theirs" && Get("mine") == kAbsent && Keys().size() == 2; });
  Set("shared", "ours");
  EXPECT_EQ(Keys().size(), 1u);  // From here on the index is there and has to notice.
  writer.Start();
  EXPECT_TRUE(writer.Finish());
  EXPECT_EQ(Get("shared"), "theirs");
  EXPECT_EQ(Keys().size(), 2u);
  platform::PreferencesSetValue(kDomain, "mine", "not synchronised");
  reader.Start();
  EXPECT_TRUE(reader.Finish());
  EXPECT_EQ(Keys().size(), 3u);
}

// Disks that refuse

TEST_F(Preferences, ReadButDoNotWriteInAReadOnlyFolder) {
  Set("key", "old");
  Reopen();
  chmod(StoreFile().c_str(), 0400);
  chmod(StoreFolder().c_str(), 0500);
  {
    const RightsHold hold;
    EXPECT_EQ(Get("key"), "old");
    EXPECT_EQ(Keys().size(), 1u);
    EXPECT_FALSE(Set("key", "new"));
    EXPECT_EQ(Get("key"), "old");
    Reopen();
  }
  chmod(StoreFolder().c_str(), 0700);
  EXPECT_EQ(Get("key"), "old");
  chmod(StoreFile().c_str(), 0600);
  EXPECT_TRUE(Set("key", "new")) << "and saves again afterwards";
}

TEST_F(Preferences, AreEmptyWhereNoFileCanBeMade) {
  chmod(root.c_str(), 0500);
  const RightsHold hold;
  EXPECT_EQ(Get("key"), kAbsent);
  EXPECT_FALSE(Set("key", "new"));
  EXPECT_EQ(Get("key"), kAbsent);
  EXPECT_TRUE(Keys().empty());
  Reopen();
}

// Damage

class DamagedPreferences : public Preferences {
 protected:
  /// A store of some pages; returns its bytes.
  std::string MakeStore() {
    for (int i = 0; i < 300; ++i) {
      platform::PreferencesSetValue(kDomain, ("key/" + std::to_string(i)).c_str(), std::string(100, 'v').c_str());
    }
    platform::PreferencesSynchronize(kDomain);
    Reopen();
    return ReadFile(StoreFile());
  }

  void ExpectReplaced(const std::string& damaged, const char* what) {
    EXPECT_EQ(Get("key/1"), kAbsent) << what;
    EXPECT_TRUE(Set("key/1", "fresh")) << what;
    char kept[platform::kFixedText];
    ASSERT_TRUE(platform::PreferencesTakeDamagedFile(kept)) << what;
    EXPECT_EQ(std::string(kept).find(StoreFile() + ".damaged-"), 0u) << kept;
    EXPECT_TRUE(ReadFile(kept) == damaged) << what;
    EXPECT_EQ(ModeOf(kept) & 0077, 0u) << what;
    EXPECT_FALSE(platform::PreferencesTakeDamagedFile(kept)) << what;
    Reopen();
    EXPECT_EQ(Get("key/1"), "fresh") << what;
    EXPECT_FALSE(platform::PreferencesTakeDamagedFile(kept)) << what;
  }
};

TEST_F(DamagedPreferences, AreKeptAsideAndBegunAfresh) {
  const std::string whole = MakeStore();
  const std::string zeroedPage = std::string(whole).replace(4096, 4096, 4096, '\0');
  const std::string otherTable = std::string(whole).replace(whole.find("preferences("), 12, "Preferencez(");
  const std::pair<const char*, std::string> cases[] = {
      {"another kind of file", "<?xml version=\"1.0\"?><plist></plist>" + std::string(8192, '\n')},
      {"a page of zeros", zeroedPage},
      {"another table", otherTable},
  };
  for (const auto& [what, content] : cases) {
    WriteFile(StoreFile(), content);
    ExpectReplaced(content, what);
    Reopen();
  }
  EXPECT_EQ(Get("key/1"), "fresh");
  const std::string junk(40000, 'j');
  WriteFile(StoreFile(), junk);
  ExpectReplaced(junk, "overwritten in the middle of a run");
  EXPECT_EQ(FilesNamed("damaged").size(), std::size(cases) + 1);
}

TEST_F(DamagedPreferences, AreNoticedWhereverTheFileIsCut) {
  const std::string whole = MakeStore();
  ASSERT_GT(whole.size(), 8 * 4096u);
  std::vector<size_t> sizes = {2, 99, 100, 512, 4096, whole.size() - 4096};
  for (size_t size = 600; size < whole.size(); size += 1531) sizes.push_back(size);
  for (const size_t size : sizes) {
    std::filesystem::remove_all(StoreFolder());
    WriteFile(StoreFile(), whole.substr(0, size));
    ExpectReplaced(whole.substr(0, size), std::to_string(size).c_str());
    Reopen();
  }
  // An empty file is no damage, and the database library reports one byte as none, too.
  for (const char* content : {"", "S"}) {
    WriteFile(StoreFile(), content);
    EXPECT_TRUE(Set("key", "value"));
    char kept[platform::kFixedText];
    EXPECT_FALSE(platform::PreferencesTakeDamagedFile(kept));
    Reopen();
  }
}

TEST_F(DamagedPreferences, NeverStopTheProgramWhateverBitFlips) {
  const std::string whole = MakeStore();
  std::mt19937 random(99);
  char kept[platform::kFixedText];
  int replaced = 0;
  for (int round = 0; round < 150; ++round) {
    std::string flipped = whole;
    // The header and the first pages hold what matters most.
    const size_t range = round % 3 == 0 ? 128 : flipped.size();
    const size_t at = random() % range;
    flipped[at] = static_cast<char>(flipped[at] ^ (1 << random() % 8));
    std::filesystem::remove_all(StoreFolder());
    WriteFile(StoreFile(), flipped);
    Reopen();
    for (int i = 0; i < 300; i += 10) Get(("key/" + std::to_string(i)).c_str());
    Keys();
    EXPECT_TRUE(Set("after", "written")) << "byte " << at;
    Reopen();
    EXPECT_EQ(Get("after"), "written") << "byte " << at;
    replaced += platform::PreferencesTakeDamagedFile(kept);
    Reopen();
  }
  EXPECT_GT(replaced, 10);
}

TEST_F(DamagedPreferences, AreReplacedOnceByTwoProcesses) {
  for (int round = 0; round < 20; ++round) {
    std::filesystem::remove_all(StoreFolder());
    WriteFile(StoreFile(), std::string(5000, 'j'));
    const auto save = [](const char* key) { return [key] { return Set(key, "saved"); }; };
    OtherProcess one(save("one"));
    OtherProcess two(save("two"));
    one.Start();
    two.Start();
    EXPECT_TRUE(one.Finish());
    EXPECT_TRUE(two.Finish());
    EXPECT_EQ(FilesNamed("damaged").size(), 1u);
    EXPECT_EQ(Get("one"), "saved") << round;
    EXPECT_EQ(Get("two"), "saved") << round;
  }
}

}  // namespace
