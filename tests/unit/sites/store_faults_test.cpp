// The preference store on a machine that fails it: killed at every system call of a save, with errors from
// every write, on a full and on a read-only disk, and after a power cut. Each time all values must be those
// of the last save that was acknowledged, or all those of the save under way.
#include <algorithm>
#include <csignal>
#include <random>

#include "support/commands.h"
#include "support/preference_folder.h"
#include "support/store_generations.h"
#include "support/system_calls.h"
#include "support/volatile_disk.h"

namespace {

// What changes something on the disk, and what marks the steps of the writer. A question mark: not on every
// processor.
constexpr char kChanges[] =
    "?access,faccessat,?faccessat2,openat,?mkdir,mkdirat,?chmod,fchmod,fchmodat,pwrite64,write,fdatasync,"
    "fsync,"
    "ftruncate,?unlink,unlinkat,?rename,?renameat,?renameat2";
// Every call that has to do with a file.
constexpr char kFileCalls[] = "%file,%desc";

class StoreFaults : public PreferenceFolder {
 protected:
  /// The command line of the writer on the store in `home`.
  static std::string Writer(const std::string& home, const std::string& arguments) {
    // Leaks are not looked for under a tracer, which would end the process in its place.
    return "XDG_CONFIG_HOME=" + home + " ASAN_OPTIONS=detect_leaks=0 " ORVANE_STORE_WRITER " " + arguments;
  }
  std::string Traced(const std::string& options, const std::string& arguments, const char* traced = kChanges) const {
    return "strace -qq -y -xx -s 100000 -o " + Log() + " -e trace=" + traced + " " + options + " env " +
           Writer(root, arguments) + " 2>/dev/null";
  }
  std::string Log() const { return root + "/calls.log"; }

  static bool CanTrace() { return RunCommand("strace -o /dev/null true 2>&1").Succeeded(); }

  /// A store that holds the first generation.
  void Begin() const {
    const std::string kept = root + "/first";
    std::filesystem::remove_all(StoreFolder());
    if (!std::filesystem::exists(kept)) {
      const CommandResult result = RunCommand(Writer(root, "save 1 1"));
      ASSERT_TRUE(result.Says("saved 1")) << result.output;
      std::filesystem::copy(StoreFolder(), kept);
    } else {
      std::filesystem::copy(kept, StoreFolder());
    }
  }

  /// The calls of the saves, those before them left out.
  std::vector<SystemCall> CallsOf(const std::string& arguments, const char* traced = kChanges) const {
    const CommandResult result = RunCommand(Traced("", arguments, traced));
    EXPECT_TRUE(result.Succeeded()) << result.output;
    std::vector<SystemCall> calls = ReadSystemCalls(Log());
    const auto isMark = [](const SystemCall& call) { return call.Text() == "/saves-begin"; };
    calls.erase(calls.begin(), std::find_if(calls.begin(), calls.end(), isMark));
    return calls;
  }

  /// What this process finds in the store; a damaged one counts as nothing that was ever saved.
  static int Found() {
    platform::PreferencesClose();
    const int generation = StoredGeneration();
    char damaged[platform::kFixedText];
    const bool isDamaged = platform::PreferencesTakeDamagedFile(damaged);
    platform::PreferencesClose();
    return isDamaged ? kNoGeneration : generation;
  }

  /// Runs the writer, which dies at the call. `before` is the generation that was there.
  void KillAt(const SystemCall& call, const std::string& arguments, int before) const {
    SCOPED_TRACE(call.name + " " + std::to_string(call.number));
    const std::string inject = "-e inject=" + call.name + ":signal=KILL:when=" + std::to_string(call.number);
    const CommandResult result = RunCommand(Traced(inject, arguments, call.name.c_str()));
    ASSERT_TRUE(result.WasKilledBy(SIGKILL)) << result.output;
    const int saved = std::max(before, LastSaved(result.output));
    const int found = Found();
    EXPECT_TRUE(found == saved || found == saved + 1) << found << " after " << saved;
  }

  static int LastSaved(const std::string& output) {
    int saved = 0;
    for (int generation = 1; generation <= kLastGeneration; ++generation) {
      if (output.find("saved " + std::to_string(generation)) != std::string::npos) saved = generation;
    }
    return saved;
  }
};

/// True for calls that change nothing that stays.
bool IsPassing(const SystemCall& call) { return call.name == "write" || call.name.find("access") != std::string::npos; }

TEST_F(StoreFaults, KeepEverySaveWholeWhereverItIsKilled) {
  if (!CanTrace()) GTEST_SKIP() << "strace is missing or may not trace";
  std::vector<SystemCall> calls = CallsOf("save 1 2");
  std::erase_if(calls, IsPassing);
  for (const SystemCall& call : calls) {
    std::filesystem::remove_all(StoreFolder());
    KillAt(call, "save 1 2", 0);
  }
  EXPECT_GT(calls.size(), 40u);
}

TEST_F(StoreFaults, KeepASaveOverAnotherWholeAtEverySystemCall) {
  if (!CanTrace()) GTEST_SKIP() << "strace is missing or may not trace";
  Begin();
  std::vector<SystemCall> calls = CallsOf("save 2 2", kFileCalls);
  std::erase_if(calls, [](const SystemCall& call) { return call.name == "mmap"; });
  for (const SystemCall& call : calls) {
    Begin();
    KillAt(call, "save 2 2", 1);
  }
  EXPECT_GT(calls.size(), 100u);
}

TEST_F(StoreFaults, KeepTheOldValuesWhenACallFails) {
  if (!CanTrace()) GTEST_SKIP() << "strace is missing or may not trace";
  const struct {
    const char* name;
    const char* error;
    const char* from;  ///< A plus sign: this call and all later ones.
  } faults[] = {
      {"pwrite64", "ENOSPC", ""}, {"pwrite64", "ENOSPC", "+"}, {"pwrite64", "EIO", ""},  {"pwrite64", "EIO", "+"},
      {"fdatasync", "EIO", ""},   {"fdatasync", "EIO", "+"},   {"ftruncate", "EIO", ""}, {"openat", "EMFILE", ""},
  };
  Begin();
  const std::vector<SystemCall> calls = CallsOf("save 2 2");
  int lastSync = 0;
  for (const SystemCall& call : calls) {
    if (call.name == "fdatasync") lastSync = call.number;
  }
  int failures = 0;
  for (const auto& fault : faults) {
    for (const SystemCall& call : calls) {
      if (call.name != fault.name) continue;
      SCOPED_TRACE(call.name + " " + std::to_string(call.number) + fault.from + " " + fault.error);
      Begin();
      const std::string inject = std::string("-e inject=") + call.name + ":error=" + fault.error +
                                 ":when=" + std::to_string(call.number) + fault.from;
      const CommandResult result = RunCommand(Traced(inject, "save 2 2"));
      ASSERT_TRUE(result.Succeeded()) << result.output;
      const bool isSaved = result.Says("saved 2");
      EXPECT_NE(isSaved, result.Says("failed 2")) << result.output;
      const int found = Found();
      // A disk that takes no write at all cannot take back a half-made save either: until it does, the store
      // cannot be opened and reads as empty.
      const bool isClosed = fault.from[0] == '+' && result.Says("holds 0");
      EXPECT_TRUE(isClosed || result.Says("holds " + std::to_string(found))) << result.output;
      // When the journal is emptied the save is made, and only whether it lasts is not known any more.
      const bool isMade = isSaved || (call.name == "fdatasync" && call.number == lastSync);
      EXPECT_EQ(found, isMade ? 2 : 1) << result.output;
      if (!isSaved) ++failures;
    }
  }
  EXPECT_GT(failures, 30);
}

TEST_F(StoreFaults, KeepEverySaveWholeWhenThePowerIsCut) {
  if (!CanTrace()) GTEST_SKIP() << "strace is missing or may not trace";
  const std::vector<SystemCall> calls = CallsOf("save 1 2");
  VolatileDisk disk(StoreFolder());
  std::mt19937 random(11);
  using Fate = VolatileDisk::Fate;
  const auto isJournal = [](const std::string& file) { return file.find("-journal") != std::string::npos; };
  const VolatileDisk::Chooser choosers[] = {
      [](const std::string&, size_t, size_t) { return Fate::kLost; },
      [](const std::string&, size_t, size_t) { return Fate::kWritten; },
      [&](const std::string& file, size_t, size_t) { return isJournal(file) ? Fate::kWritten : Fate::kLost; },
      [&](const std::string& file, size_t, size_t) { return isJournal(file) ? Fate::kLost : Fate::kWritten; },
      [](const std::string&, size_t index, size_t count) { return index + 1 == count ? Fate::kTorn : Fate::kWritten; },
      [&](const std::string&, size_t, size_t) { return static_cast<Fate>(random() % 3); },
      [&](const std::string&, size_t, size_t) { return static_cast<Fate>(random() % 3); },
  };
  int saved = 0;
  int cuts = 0;
  for (const SystemCall& call : calls) {
    if (call.name == "write") saved = std::max(saved, LastSaved(call.Text()));
    if (IsPassing(call)) continue;
    ASSERT_TRUE(disk.Follow(call)) << call.name << " " << call.arguments.substr(0, 200);
    const size_t variants = disk.IsSettled() ? 1 : std::size(choosers);
    for (size_t i = 0; i < variants; ++i) {
      disk.CutPower(StoreFolder(), i % 2 == 1, choosers[i]);
      const int found = Found();
      EXPECT_TRUE(found == saved || found == saved + 1)
          << found << " after " << saved << ", cut " << i << " behind " << call.name << " " << call.number;
      ++cuts;
    }
  }
  EXPECT_EQ(saved, 2);
  EXPECT_TRUE(disk.IsSettled()) << "the last save is acknowledged before it is durable";
  EXPECT_GT(cuts, 200);
}

/// Disks of their own for a moment, which only a namespace of mounts can have.
class StoreDisks : public StoreFaults {
 protected:
  std::string Home() const { return root + "/home"; }

  void SetUp() override {
    std::filesystem::create_directories(Home());
    if (!OnDisk("4m", "true").Succeeded()) GTEST_SKIP() << "no namespace of mounts is permitted here";
    Begin();
  }
  /// Runs the commands with an empty memory disk mounted on the home folder.
  CommandResult OnDisk(const std::string& size, const std::string& commands) const {
    const std::string unshare = geteuid() == 0 ? "unshare -m" : "unshare -Urm";
    return RunCommand(unshare + " sh -c 'mount -t tmpfs -o size=" + size + " tmpfs " + Home() + " && " + commands +
                      "' 2>&1");
  }
  std::string CopyStore() const { return "cp -a " + StoreFolder() + " " + Home() + " && "; }
  std::string SaveAndRead() const { return Writer(Home(), "save 2 2") + " && " + Writer(Home(), "read"); }
};

TEST_F(StoreDisks, WhenFullKeepTheOldValues) {
  int saves = 0;
  int failures = 0;
  for (int size = 16; size <= 160; size += 4) {
    SCOPED_TRACE(size);
    const CommandResult result = OnDisk(std::to_string(size) + "k", CopyStore() + SaveAndRead());
    if (!result.Succeeded()) {
      EXPECT_EQ(saves + failures, 0) << "a smaller disk held the store: " << result.output;
      continue;
    }
    const bool isSaved = result.Says("saved 2");
    EXPECT_EQ(result.output, isSaved ? "saved 2\nholds 2\nholds 2\n" : "failed 2\nholds 1\nholds 1\n");
    ++(isSaved ? saves : failures);
  }
  EXPECT_GT(saves, 0);
  EXPECT_GT(failures, 2);
}

TEST_F(StoreDisks, WhenReadOnlyAreReadAndNotWritten) {
  const std::string remount = "mount -o remount,ro " + Home() + " && ";
  EXPECT_EQ(OnDisk("4m", CopyStore() + remount + SaveAndRead()).output, "failed 2\nholds 1\nholds 1\n");
  EXPECT_EQ(OnDisk("4m", remount + SaveAndRead()).output, "failed 2\nholds 0\nholds 0\n");
}

}  // namespace
