#pragma once

#include <ostream>
#include <string>
#include <vector>

/// How a property holds its number and gives it back.
enum class Held {
  kDouble,
  kLong,
  /// A long of which the low 16 bits are kept.
  kShort,
  /// A truth value in 16 or 32 bits, which comes back as true or false.
  kFlag,
  kWideFlag,
  /// A truth value in 16 bits, which comes back as the number that it is.
  kRawFlag,
};

struct ExpectedColumn {
  std::string name;
  std::string property;
  Held held;
};

/// What a kind shows the world, written down by hand: nothing here is taken from the kinds.
struct ExpectedKind {
  std::string record;
  std::string collection;  // the name of the table, too
  long record_event;
  long collection_event;
  std::vector<ExpectedColumn> columns;  // in the order of the table
  std::string defaults;                 // the values text of a new record

  /// The texts for the description "Tip load", the vertex 12, and in the column number k (counted
  /// from 1) k.5 where a double is held and k otherwise.
  [[nodiscard]] std::string values() const;
  [[nodiscard]] std::string assignments() const;

  friend std::ostream& operator<<(std::ostream& out, const ExpectedKind& kind) {
    return out << kind.record;
  }
};

/// The eighteen kinds, in the order in which the type library has them.
const std::vector<ExpectedKind>& expected_kinds();
