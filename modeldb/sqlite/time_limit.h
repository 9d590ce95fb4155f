#pragma once

#include <cstdint>

#include "modeldb/engine/statement.h"

struct sqlite3;

namespace modeldb {

/// Ends statements that run for too long. Only time within SQLite counts, over all rows of a
/// statement together: a client may take as long as it likes between them.
class TimeLimit {
 public:
  void install(sqlite3* handle);

  /// One step of a statement, which adds its time to `spent` (milliseconds) and is ended when that
  /// is beyond `limit`.
  class Step {
   public:
    Step(TimeLimit& owner, Seconds limit, std::uint64_t& spent);
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;
    ~Step();

   private:
    TimeLimit& owner_;
    std::uint64_t& spent_;
    std::uint64_t begin_ = 0;  // 0: no limit
  };

 private:
  static int is_over(void* self);

  std::uint64_t end_ = 0;  // 0: no limit
};

}  // namespace modeldb
