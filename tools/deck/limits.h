#pragma once

#include <cstddef>

namespace deck {

// A few lines can ask for more than any memory holds: sets that name sets, and cards that name
// large sets many times. No deck comes near these limits; the fuzzer would spend its time on them.
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
inline constexpr std::size_t kMostNodesInSets = 1'000;
inline constexpr std::size_t kMostRows = 1'000;
#else
inline constexpr std::size_t kMostNodesInSets = 20'000'000;
inline constexpr std::size_t kMostRows = 20'000'000;
#endif

}  // namespace deck
