#pragma once

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

struct ExpectedProperty {
  std::wstring name;
  Held held;
};

/// What a kind shows the world, written down by hand: nothing here is taken from the kinds.
///
/// The texts hold for the description "Tip load", the vertex 12, and in the column number k
/// (counted from 1) k.5 where a double is held and k otherwise.
struct ExpectedKind {
  std::string name;
  std::string table;
  long record_event;
  long collection_event;
  std::vector<ExpectedProperty> properties;  // in the order of the columns
  std::string columns;
  std::string values;
  std::string assignments;
  std::string defaults;  // the values of a new record
};

/// The kind of that name; one without a name when there is none.
ExpectedKind expected_kind(const std::string& name);
