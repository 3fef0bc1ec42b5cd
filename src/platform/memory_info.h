// What the kernel says about memory. Any thread.
// A test that needs a full or an empty machine links its own definitions of these.
#pragma once

#include <cstdint>

namespace platform {

/// Free and inactive pages in bytes; 0 if the kernel cannot tell.
uint64_t MemoryFreeAndInactive();
/// Bytes of this process that are in memory now; 0 if the kernel cannot tell.
uint64_t MemoryResident();
/// The process's limit on its data in bytes, UINT64_MAX for none. False, with `bytes` unchanged, if it cannot
/// be read.
[[nodiscard]] bool MemoryDataLimit(uint64_t& bytes);

}  // namespace platform
