#include "modeldb/store/row_values.h"

#include "com/error.h"
#include "com/sentence.h"
#include "modeldb/base/failure.h"
#include "modeldb/base/same_text.h"
#include "modeldb/store/row_text.h"

namespace modeldb {
namespace {

[[noreturn]] void fail_on_text(const Record& record, std::wstring_view what,
                               std::wstring_view text) {
  fail(kInvalidArgument, record.name() + L" cannot be saved: " + std::wstring(what) + L" " +
                             quoted(text) + L" is not what the model's table " +
                             record.kind().table + L" has room for.");
}

/// Raises the sentence that an engineer needs when one value is no number, such as one divided by
/// zero.
[[noreturn]] void fail_on_value(const Record& record, const NoNumber& fault) {
  const std::wstring& column = record.kind().columns[fault.column].name;
  fail(kInvalidArgument, record.name() + L" cannot be saved: its " + column + L" is " +
                             quoted(fault.text) +
                             L", which is no number. Set it to a finite number.");
}

}  // namespace

void require_text(const Record& record, host::SqlPiece piece, std::wstring_view expected) {
  const com::Bstr text = record.text(piece);
  if (!is_same_text(text.view(), expected)) fail_on_text(record, L"its text", text.view());
}

template <class Append>
void RowValues::read(const Record& record, host::SqlPiece piece, Append append) {
  // Before the text: reading the property trims what the text will show.
  description_ = record.description();
  text_ = record.text(piece);
  bound_.clear();
  try {
    append(text_.view(), description_.view(), bound_);
  } catch (const NoNumber& fault) {
    if (fault.column >= record.kind().columns.size())
      fail_on_text(record, L"its row", text_.view());
    fail_on_value(record, fault);
  } catch (const com::Error& error) {
    fail(error.result(), record.name() + L" cannot be saved. " + sentence_of(error));
  }
  const auto& columns = record.kind().columns;
  if (bound_.values.size() != columns.size()) fail_on_text(record, L"its row", text_.view());
  for (std::size_t column = 0; column < columns.size(); ++column) {
    const bool is_null = std::holds_alternative<std::nullptr_t>(bound_.values[column]);
    if (is_null && !columns[column].may_be_unknown) fail_on_value(record, {column, L"NULL"});
  }
}

void RowValues::read_for_insert(const Record& record) {
  require_text(record, host::SqlPiece::kTable, record.kind().table);
  require_text(record, host::SqlPiece::kColumns, record.table().column_list());
  read(record, host::SqlPiece::kValues,
       [](std::wstring_view values, std::wstring_view description, BoundText& out) {
         append_values(values, description, out.values);
       });
}

void RowValues::read_for_update(const Record& record) {
  require_text(record, host::SqlPiece::kTable, record.kind().table);
  require_text(record, host::SqlPiece::kKeyColumn, record.kind().key);
  read(record, host::SqlPiece::kAssignments, append_assignments);
  if (bound_.text != record.table().assignments()) {
    fail_on_text(record, L"its row", text_.view());
  }
}

void RowValues::read_own(const Record& record, const OwnRow& row) {
  bound_.clear();
  try {
    row.append_values(bound_.values);
  } catch (const NoNumber& fault) {
    fail_on_value(record, fault);
  }
}

void RowValues::read_saved(const Record& record, std::wstring_view values) {
  saved_text_ = values;
  saved_.clear();
  // Only the description stands between quotes, whatever is in it.
  const std::wstring_view text = saved_text_;
  const auto end = text.rfind(L'\'');
  const auto description =
      end == std::wstring_view::npos || end == 0 ? std::wstring_view() : text.substr(1, end - 1);
  try {
    append_values(text, description, saved_);
  } catch (const NoNumber&) {
    saved_.clear();
  }
  if (saved_.size() != record.kind().columns.size()) {
    fail_on_text(record, L"its saved row", text);
  }
}

}  // namespace modeldb
