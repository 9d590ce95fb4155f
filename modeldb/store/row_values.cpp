#include "modeldb/store/row_values.h"

#include <ranges>

#include "com/error.h"
#include "com/sentence.h"
#include "modeldb/base/failure.h"
#include "modeldb/engine/number.h"
#include "modeldb/store/row_text.h"

namespace modeldb {
namespace {

constexpr std::wstring_view kBlanks = L" \t";

std::wstring_view trimmed(std::wstring_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// The number in an item of a text: all of it, or what follows its equals sign.
std::wstring_view value_of(std::wstring_view item) {
  const auto equals = item.find(L'=');
  return trimmed(equals == std::wstring_view::npos ? item : item.substr(equals + 1));
}

bool is_number(std::wstring_view text) {
  if (text.starts_with(L'-')) text.remove_prefix(1);
  return parse_number(text).has_value();
}

/// Raises the sentence that an engineer needs when one value is no number, such as one divided by
/// zero. Other faults of a text are those of a program; they are left to the caller.
void fail_on_value(const Record& record, std::wstring_view text, std::wstring_view description) {
  const auto begin = text.find(description);
  if (begin == std::wstring_view::npos) return;
  // The columns after the description's.
  auto column = std::next(record.kind().columns.begin());
  const auto items = text.substr(begin + description.size());
  for (const auto part : std::views::split(items, L',') | std::views::drop(1)) {
    if (column == record.kind().columns.end()) return;
    const auto value = value_of({part.begin(), part.end()});
    if (!is_number(value)) {
      fail(kInvalidArgument, record.name() + L" cannot be saved: its " + column->name + L" is " +
                                 quoted(value) +
                                 L", which is no number. Set it to a finite number.");
    }
    ++column;
  }
}

[[noreturn]] void fail_on_text(const Record& record, std::wstring_view what,
                               std::wstring_view text) {
  fail(kInvalidArgument, record.name() + L" cannot be saved: " + std::wstring(what) + L" " +
                             quoted(text) + L" is not what the model's table " +
                             record.kind().table + L" has room for.");
}

}  // namespace

void require_text(const Record& record, host::SqlPiece piece, std::wstring_view expected) {
  const com::Bstr text = record.text(piece);
  if (text.view() != expected) fail_on_text(record, L"its text", text.view());
}

template <class Append>
void RowValues::read(const Record& record, host::SqlPiece piece, Append append) {
  // Before the text: reading the property trims what the text will show.
  description_ = record.description();
  text_ = record.text(piece);
  bound_.clear();
  try {
    append(text_.view(), description_.view(), bound_);
  } catch (const com::Error& error) {
    fail_on_value(record, text_.view(), description_.view());
    fail(error.result(), record.name() + L" cannot be saved. " + sentence_of(error));
  }
  if (bound_.values.size() != record.kind().columns.size()) {
    fail_on_text(record, L"its row", text_.view());
  }
}

void RowValues::read_for_insert(const Record& record) {
  require_text(record, host::SqlPiece::kTable, record.kind().table);
  require_text(record, host::SqlPiece::kColumns, record.table().column_list());
  read(record, host::SqlPiece::kValues, append_values);
}

void RowValues::read_for_update(const Record& record) {
  require_text(record, host::SqlPiece::kTable, record.kind().table);
  require_text(record, host::SqlPiece::kKeyColumn, record.kind().key);
  read(record, host::SqlPiece::kAssignments, append_assignments);
  if (bound_.text != record.table().assignments()) {
    fail_on_text(record, L"its row", text_.view());
  }
}

}  // namespace modeldb
