#pragma once

#include <string_view>

#include "modeldb/engine/statement.h"

namespace modeldb {

/// Where each statement costs a way to another machine and back: an engine that is told by which
/// keys rows are about to be asked for, one after the other, asks for many of them at once.
class FetchAhead {
 public:
  FetchAhead() = default;
  FetchAhead(const FetchAhead&) = delete;
  FetchAhead& operator=(const FetchAhead&) = delete;
  virtual ~FetchAhead() = default;

  /// From here to the end, queries that ask for the rows with a key in this column will ask for
  /// the keys that `query`, which is about to be read, has in the column of that name, mostly in
  /// its order. Runs it; it stays before its first row, even if it is reset once.
  virtual void expect(std::wstring_view column, Statement& query) = 0;
  virtual void end() noexcept = 0;
};

}  // namespace modeldb
