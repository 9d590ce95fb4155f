#include "tests/deck/fuzz.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ORV_FUZZED(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
