#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <limits>
#include <memory_resource>
#include <string>
#include <string_view>

#include "com/bstr.h"

namespace orv {

/// A text of SQL under construction, made of names, numbers and quoted strings.
///
/// Numbers look as "%i" and "%.17g" print them in the C locale, whatever locale the process has:
/// 17 significant digits bring every double back exactly. A text of usual length is built without
/// touching the heap.
class Text {
 public:
  Text() { text_.reserve(kUsualLength); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  Text& operator<<(std::wstring_view words) {
    text_.append(words);
    return *this;
  }

  template <std::integral Integer>
  Text& operator<<(Integer number) {
    // All digits, the one that digits10 does not promise, and the sign.
    char digits[std::numeric_limits<Integer>::digits10 + 2];
    return append_ascii(digits, std::to_chars(digits, std::end(digits), number).ptr);
  }

  Text& operator<<(double number) {
    char digits[kLongestNumber];
    constexpr int kSignificantDigits = 17;
    const auto end = std::to_chars(digits, std::end(digits), number, std::chars_format::general,
                                   kSignificantDigits);
    return append_ascii(digits, end.ptr);
  }

  [[nodiscard]] std::wstring_view view() const { return text_; }

  /// The text as a new string of exactly its length.
  [[nodiscard]] com::Bstr str() const { return com::Bstr(text_); }

 private:
  // Sign, 17 digits, point, and an exponent of up to five characters.
  static constexpr std::size_t kLongestNumber = 32;
  // Holds the row of every kind unless its description is long.
  static constexpr std::size_t kUsualLength = 400;

  Text& append_ascii(const char* first, const char* last) {
    wchar_t wide[kLongestNumber];
    text_.append(std::wstring_view(wide, std::copy(first, last, wide)));
    return *this;
  }

  std::array<std::byte, (kUsualLength + 1) * sizeof(wchar_t)> buffer_;
  std::pmr::monotonic_buffer_resource memory_{buffer_.data(), buffer_.size()};
  std::pmr::wstring text_{&memory_};
};

}  // namespace orv
