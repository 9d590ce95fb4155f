#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <utility>

#include "com/error.h"

namespace modeldb {

/// ADO's error `number` as the HRESULT that carries it: a script sees the number in Err.Number.
constexpr HRESULT ado_error(int number) {
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number);
}

// What the model database answers with. The numbers are those that ADO documents.
inline constexpr HRESULT kInvalidArgument = ado_error(3001);
inline constexpr HRESULT kCannotOpenFile = ado_error(3002);
inline constexpr HRESULT kCannotReadFile = ado_error(3003);
inline constexpr HRESULT kCannotWriteFile = ado_error(3004);
inline constexpr HRESULT kNoCurrentRecord = ado_error(3021);
inline constexpr HRESULT kIllegalOperation = ado_error(3219);
inline constexpr HRESULT kFeatureNotAvailable = ado_error(3251);
inline constexpr HRESULT kItemNotFound = ado_error(3265);
inline constexpr HRESULT kObjectClosed = ado_error(3704);
inline constexpr HRESULT kObjectOpen = ado_error(3705);
inline constexpr HRESULT kInvalidConnection = ado_error(3709);
inline constexpr HRESULT kInvalidTransaction = ado_error(3714);
inline constexpr HRESULT kIntegrityViolation = ado_error(3719);
inline constexpr HRESULT kPermissionDenied = ado_error(3720);
inline constexpr HRESULT kLocked = ado_error(3729);
/// A row has been changed by others since it was read (DB_E_CONCURRENCYVIOLATION).
inline constexpr HRESULT kChangedByOthers = static_cast<HRESULT>(0x80040E38);
/// A statement took longer than it may (DB_E_ABORTLIMITREACHED).
inline constexpr HRESULT kTimeout = static_cast<HRESULT>(0x80040E31);
/// The statement is no valid SQL, or names what does not exist (DB_E_ERRORSINCOMMAND).
inline constexpr HRESULT kErrorsInCommand = static_cast<HRESULT>(0x80040E14);

/// Raises `result` with `sentence` as the description that the script sees: what happened, where,
/// and what to do about it.
[[noreturn]] void fail(HRESULT result, std::wstring_view sentence);

/// What can be told from an engine's words on a text; each empty when it is not that.
struct TextFault {
  std::wstring missing_column;  ///< "Magnitud", as the text has it
  std::wstring last_word;       ///< at which the engine gave up
};

/// What is wrong with a text that a client has written, whatever that text is called. Its sentence
/// is what was raised on, followed by the clause.
class TextError : public com::Error {
 public:
  TextError(const com::Error& error, std::wstring clause, TextFault fault)
      : com::Error(error), clause_(std::move(clause)), fault_(std::move(fault)) {}

  /// " cannot be run: no such column: Magnitud. Correct it."
  [[nodiscard]] const std::wstring& clause() const { return clause_; }
  [[nodiscard]] const TextFault& fault() const { return fault_; }

 private:
  std::wstring clause_;
  TextFault fault_;
};

/// Raises a TextError: "The statement \"SELECT Nope\"", followed by the clause.
[[noreturn]] void fail_on_text(HRESULT result, std::wstring_view subject, std::wstring clause,
                               TextFault fault = {});
/// Raises the same of a text that is called something else.
[[noreturn]] void fail_on_text(std::wstring_view subject, const TextError& error);

/// `text` between quotation marks, for a sentence; the middle of a long one is left out.
std::wstring quoted(std::wstring_view text);

}  // namespace modeldb
