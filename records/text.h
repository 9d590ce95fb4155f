#pragma once

#include <algorithm>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <iterator>
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
    make_room(words.size());
    std::copy(words.begin(), words.end(), text_ + length_);
    length_ += words.size();
    return *this;
  }

  /// Of a literal, whose length the compiler knows.
  template <std::size_t size>
  Text& operator<<(const wchar_t (&words)[size]) {
    make_room(size);
    std::copy(words, words + size, text_ + length_);
    length_ += size - 1;
    return *this;
  }

  template <std::integral Integer>
  Text& operator<<(Integer number) {
    Digits digits{};
    return append(digits, std::to_chars(digits, std::end(digits), number).ptr);
  }

  Text& operator<<(double number) {
    Digits digits{};
    constexpr int kSignificantDigits = 17;
    const auto end = std::to_chars(digits, std::end(digits), number, std::chars_format::general,
                                   kSignificantDigits);
    return append(digits, end.ptr);
  }

  [[nodiscard]] std::wstring_view view() const { return {text_, length_}; }

  /// The text as a new string of exactly its length.
  [[nodiscard]] com::Bstr str() const { return com::Bstr(view()); }

 private:
  // Sign, 17 digits, point, and an exponent of up to five characters.
  static constexpr std::size_t kLongestNumber = 32;
  using Digits = char[kLongestNumber];
  // Holds the row of every kind unless its description is long.
  static constexpr std::size_t kUsualLength = 400;

  /// The characters are widened and copied all together, which is faster than as many as count.
  Text& append(const Digits& digits, const char* end) {
    make_room(kLongestNumber);
    wchar_t wide[kLongestNumber];
    for (std::size_t i = 0; i < kLongestNumber; ++i) wide[i] = static_cast<wchar_t>(digits[i]);
    std::copy(wide, std::end(wide), text_ + length_);
    length_ += static_cast<std::size_t>(end - digits);
    return *this;
  }

  void make_room(std::size_t more) {
    if (more > capacity_ - length_) grow(more);
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
