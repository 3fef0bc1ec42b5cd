#include "support/memory.h"

#include <algorithm>
#include <new>

#include "platform/memory_info.h"

unsigned char* LMemoryLargeArrayNew(size_t size) {
  if (size > kMemoryAlwaysGranted && size > LMemoryGetFreeHeapSize() / 2) return nullptr;
  return new (std::nothrow) unsigned char[size];
}

uint64_t LMemoryGetFreeHeapSize() {
  uint64_t limit = 0;
  if (!platform::MemoryDataLimit(limit)) return UINT64_MAX;
  const uint64_t left = limit - std::min(limit, platform::MemoryResident());
  return std::min(left, LMemoryGetAvailableVirtualMemorySize());
}

uint64_t LMemoryGetAvailableVirtualMemorySize() { return platform::MemoryFreeAndInactive(); }
