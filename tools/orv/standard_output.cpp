#include "tools/orv/standard_output.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace orv {

StandardOutput::StandardOutput(std::ostream& stream) : stream_(stream), before_(stream.rdbuf()) {
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  stream_.rdbuf(this);
  stream_.exceptions(std::ios::badbit);  // what this throws gets through the stream
}

StandardOutput::~StandardOutput() {
  stream_.exceptions(std::ios::goodbit);
  stream_.rdbuf(before_);
}

StandardOutput::int_type StandardOutput::overflow(int_type c) {
  // A line or a character in two pieces would be broken on a terminal.
  const std::string_view bytes(pbase(), static_cast<std::size_t>(pptr() - pbase()));
  const std::size_t line = bytes.rfind('\n');
  write(line == std::string_view::npos ? bytes.size() : line + 1);
  if (!traits_type::eq_int_type(c, traits_type::eof())) {
    *pptr() = traits_type::to_char_type(c);
    pbump(1);
  }
  return traits_type::not_eof(c);
}

int StandardOutput::sync() {
  write(static_cast<std::size_t>(pptr() - pbase()));
  return 0;
}

/// Writes so many of the bytes, and moves the others to the beginning.
void StandardOutput::write(std::size_t count) {
  const char* const end = pptr();
  const char* rest = pbase() + count;
  DWORD error = ERROR_SUCCESS;
  for (const char* at = pbase(); at < rest && !is_lost_;) {
    DWORD written = 0;
    if (!WriteFile(handle_, at, static_cast<DWORD>(rest - at), &written, nullptr)) {
      error = GetLastError();
      is_lost_ = true;
    } else if (written == 0) {
      error = ERROR_DISK_FULL;
      is_lost_ = true;
    }
    at += written;
  }
  const auto left = end - rest;
  std::copy(rest, end, buffer_.data());
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  pbump(static_cast<int>(left));
  if (error == ERROR_SUCCESS) return;
  if (error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA || error == ERROR_PIPE_NOT_CONNECTED) {
    throw ReaderGone();
  }
  throw std::runtime_error(
      "What was printed could not be written to its end. Is there room for it?");
}

}  // namespace orv
