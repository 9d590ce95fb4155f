#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "records/text.h"

namespace orv {

// The texts of a record's row. Each begins with the columns that all kinds have; `for_each` calls
// what it is given with every further column and its value.

inline constexpr std::wstring_view kDescriptionColumn = L"Description";
inline constexpr std::wstring_view kVertexColumn = L"VertexID";

/// The values of the columns that every kind begins with.
struct CommonValues {
  std::wstring_view description;
  long vertex_id;
};

/// Calls `visit` with each piece of the list of columns: their names, and what separates them.
template <class Columns, class Visit>
constexpr void for_each_piece(const Columns& columns, Visit visit) {
  visit(kDescriptionColumn);
  visit(std::wstring_view(L", "));
  visit(kVertexColumn);
  for (const auto& column : columns) {
    visit(std::wstring_view(L", "));
    visit(column.name);
  }
}

/// The list of columns, in an array that the compiler makes; `columns` gives them.
template <class Columns>
consteval auto column_list(Columns columns) {
  constexpr std::size_t kLength = [columns] {
    std::size_t length = 0;
    for_each_piece(columns(), [&](std::wstring_view piece) { length += piece.size(); });
    return length;
  }();
  std::array<wchar_t, kLength> list{};
  auto end = list.begin();
  for_each_piece(columns(),
                 [&](std::wstring_view piece) { end = std::ranges::copy(piece, end).out; });
  return list;
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
