#pragma once

#include <windows.h>

#include <array>
#include <ostream>
#include <streambuf>

namespace orv {

/// Thrown by what prints when nobody reads it any more, as behind a pipe into head.
struct ReaderGone {};

/// Standard output as a stream's buffer, which can tell a reader that has gone from a full disk. It
/// serves `stream` while it lives.
class StandardOutput : public std::streambuf {
 public:
  explicit StandardOutput(std::ostream& stream);
  ~StandardOutput() override;
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

 protected:
  // Both throw ReaderGone, or an error with a sentence; then all further output is dropped.
  int_type overflow(int_type c) override;
  int sync() override;

 private:
  void write(std::size_t count);

  std::ostream& stream_;
  std::streambuf* before_;
  HANDLE handle_ = GetStdHandle(STD_OUTPUT_HANDLE);
  bool is_lost_ = false;
  std::array<char, 1 << 15> buffer_;
};

}  // namespace orv
