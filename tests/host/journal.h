#pragma once

#include <oaidl.h>
#include <windows.h>

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace fake {

/// The text in the encoding in which test output is written.
std::string narrow(std::wstring_view text);

/// The calls that the fake host received, in order, each as one line ("Vertex.Save db I2:-1
/// I2:-1"), and the failures that it was told to answer with.
class Journal {
 public:
  using Lines = std::vector<std::string>;

  /// Notes a call. Returns what the host is to answer: S_OK, or the failure that was planned for
  /// this call; in that case its words, if any, are set as error information.
  HRESULT note(const std::string& call);

  /// Plans a failure of the call with this number, counted from 1 since the last clear().
  void fail_call(std::size_t number, HRESULT result, const wchar_t* words = nullptr);
  /// Plans a failure of every call whose line begins so.
  void fail(const std::string& beginning, HRESULT result, const wchar_t* words = nullptr);

  [[nodiscard]] const Lines& lines() const { return lines_; }
  [[nodiscard]] Lines lines_with(const std::string& words) const;
  /// Forgets the calls and the planned failures.
  void clear();

  /// How objects and arguments are written in the lines.
  void name(IUnknown* object, const std::string& name) { names_[object] = name; }
  void forget(IUnknown* object) { names_.erase(object); }
  [[nodiscard]] std::string show(IUnknown* object) const;
  [[nodiscard]] std::string show(const VARIANT& value) const;
  [[nodiscard]] std::string show(const VARIANT* value) const {
    return value ? show(*value) : "null";
  }
  [[nodiscard]] static std::string show(BSTR text) { return text ? narrow(text) : "null"; }
  [[nodiscard]] static std::string show(long number) { return std::to_string(number); }

  /// Told of every call when it comes, before it is answered.
  std::function<void(const std::string& call)> on_call = [](const std::string&) {};
  /// Whether the host's objects say that they set error information.
  bool vouches = true;
  /// Objects of the fake host that are alive.
  long live_objects = 0;

 private:
  struct Failure {
    HRESULT result;
    const wchar_t* words;
  };
  static HRESULT answer(const Failure& failure);

  Lines lines_;
  std::map<std::size_t, Failure> by_number_;
  std::map<std::string, Failure> by_beginning_;
  std::map<IUnknown*, std::string> names_;
};

/// What was noted, put together.
inline Journal::Lines operator+(Journal::Lines left, const Journal::Lines& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

/// Makes `words` the thread's error information.
void set_error_words(const wchar_t* words);

/// Takes the description of the thread's error information; empty when there is none.
std::string take_error_words();

}  // namespace fake
