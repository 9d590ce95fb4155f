#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <new>
#include <string_view>
#include <utility>

namespace com {

/// Owning automation string. Empty and null are told apart: a null string was never allocated.
class Bstr {
 public:
  Bstr() = default;
  /// Allocates a copy of `text`; throws std::bad_alloc.
  explicit Bstr(std::wstring_view text)
      : string_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
    if (!string_) throw std::bad_alloc();
  }
  Bstr(const Bstr& other) : Bstr(other ? Bstr(other.view()) : Bstr()) {}
  Bstr(Bstr&& other) noexcept : string_(std::exchange(other.string_, nullptr)) {}
  ~Bstr() { SysFreeString(string_); }

  Bstr& operator=(Bstr other) noexcept {
    std::swap(string_, other.string_);
    return *this;
  }

  /// Takes over a string that the caller owns.
  static Bstr adopt(BSTR string) {
    Bstr result;
    result.string_ = string;
    return result;
  }

  /// The address for an out parameter; what was held is freed first.
  BSTR* put() {
    SysFreeString(std::exchange(string_, nullptr));
    return &string_;
  }

  /// Hands the string to the caller.
  [[nodiscard]] BSTR detach() { return std::exchange(string_, nullptr); }

  [[nodiscard]] BSTR get() const { return string_; }
  [[nodiscard]] std::wstring_view view() const { return view(string_); }
  explicit operator bool() const { return string_ != nullptr; }

  /// The characters of a string that somebody else owns, embedded NULs included.
  static std::wstring_view view(BSTR string) {
    return {string ? string : L"", SysStringLen(string)};
  }

 private:
  BSTR string_ = nullptr;
};

/// A text as the automation string of an argument, which the callee borrows: one of usual length,
/// such as the name of a column or a statement on links, takes no memory.
class ArgumentBstr {
 public:
  /// Throws std::bad_alloc.
  explicit ArgumentBstr(std::wstring_view text) {
    if (text.size() > kUsualLength) {
      long_ = Bstr(text);
      return;
    }
    usual_.bytes = static_cast<UINT>(text.size() * sizeof(wchar_t));
    // By std::copy, which copies them at once: std::ranges::copy goes one by one here.
    *std::copy(text.data(), text.data() + text.size(), usual_.text) = L'\0';
  }
  ArgumentBstr(const ArgumentBstr&) = delete;
  ArgumentBstr& operator=(const ArgumentBstr&) = delete;

  [[nodiscard]] BSTR get() { return long_ ? long_.get() : usual_.text; }
  /// The string in a variant, to be passed by value.
  [[nodiscard]] VARIANT variant() {
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = get();
    return value;
  }

 private:
  static constexpr std::size_t kUsualLength = 300;

  // The length in bytes stands before the characters.
  struct Usual {
    UINT unused;
    UINT bytes;
    wchar_t text[kUsualLength + 1];
  };

  alignas(void*) Usual usual_;
  Bstr long_;
};

}  // namespace com
