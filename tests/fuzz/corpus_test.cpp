// Runs every fuzz target on the files of its corpus, so that what fuzzing once found stays found.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz_target.h"

namespace {

std::vector<std::filesystem::path> CorpusOf(const std::string& name) {
  std::vector<std::filesystem::path> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(ORVANE_SOURCE_DIR "/fuzz/corpus/" + name, error)) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

class CorpusTest : public testing::Test {
 public:
  CorpusTest(const char* name, FuzzFunction function) : target(name), run(function) {}

  void TestBody() override {
    const auto files = CorpusOf(target);
    ASSERT_FALSE(files.empty()) << "no corpus";
    run(nullptr, 0);
    for (const auto& file : files) {
      SCOPED_TRACE(file);
      std::ifstream stream(file, std::ios::binary);
      ASSERT_TRUE(stream);
      const std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
      run(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    }
  }

 private:
  const char* target;
  FuzzFunction run;
};

}  // namespace

bool FuzzTargetAdd(const char* name, FuzzFunction function) {
  testing::RegisterTest("Corpus", name, nullptr, nullptr, __FILE__, __LINE__,
                        [=]() -> testing::Test* { return new CorpusTest(name, function); });
  return true;
}
