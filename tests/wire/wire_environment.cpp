// Keeps the tests away from the user's own settings and history: before main, the folders of the user become empty
// ones that are removed at the end.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

namespace {

class OwnFolders : public testing::Environment {
 public:
  OwnFolders() {
    if (!mkdtemp(root_.data())) std::abort();
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
      setenv(name, (root_ + "/" + name).c_str(), 1);
    }
  }
  void TearDown() override {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }

 private:
  std::string root_ = "/tmp/orvane-wire-XXXXXX";
};

testing::Environment* const kOwnFolders = testing::AddGlobalTestEnvironment(new OwnFolders);

}  // namespace
