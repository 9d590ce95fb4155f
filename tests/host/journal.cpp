#include "tests/host/journal.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "com/bstr.h"
#include "com/ptr.h"
#include "com/variant.h"

namespace fake {
namespace {

std::string show_numbers(const SAFEARRAY& array) {
  const SAFEARRAYBOUND& bound = array.rgsabound[0];
  std::string text = std::to_string(array.cDims) + "D from " + std::to_string(bound.lLbound) + ':';
  const std::span numbers(static_cast<const long*>(array.pvData), bound.cElements);
  for (const long number : numbers) text += ' ' + std::to_string(number);
  return text;
}

}  // namespace

std::string narrow(std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  const int size =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(), size, nullptr, nullptr);
  return result;
}

HRESULT Journal::note(const std::string& call) {
  lines_.push_back(call);
  const std::size_t number = lines_.size();
  on_call(call);
  if (const auto planned = by_number_.find(number); planned != by_number_.end()) {
    return answer(planned->second);
  }
  for (const auto& [beginning, failure] : by_beginning_) {
    if (call.starts_with(beginning)) return answer(failure);
  }
  return S_OK;
}

HRESULT Journal::answer(const Failure& failure) {
  if (failure.words) set_error_words(failure.words);
  return failure.result;
}

void Journal::fail_call(std::size_t number, HRESULT result, const wchar_t* words) {
  by_number_[number] = {result, words};
}

void Journal::fail(const std::string& beginning, HRESULT result, const wchar_t* words) {
  by_beginning_[beginning] = {result, words};
}

Journal::Lines Journal::lines_with(const std::string& words) const {
  Lines result;
  std::ranges::copy_if(lines_, std::back_inserter(result), [&](const std::string& line) {
    return line.find(words) != std::string::npos;
  });
  return result;
}

void Journal::clear() {
  lines_.clear();
  by_number_.clear();
  by_beginning_.clear();
}

std::string Journal::show(IUnknown* object) const {
  if (!object) return "null";
  const auto known = names_.find(object);
  return known == names_.end() ? "object" : known->second;
}

std::string Journal::show(const VARIANT& value) const {
  switch (value.vt) {
    case VT_EMPTY:
      return "empty";
    case VT_I2:
      return "I2:" + std::to_string(value.iVal);
    case VT_BOOL:
      return "BOOL:" + std::to_string(value.boolVal);
    case VT_BSTR:
      return '"' + narrow(com::Bstr::view(value.bstrVal)) + '"';
    case VT_DISPATCH:
      return show(value.pdispVal);
    case VT_ERROR:
      return com::is_omitted(value) ? "omitted" : "error";
    case VT_ARRAY | VT_I4:
      return show_numbers(*value.parray);
    default:
      return "type " + std::to_string(value.vt);
  }
}

void set_error_words(const wchar_t* words) {
  com::Ptr<ICreateErrorInfo> info;
  if (FAILED(CreateErrorInfo(info.put()))) return;
  info->SetDescription(com::Bstr(words).get());
  SetErrorInfo(0, info.query<IErrorInfo>().get());
}

std::string take_error_words() {
  com::Ptr<IErrorInfo> info;
  if (GetErrorInfo(0, info.put()) != S_OK) return {};
  com::Bstr words;
  info->GetDescription(words.put());
  return narrow(words.view());
}

}  // namespace fake
