// One fuzz target, for two runners: libFuzzer, which makes inputs, and the test program of the kept corpora,
// which links all targets together and runs each on the files of fuzz/corpus/<name>/.
//
//   ORVANE_FUZZ_TARGET(uri) { ... uses `const uint8_t* data` and `size_t size`, checks with FUZZ_CHECK ... }
//
// A target takes any bytes. It keeps no state from one input to the next.
#pragma once

#include <cstddef>
#include <cstdint>

using FuzzFunction = void (*)(const uint8_t* data, size_t size);

#ifdef ORVANE_FUZZ_CORPUS

#include <gtest/gtest.h>

/// Enters a target in the list that the test program runs.
bool FuzzTargetAdd(const char* name, FuzzFunction function);

#define ORVANE_FUZZ_TARGET(name)                                            \
  static void FuzzTarget_##name(const uint8_t* data, size_t size);          \
  static const bool added_##name = FuzzTargetAdd(#name, FuzzTarget_##name); \
  static void FuzzTarget_##name([[maybe_unused]] const uint8_t* data, [[maybe_unused]] size_t size)

#define FUZZ_CHECK(condition) EXPECT_TRUE(condition)

#else

#include <cstdio>
#include <cstdlib>

#define ORVANE_FUZZ_TARGET(name)                                            \
  static void FuzzTarget_##name(const uint8_t* data, size_t size);          \
  extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { \
    FuzzTarget_##name(data, size);                                          \
    return 0;                                                               \
  }                                                                         \
  static void FuzzTarget_##name([[maybe_unused]] const uint8_t* data, [[maybe_unused]] size_t size)

#define FUZZ_CHECK(condition)                                                      \
  do {                                                                             \
    if (condition) break;                                                          \
    fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition); \
    abort();                                                                       \
  } while (false)

#endif
