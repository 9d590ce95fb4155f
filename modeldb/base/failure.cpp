#include "modeldb/base/failure.h"

#include <utility>

#include "com/error.h"

namespace modeldb {

void fail(HRESULT result, std::wstring_view sentence) {
  com::fail(result, L"Orv_ModelDb", sentence);
}

void fail_on_text(HRESULT result, std::wstring_view subject, std::wstring clause, TextFault fault) {
  try {
    fail(result, std::wstring(subject) + clause);
  } catch (const com::Error& error) {
    throw TextError(error, std::move(clause), std::move(fault));
  }
}

void fail_on_text(std::wstring_view subject, const TextError& error) {
  fail_on_text(error.result(), subject, error.clause(), error.fault());
}

std::wstring quoted(std::wstring_view text) {
  constexpr std::size_t kMaximum = 160;
  constexpr std::size_t kHalf = kMaximum / 2;
  std::wstring result = L"\"";
  if (text.size() <= kMaximum) {
    result += text;
  } else {
    result.append(text.substr(0, kHalf)).append(L" ... ");
    result += text.substr(text.size() - kHalf);
  }
  return result += L'"';
}

}  // namespace modeldb
