#include "modeldb/sqlite/row_change.h"

namespace modeldb {
namespace {

void read_values(RowBytes& bytes, std::int64_t& key, std::vector<RowValue>& values) {
  key = bytes.integer();
  const std::uint64_t size = bytes.count();
  for (std::uint64_t i = 0; i < size; ++i) values.push_back(bytes.value());
}

}  // namespace

void RowPair::read(const RowChange& change) {
  old_values.clear();
  new_values.clear();
  RowBytes bytes(change.body);
  if (change.kind != RowChange::Kind::kInserted) read_values(bytes, old_key, old_values);
  if (change.kind != RowChange::Kind::kDeleted) read_values(bytes, new_key, new_values);
  for (std::size_t i = 0; i < new_values.size() && i < old_values.size(); ++i) {
    if (new_values[i].type == RowValue::Type::kSame) new_values[i] = old_values[i];
  }
}

void append_change(std::string& out, const RowChange& change) {
  out += static_cast<char>(change.kind);
  append_count(out, change.table);
  append_count(out, change.body.size());
  out += change.body;
}

bool RowChanges::next(RowChange& change) {
  if (rest_.empty()) return false;
  change.kind = static_cast<RowChange::Kind>(rest_.letter());
  change.table = rest_.count();
  change.body = rest_.bytes(rest_.count());
  return true;
}

}  // namespace modeldb
