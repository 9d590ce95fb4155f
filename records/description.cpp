#include "records/description.h"

#include <cwctype>

namespace orv {

std::wstring_view trimmed(std::wstring_view text) {
  while (!text.empty() && std::iswspace(text.back())) text.remove_suffix(1);
  while (!text.empty() && std::iswspace(text.front())) text.remove_prefix(1);
  return text;
}

void Description::assign(BSTR text) {
  current_ = text ? held(trimmed(std::wstring_view(text))) : com::Bstr();
  is_null_ = !text;
}

com::Bstr Description::trimmed_copy() {
  const std::wstring_view shorter = trimmed(current());
  // A loaded text may be longer than its trimmed form; a text that was put never is.
  if (shorter.size() != current().size()) current_ = held(shorter);
  return is_null_ ? com::Bstr() : com::Bstr(current());
}

}  // namespace orv
