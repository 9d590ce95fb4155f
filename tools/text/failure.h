#pragma once

#include <windows.h>

#include <string_view>

namespace text {

// Failures carry the number of ADO that fits, as those of the model database do.
inline constexpr HRESULT kInvalidArgument = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 3001);
inline constexpr HRESULT kCannotReadFile = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 3003);
inline constexpr HRESULT kCannotWriteFile = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 3004);
inline constexpr HRESULT kIllegalOperation = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 3219);

/// Raises `result` with `sentence` (UTF-8) as the description that the script sees: what happened,
/// where, and what to do about it.
[[noreturn]] void fail(HRESULT result, std::string_view sentence);

}  // namespace text
