#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>

namespace orv {

/// Whether the standard handle (STD_OUTPUT_HANDLE, STD_ERROR_HANDLE) is a terminal.
bool is_terminal(DWORD standard_handle);

/// Columns of the terminal that standard output is; nothing when it is a file or a pipe.
std::optional<std::size_t> terminal_width();

}  // namespace orv
