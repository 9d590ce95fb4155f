#pragma once

#include <windows.h>

#include <cstddef>
#include <ostream>

namespace frame {

/// What a process can lose for ever, counted.
struct Holdings {
  std::ptrdiff_t heap_blocks = 0;
  std::ptrdiff_t heap_bytes = 0;
  std::ptrdiff_t handles = 0;

  friend bool operator==(const Holdings&, const Holdings&) = default;
  friend Holdings operator-(const Holdings& left, const Holdings& right) {
    return {left.heap_blocks - right.heap_blocks, left.heap_bytes - right.heap_bytes,
            left.handles - right.handles};
  }
  friend std::ostream& operator<<(std::ostream& out, const Holdings& holdings) {
    return out << holdings.heap_blocks << " heap blocks, " << holdings.heap_bytes << " bytes, "
               << holdings.handles << " handles";
  }
};

inline void count_blocks(HANDLE heap, Holdings& holdings) {
  PROCESS_HEAP_ENTRY entry{};
  HeapLock(heap);
  while (HeapWalk(heap, &entry)) {
    if (!(entry.wFlags & PROCESS_HEAP_ENTRY_BUSY)) continue;
    ++holdings.heap_blocks;
    holdings.heap_bytes += entry.cbData;
  }
  HeapUnlock(heap);
}

/// Counted one by one: Wine tells no count.
inline std::ptrdiff_t count_handles() {
  constexpr ULONG_PTR kHighest = 0x4000;
  constexpr ULONG_PTR kStep = 4;
  std::ptrdiff_t count = 0;
  for (ULONG_PTR value = kStep; value < kHighest; value += kStep) {
    DWORD flags = 0;
    if (GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) ++count;
  }
  return count;
}

/// What this process holds now. The automation runtime's own store of freed strings counts too:
/// warm it up before the first look.
inline Holdings current_holdings() {
  Holdings holdings;
  HANDLE heaps[64];
  const DWORD count = GetProcessHeaps(64, heaps);
  for (DWORD index = 0; index < count; ++index) count_blocks(heaps[index], holdings);
  holdings.handles = count_handles();
  return holdings;
}

}  // namespace frame
