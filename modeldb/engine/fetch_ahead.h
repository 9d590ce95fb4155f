#pragma once

#include <span>
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

  /// Runs `query`, whose rows will be read once, from the first to the last. For each of them, and
  /// until the end, queries will ask for the rows with the keys that it has in these columns, in
  /// columns of the same name. The query stays before its first row, even if it is reset once. The
  /// sentence of a failure speaks of `subject`, what a client has written of it, unless that is
  /// empty.
  virtual void expect(Statement& query, std::wstring_view subject,
                      std::span<const std::wstring_view> columns) = 0;
  virtual void end() noexcept = 0;
};

}  // namespace modeldb
