// The one allocator that may refuse: for buffers whose size a server or a file decides. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>

/// Up to this size no figures of the system are asked for.
constexpr size_t kMemoryAlwaysGranted = 1000000;

/// `size` bytes, not initialised, to be freed with delete[]; null if there is no memory, or if more than
/// kMemoryAlwaysGranted is asked for and that exceeds half of the free heap.
[[nodiscard]] unsigned char* LMemoryLargeArrayNew(size_t size);

/// Bytes that this process may still take: the lesser of what its data limit leaves and what the machine has
/// available. The largest number if the limit cannot be read.
[[nodiscard]] uint64_t LMemoryGetFreeHeapSize();

/// Free and inactive memory of the machine in bytes; 0 if the kernel cannot tell.
[[nodiscard]] uint64_t LMemoryGetAvailableVirtualMemorySize();
