#include "modeldb/objects/row_image.h"

#include <charconv>

#include "host/protocol.h"

namespace modeldb {
namespace {

constexpr auto kCurrent = [](const auto& value) -> const auto& { return value.current; };
constexpr auto kSaved = [](const auto& value) -> const auto& { return value.saved; };

/// The shortest text that gives the number back exactly.
std::wstring digits(double number) {
  char text[32];
  return {text, std::to_chars(text, std::end(text), number).ptr};
}

}  // namespace

template <class T>
void RowImage::Value<T>::change_row(bool is_new) {
  if (origin != Origin::kStored) return;
  if (is_new) {
    origin = Origin::kPut;
  } else {
    *this = {};
  }
}

template <class T>
bool RowImage::Value<T>::complete(T stored) {
  saved = stored;
  if (origin != Origin::kPut) {
    current = std::move(stored);
    origin = Origin::kStored;
  }
  return current == saved;
}

template <class T>
void RowImage::Value<T>::take_back(const Value& before) {
  saved = before.saved;
  if (origin == Origin::kStored && before.origin == Origin::kPut) origin = Origin::kPut;
}

void RowImage::change_row(bool is_new) {
  description_.change_row(is_new);
  for (auto& number : numbers(*this)) number.change_row(is_new);
}

bool RowImage::complete(const Statement& row) {
  int column = 0;
  bool same = description_.complete(std::wstring(row.text(column)));
  for (auto& number : numbers(*this)) same &= number.complete(row.real(++column));
  return same;
}

bool RowImage::was_stored_as(const Statement& row) const {
  int column = 0;
  bool same = description_.saved == row.text(column);
  for (const auto& number : numbers(*this)) same &= number.saved == row.real(++column);
  return same;
}

void RowImage::commit() {
  description_.store(description_.current);
  for (auto& number : numbers(*this)) number.store(number.current);
}

void RowImage::take_back(const RowImage& before) {
  description_.take_back(before.description_);
  auto earlier = numbers(before).begin();
  for (auto& number : numbers(*this)) number.take_back(*earlier++);
}

template <class Pick>
std::wstring RowImage::values(Pick pick) const {
  std::wstring text = L"'" + pick(description_) + L"'";
  for (const auto& number : numbers(*this)) text += L", " + digits(pick(number));
  return text;
}

template <class Pick>
std::wstring RowImage::assignments(Pick pick) const {
  auto column = table_.kind().columns.begin();
  std::wstring text = column->name + L" = '" + pick(description_) + L"'";
  for (const auto& number : numbers(*this)) {
    text += L", " + (++column)->name + L" = " + digits(pick(number));
  }
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
