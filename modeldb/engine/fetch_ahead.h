#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

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
  /// these keys, mostly in this order.
  virtual void expect(std::wstring_view column, std::vector<std::int64_t> keys) = 0;
  virtual void end() noexcept = 0;
};

}  // namespace modeldb
