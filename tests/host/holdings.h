#pragma once

#include <windows.h>

#include <cstddef>
#include <ostream>

namespace server {

/// Blocks in use in all heaps of the process. The automation runtime's own store of freed strings
/// counts too.
inline std::ptrdiff_t heap_blocks() {
  HANDLE heaps[64];
  const DWORD count = GetProcessHeaps(64, heaps);
  std::ptrdiff_t blocks = 0;
  for (DWORD index = 0; index < count; ++index) {
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heaps[index]);
    while (HeapWalk(heaps[index], &entry)) {
      if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) ++blocks;
    }
    HeapUnlock(heaps[index]);
  }
  return blocks;
}

/// Open handles, counted one by one: Wine tells no count.
inline std::ptrdiff_t handles() {
  constexpr ULONG_PTR kHighest = 0x4000;
  constexpr ULONG_PTR kStep = 4;
  std::ptrdiff_t count = 0;
  for (ULONG_PTR value = kStep; value < kHighest; value += kStep) {
    DWORD flags = 0;
    if (GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) ++count;
  }
  return count;
}

/// What this process can lose for ever, as it holds it now.
struct Holdings {
  std::ptrdiff_t blocks = heap_blocks();
  std::ptrdiff_t open_handles = handles();

  friend bool operator==(const Holdings&, const Holdings&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Holdings& holdings) {
    return out << holdings.blocks << " heap blocks, " << holdings.open_handles << " handles";
  }
};

}  // namespace server
