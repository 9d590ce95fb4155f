#include "modeldb/sqlite/row_change.h"

#include "modeldb/engine/engine.h"

namespace modeldb {
namespace {

/// Before the letter of a change that forgets.
constexpr char kForgets = 'F';

RowChange::Kind kind_of(char letter) {
  const auto kind = static_cast<RowChange::Kind>(letter);
  switch (kind) {
    case RowChange::Kind::kInserted:
    case RowChange::Kind::kUpdated:
    case RowChange::Kind::kDeleted:
      return kind;
  }
  fail_as_damaged_history();
}

void skip_row(RowBytes& bytes) {
  bytes.integer();
  for (std::uint64_t left = bytes.count(); left > 0; --left) bytes.value();
}

void read_row(RowBytes& bytes, const KeptRow& other, KeptRow& row) {
  // A difference, which may have wrapped round.
  row.key = static_cast<std::int64_t>(static_cast<std::uint64_t>(other.key) +
                                      static_cast<std::uint64_t>(bytes.integer()));
  for (std::uint64_t left = bytes.count(); left > 0; --left) {
    RowValue value = bytes.value();
    if (value.type == RowValue::Type::kKey) {
      value = {.type = RowValue::Type::kInteger, .integer = row.key};
    } else if (value.type == RowValue::Type::kSame) {
      if (row.values.size() >= other.values.size()) fail_as_damaged_history();
      value = other.values[row.values.size()];
    }
    row.values.push_back(value);
  }
}

}  // namespace

void write_head(RowWriter& out, const RowChange& change) {
  if (change.forgets) out.letter(kForgets);
  out.letter(static_cast<char>(change.kind));
  out.count(change.table);
}

bool RowChanges::next(RowChange& change) {
  if (rest_.empty()) return false;
  char letter = rest_.letter();
  change.forgets = letter == kForgets;
  if (change.forgets) letter = rest_.letter();
  change.kind = kind_of(letter);
  change.table = rest_.count();
  const std::string_view rows = rest_.rest();
  if (change.kind != RowChange::Kind::kInserted) skip_row(rest_);
  if (change.kind != RowChange::Kind::kDeleted) skip_row(rest_);
  change.rows = rows.substr(0, rows.size() - rest_.rest().size());
  return true;
}

void RowReader::read(const RowChange& change, RowPair& rows) {
  if (change.forgets) first_rows_.clear();
  KeptRow& other = first_rows_[change.table];
  rows.before.values.clear();
  rows.after.values.clear();
  RowBytes bytes(change.rows);
  switch (change.kind) {
    case RowChange::Kind::kInserted:
      read_row(bytes, other, rows.after);
      other = rows.after;
      return;
    case RowChange::Kind::kUpdated:
      read_row(bytes, other, rows.before);
      read_row(bytes, rows.before, rows.after);
      break;
    case RowChange::Kind::kDeleted:
      read_row(bytes, other, rows.before);
  }
  other = rows.before;
}

}  // namespace modeldb
