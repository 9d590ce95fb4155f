#include "modeldb/schema/nearest_column.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

#include "modeldb/base/ascii.h"

namespace modeldb {
namespace {

/// How many letters have to be put in, taken out or replaced to make one name of the other
/// (Levenshtein), whatever their case.
std::size_t distance(std::wstring_view from, std::wstring_view to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t replaced = diagonal + (folded(from[i]) == folded(to[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::wstring nearest_column(const Kind& kind, std::wstring_view name) {
  if (same_name(name, L"ID")) return kind.key;
  // A name of which more than half is other letters is another name.
  std::size_t best = name.size() / 2 + 1;
  std::wstring nearest;
  const auto consider = [&](const std::wstring& column) {
    const std::size_t letters = distance(name, column);
    if (letters >= best) return;
    best = letters;
    nearest = column;
  };
  consider(kind.key);
  for (const Column& column : kind.columns) consider(column.name);
  return nearest;
}

}  // namespace modeldb
