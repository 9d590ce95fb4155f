#pragma once

#include <string_view>

#include "records/text.h"

namespace orv {

// The texts of a record's row. Each begins with the columns that all kinds have; `for_each` calls
// what it is given with every further column and its value, `columns` are these columns.

inline constexpr std::wstring_view kDescriptionColumn = L"Description";
inline constexpr std::wstring_view kVertexColumn = L"VertexID";

/// The values of the columns that every kind begins with.
struct CommonValues {
  std::wstring_view description;
  long vertex_id;
};

template <class Columns>
void append_columns(Text& text, const Columns& columns) {
  text << kDescriptionColumn << L", " << kVertexColumn;
  for (const auto& column : columns) text << L", " << column.name;
}

/// The description goes between its quotes as it stands; doubling the quotes inside it, or binding
/// it, is the host's business.
template <class ForEach>
void append_values(Text& text, const CommonValues& common, ForEach&& for_each) {
  text << L"'" << common.description << L"', " << common.vertex_id;
  for_each(
      [&](const auto& column, const auto& value) { text << column.separator_in_values << value; });
}

template <class ForEach>
void append_assignments(Text& text, const CommonValues& common, ForEach&& for_each) {
  text << kDescriptionColumn << L" = '" << common.description << L"', " << kVertexColumn << L" = "
       << common.vertex_id;
  for_each([&](const auto& column, const auto& value) {
    text << L", " << column.name << L" = " << value;
  });
}

}  // namespace orv
