#pragma once

#include <algorithm>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <limits>
#include <string_view>
#include <vector>

#include "com/bstr.h"

namespace orv {

/// A text of SQL under construction, made of names, numbers and quoted strings.
///
/// Numbers look as "%i" and "%.17g" print them in the C locale, whatever locale the process has:
/// 17 significant digits bring every double back exactly. A text of usual length is built without
/// touching the heap.
class Text {
 public:
  Text() = default;
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  Text& operator<<(std::wstring_view words) {
    if (words.size() > capacity_ - length_) grow(words.size());
    std::ranges::copy(words, text_ + length_);
    length_ += words.size();
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

  [[nodiscard]] std::wstring_view view() const { return {text_, length_}; }

  /// The text as a new string of exactly its length.
  [[nodiscard]] com::Bstr str() const { return com::Bstr(view()); }

 private:
  // Sign, 17 digits, point, and an exponent of up to five characters.
  static constexpr std::size_t kLongestNumber = 32;
  // Holds the row of every kind unless its description is long.
  static constexpr std::size_t kUsualLength = 400;

  Text& append_ascii(const char* first, const char* last) {
    wchar_t wide[kLongestNumber];
    return *this << std::wstring_view(wide, std::copy(first, last, wide));
  }

  void grow(std::size_t more) {
    std::vector<wchar_t> larger(2 * (length_ + more));
    std::copy(text_, text_ + length_, larger.begin());
    long_text_.swap(larger);
    text_ = long_text_.data();
    capacity_ = long_text_.size();
  }

  wchar_t usual_text_[kUsualLength];
  std::vector<wchar_t> long_text_;
  wchar_t* text_ = usual_text_;
  std::size_t length_ = 0;
  std::size_t capacity_ = kUsualLength;
};

}  // namespace orv
