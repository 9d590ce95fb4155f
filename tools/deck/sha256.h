#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace deck {

/// The digest of FIPS 180-4, so that anybody can check it with sha256sum.
class Sha256 {
 public:
  void add(std::string_view bytes);
  /// 64 hexadecimal digits. Nothing may be added after that.
  std::string finish();

 private:
  void block(const unsigned char* bytes);

  std::array<std::uint32_t, 8> state_{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                      0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  std::string rest_;
  std::uint64_t size_ = 0;
};

}  // namespace deck
