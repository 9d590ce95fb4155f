#include "modeldb/store/reverted_rows.h"

#include <algorithm>
#include <utility>

namespace modeldb {
namespace {

std::wstring held_values(const Record& record) {
  return std::wstring(record.text(host::SqlPiece::kSavedValues).view());
}

}  // namespace

void RevertedRows::add(const Record& record, std::wstring values) {
  forget(record);
  rows_.push_back({record, held_values(record), std::move(values)});
}

std::wstring RevertedRows::saved_values(const Record& record) const {
  std::wstring held = held_values(record);
  const auto row =
      std::ranges::find_if(rows_, [&](const Row& known) { return known.record.is_same(record); });
  // A record that was loaded since knows better.
  return row == rows_.end() || row->held != held ? held : row->values;
}

void RevertedRows::forget(const Record& record) {
  std::erase_if(rows_, [&](const Row& known) { return known.record.is_same(record); });
}

}  // namespace modeldb
