#include "com/member_names.h"

#include <algorithm>

namespace com {
namespace {

wchar_t lower(wchar_t character) {
  return character >= L'A' && character <= L'Z' ? character - L'A' + L'a' : character;
}

}  // namespace

bool MemberNames::IsBefore::operator()(std::wstring_view left, std::wstring_view right) const {
  return std::ranges::lexicographical_compare(left, right, {}, lower, lower);
}

}  // namespace com
