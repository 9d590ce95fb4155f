#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstddef>
#include <string>
#include <utility>

#include "tests/host/holdings.h"

namespace server {

/// Lets some allocations of the module fail: of its own heap, of strings, arrays and whatever else
/// the platform allocates for it. Everybody else's memory is left alone.
class OutOfMemory {
 public:
  static constexpr std::size_t kEnd = SIZE_MAX;

  /// Those from `first` to `last` fail, counted from 1.
  OutOfMemory(std::size_t first, std::size_t last);
  OutOfMemory(const OutOfMemory&) = delete;
  ~OutOfMemory();

  /// Runs the call under test with memory as it was announced.
  template <class Call>
  HRESULT during(Call&& call) {
    start();
    const HRESULT result = std::forward<Call>(call)();
    stop();
    return result;
  }

  /// Whether the first allocation that was to fail came.
  [[nodiscard]] bool ran_out() const;
  /// What a call must return that needs all the memory that it asks for.
  [[nodiscard]] HRESULT expected() const { return ran_out() ? E_OUTOFMEMORY : S_OK; }

 private:
  static void start();
  static void stop();
};

/// Whether every one of several runs leaves blocks of memory over. What is made once and kept, and
/// the heap's own growth, show in some runs only.
template <class Run>
bool leaks(Run&& run) {
  for (int attempt = 0; attempt < 8; ++attempt) {
    const std::ptrdiff_t before = heap_blocks();
    run();
    if (heap_blocks() <= before) return false;
  }
  return true;
}

/// Runs `scenario` with its first allocation failing, then with its second, and so on until none is
/// left that could fail; then the same with every later allocation failing as well.
template <class Scenario>
void with_each_allocation_failing(Scenario&& scenario) {
  for (const bool only_one : {true, false}) {
    std::size_t number = 1;
    for (bool ran_out = true; ran_out; ++number) {
      SCOPED_TRACE((only_one ? "allocation " : "allocations from ") + std::to_string(number));
      EXPECT_FALSE(leaks([&] {
        OutOfMemory memory(number, only_one ? number : OutOfMemory::kEnd);
        scenario(memory);
        ran_out = memory.ran_out();
      }));
    }
    EXPECT_GT(number, 2U) << "the scenario allocates nothing";
  }
}

}  // namespace server
