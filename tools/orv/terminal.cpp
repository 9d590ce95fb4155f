#include "tools/orv/terminal.h"

namespace orv {

bool is_terminal(DWORD standard_handle) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(standard_handle), &mode) != FALSE;
}

std::optional<std::size_t> terminal_width() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info)) return std::nullopt;
  return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

}  // namespace orv
