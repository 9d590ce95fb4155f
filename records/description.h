#pragma once

#include <string_view>

#include "com/bstr.h"

namespace orv {

/// `text` without white space at its ends, white space as the C library classifies it.
std::wstring_view trimmed(std::wstring_view text);

/// A record's description: as it is now, and as it was last loaded or committed.
class Description {
 public:
  [[nodiscard]] std::wstring_view current() const { return current_.view(); }
  [[nodiscard]] std::wstring_view saved() const { return saved_.view(); }

  /// Takes a copy of `text` up to its first NUL, trimmed; null stays null.
  void assign(BSTR text);

  /// Takes the text of the row, up to its first NUL, as both; neither when memory is short.
  void load(std::wstring_view text) {
    com::Bstr loaded = held(text.substr(0, text.find(L'\0')));
    saved_ = loaded;
    current_ = std::move(loaded);
    is_null_ = false;
  }

  void commit() {
    if (saved() != current()) saved_ = current_;
  }

  /// Trims what is held and returns a copy of it; null when there is none.
  com::Bstr trimmed_copy();

 private:
  /// An empty text is held as none: most records have no description.
  static com::Bstr held(std::wstring_view text) {
    return text.empty() ? com::Bstr() : com::Bstr(text);
  }

  com::Bstr current_;
  com::Bstr saved_;
  bool is_null_ = false;  // the current one
};

}  // namespace orv
