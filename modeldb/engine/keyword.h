#pragma once

#include <cstdint>
#include <string_view>

namespace modeldb {

/// The keywords by which texts of clients are told apart, and places in them.
enum class Keyword : std::uint8_t {
  kNone,
  kAnd,
  kAs,
  kBegin,
  kCommit,
  kCross,
  kDelete,
  kExcept,
  kFrom,
  kFull,
  kGroup,
  kHaving,
  kIndexed,
  kInner,
  kInsert,
  kIntersect,
  kJoin,
  kLeft,
  kLimit,
  kNatural,
  kOn,
  kOr,
  kOrder,
  kOuter,
  kReturning,
  kRight,
  kRollback,
  kSelect,
  kSet,
  kTransaction,
  kUnion,
  kUpdate,
  kUsing,
  kValues,
  kWhere,
  kWindow,
  kWith,
};

/// The keyword that `word` is, whatever the case of its letters; kNone for any other name.
Keyword keyword_of(std::wstring_view word);

}  // namespace modeldb
