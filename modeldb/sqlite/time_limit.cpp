#include "modeldb/sqlite/time_limit.h"

#include <sqlite3.h>
#include <windows.h>

namespace modeldb {

void TimeLimit::install(sqlite3* handle) {
  // A single instruction may call a function that works on a text of many megabytes.
  constexpr int kInstructions = 64;
  sqlite3_progress_handler(handle, kInstructions, &is_over, this);
}

int TimeLimit::is_over(void* self) {
  const auto end = static_cast<TimeLimit*>(self)->end_;
  return end != 0 && GetTickCount64() > end ? 1 : 0;
}

TimeLimit::Step::Step(TimeLimit& owner, Seconds limit, std::uint64_t& spent)
    : owner_(owner), spent_(spent) {
  if (limit == 0) return;
  constexpr std::uint64_t kMilliseconds = 1000;
  const std::uint64_t whole = limit * kMilliseconds;
  begin_ = GetTickCount64();
  owner_.end_ = begin_ + (whole > spent_ ? whole - spent_ : 0);
}

TimeLimit::Step::~Step() {
  if (begin_ == 0) return;
  spent_ += GetTickCount64() - begin_;
  owner_.end_ = 0;
}

}  // namespace modeldb
