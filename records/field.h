#pragma once

#include <cstdint>
#include <string_view>
#include <variant>

namespace orv {

/// One persisted value, held twice: as it is now, and as it was last loaded or committed.
template <class T>
struct Field {
  T current{};
  T saved{};

  constexpr Field() = default;
  constexpr explicit Field(T value) : current(value), saved(value) {}

  void commit() { saved = current; }
};

/// A truth value in the 16 bits in which automation passes it; any number counts, not only -1.
using Flag = Field<std::int16_t>;
/// A truth value held in 32 bits.
using WideFlag = Field<std::int32_t>;
using Integer = Field<std::int32_t>;
using Real = Field<double>;

/// One column of a kind's table: its name and the field that it stores. What separates it from the
/// column before is the same everywhere but in one values text.
template <class Record>
struct Column {
  using Member = std::variant<Flag Record::*, Integer Record::*, Real Record::*>;

  std::wstring_view name;
  Member member;
  std::wstring_view separator_in_values = L", ";
};

/// What the host and the database call a kind.
struct KindNames {
  /// Names the key column (object name + "ID") and the link table (object name + its sets).
  std::wstring_view object;
  std::wstring_view table;
  /// By these codes the host files the events of a record and of a collection.
  long record_event;
  long collection_event;

  constexpr KindNames(std::wstring_view object_name, std::wstring_view table_name, long event)
      : KindNames(object_name, table_name, event, event) {}
  constexpr KindNames(std::wstring_view object_name, std::wstring_view table_name,
                      long event_of_record, long event_of_collection)
      : object(object_name),
        table(table_name),
        record_event(event_of_record),
        collection_event(event_of_collection) {}
};

}  // namespace orv
