#include "modeldb/objects/row_image.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

#include "host/protocol.h"
#include "modeldb/engine/number.h"
#include "modeldb/store/row_text.h"

namespace modeldb {
namespace {

constexpr auto kCurrent = [](const auto& value) -> const auto& { return value.current; };
constexpr auto kSaved = [](const auto& value) -> const auto& { return value.saved; };
// Of a vertex whose coordinates need all of their digits.
constexpr std::size_t kUsualLength = 100;
constexpr std::wstring_view kUnknown = L"NULL";

void append_text(std::wstring& text, std::wstring_view words) { text += words; }

/// The shortest text that gives the number back exactly.
void append_text(std::wstring& text, double number) {
  char digits[32];
  wchar_t wide[std::size(digits)];
  char* const end = std::to_chars(digits, std::end(digits), number).ptr;
  text += std::wstring_view(wide, std::copy(digits, end, wide));
}

}  // namespace

void RowImage::forget() {
  description_ = {};
  numbers_ = {};
  origins_ = {};
}

void RowImage::change_row(bool is_new) {
  for_each(*this, [&](auto& value, std::size_t column) {
    Origin& origin = origins_[column];
    if (origin != Origin::kStored) return;
    if (!is_new) value = {};
    origin = is_new ? Origin::kPut : Origin::kNone;
  });
}

template <class T, class Stored>
bool RowImage::complete(Value<T>& value, std::size_t column, Stored stored) {
  // Most often nothing is new: a set is looked up for every record that is saved in it.
  if (!(value.saved == stored)) value.saved = T(stored);
  const bool same = value.current == value.saved;
  Origin& origin = origins_[column];
  if (origin == Origin::kPut) return same;
  if (!same) value.current = value.saved;
  origin = Origin::kStored;
  return true;
}

std::wstring_view RowImage::stored(const Statement& row, const Value<Text>&, std::size_t column) {
  return row.text(static_cast<int>(column));
}

double RowImage::stored(const Statement& row, const Value<double>&, std::size_t column) {
  return row.real(static_cast<int>(column));
}

bool RowImage::complete_unknown(std::size_t column) {
  Origin& origin = origins_[column];
  if (origin == Origin::kStored) origin = Origin::kNone;
  return origin == Origin::kNone;
}

bool RowImage::complete(const Statement& row) {
  bool same = true;
  for_each(*this, [&](auto& value, std::size_t column) {
    const bool is_null = row.type(static_cast<int>(column)) == Statement::Type::kNull;
    same &= is_null && column > 0 ? complete_unknown(column)
                                  : complete(value, column, stored(row, value, column));
  });
  return same;
}

bool RowImage::has_numbers() const {
  return std::any_of(origins_.begin() + 1, origins_.end(),
                     [](Origin origin) { return origin != Origin::kNone; });
}

bool RowImage::was_stored_as(const Statement& row) const {
  bool same = true;
  for_each(*this, [&](const auto& value, std::size_t column) {
    same &= value.saved == stored(row, value, column);
  });
  return same;
}

void RowImage::commit() {
  const bool are_known = has_numbers();
  for_each(*this, [&](auto& value, std::size_t column) {
    if (!(value.saved == value.current)) value.saved = value.current;
    if (column == 0 || are_known) origins_[column] = Origin::kStored;
  });
}

RowImage::Before RowImage::before() const {
  Before before;
  before.description_ = description_.saved;
  for (std::size_t index = 0; index < numbers_.size(); ++index) {
    before.numbers_[index] = numbers_[index].saved;
  }
  before.origins_ = origins_;
  return before;
}

void RowImage::take_back(const Before& before) {
  description_.saved = before.description_;
  for (std::size_t index = 0; index < numbers_.size(); ++index) {
    numbers_[index].saved = before.numbers_[index];
  }
  for (std::size_t column = 0; column < origins_.size(); ++column) {
    const bool was_put = before.origins_[column] == Origin::kPut;
    if (was_put && origins_[column] == Origin::kStored) origins_[column] = Origin::kPut;
  }
}

void RowImage::append_values(std::vector<Literal>& out) const {
  out.emplace_back(description());
  const bool are_known = has_numbers();
  for (std::size_t column = 1; column < table_.kind().columns.size(); ++column) {
    const double number = numbers_[column - 1].current;
    if (!std::isfinite(number)) throw NoNumber{column, std::isnan(number) ? L"nan" : L"inf"};
    out.push_back(are_known ? literal_of(number) : nullptr);
  }
}

template <class Pick>
std::wstring RowImage::values(Pick pick) const {
  std::wstring text;
  text.reserve(kUsualLength);
  const bool are_known = has_numbers();
  for_each(*this, [&](const auto& value, std::size_t column) {
    text += column == 0 ? L"'" : L", ";
    column == 0 || are_known ? append_text(text, pick(value)) : append_text(text, kUnknown);
    if (column == 0) text += L'\'';
  });
  return text;
}

template <class Pick>
std::wstring RowImage::assignments(Pick pick) const {
  std::wstring text;
  const bool are_known = has_numbers();
  for_each(*this, [&](const auto& value, std::size_t column) {
    if (column > 0) text += L", ";
    text.append(table_.kind().columns[column].name).append(column == 0 ? L" = '" : L" = ");
    column == 0 || are_known ? append_text(text, pick(value)) : append_text(text, kUnknown);
    if (column == 0) text += L'\'';
  });
  return text;
}

com::Bstr RowImage::text(long code) const {
  switch (static_cast<host::SqlPiece>(code)) {
    case host::SqlPiece::kTable:
      return com::Bstr(table_.kind().table);
    case host::SqlPiece::kKeyColumn:
      return com::Bstr(table_.kind().key);
    case host::SqlPiece::kColumns:
      return com::Bstr(table_.column_list());
    case host::SqlPiece::kValues:
      return com::Bstr(values(kCurrent));
    case host::SqlPiece::kSavedValues:
      return com::Bstr(values(kSaved));
    case host::SqlPiece::kAssignments:
      return com::Bstr(assignments(kCurrent));
    case host::SqlPiece::kSavedAssignments:
      return com::Bstr(assignments(kSaved));
    default:
      return com::Bstr(L"");
  }
}

}  // namespace modeldb
