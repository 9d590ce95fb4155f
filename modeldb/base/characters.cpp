#include "modeldb/base/characters.h"

#include "modeldb/base/failure.h"

namespace modeldb {

bool is_of_characters(std::wstring_view text) {
  bool is_open = false;  // half of a pair came, and the other must follow
  for (const wchar_t unit : text) {
    const bool is_second = unit >= 0xDC00 && unit <= 0xDFFF;
    if (is_second != is_open || unit >= 0xFFFE) return false;
    is_open = unit >= 0xD800 && unit <= 0xDBFF;
  }
  return !is_open;
}

void fail_on_characters(std::wstring_view text) {
  fail(kInvalidArgument, L"The text " + quoted(text) +
                             L" cannot be used: a part of it is no character (half of a "
                             L"surrogate pair, U+FFFE or U+FFFF). Remove that part.");
}

}  // namespace modeldb
