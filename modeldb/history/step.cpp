#include "modeldb/history/step.h"

#include <algorithm>

namespace modeldb {
namespace {

constexpr int kLastRank = 1000;
/// Of what a name counts up, before it ends.
constexpr int kMostPhrases = 3;

const Noun* noun_of(const std::wstring& table, const std::vector<Noun>& nouns) {
  const auto found = std::ranges::find(nouns, table, &Noun::table);
  return found == nouns.end() ? nullptr : &*found;
}

int rank_of(const RecordedTable& table, const std::vector<Noun>& nouns) {
  const Noun* const noun = noun_of(table.name, nouns);
  return noun ? noun->rank : kLastRank;
}

/// Of a table without a noun, in the words of databases.
std::wstring phrase(std::int64_t number, const RecordedTable& table, const Noun* noun,
                    const wchar_t* done) {
  const std::wstring count = std::to_wstring(number) + L' ';
  if (noun) return count + (number == 1 ? noun->one : noun->many) + L' ' + done;
  return count + (number == 1 ? L"row of " : L"rows of ") + table.name + L' ' + done;
}

}  // namespace

std::wstring step_name(const std::vector<RecordedTable>& tables, const std::vector<Noun>& nouns) {
  int rank = kLastRank;
  const auto has_changes = [](const RecordedTable& table) {
    return table.inserted + table.updated + table.deleted > 0;
  };
  for (const RecordedTable& table : tables) {
    if (has_changes(table)) rank = std::min(rank, rank_of(table, nouns));
  }
  std::wstring name;
  int phrases = 0;
  const auto add = [&](std::int64_t number, const RecordedTable& table, const wchar_t* done) {
    if (number == 0 || ++phrases > kMostPhrases) return;
    name += (name.empty() ? L"" : L", ") + phrase(number, table, noun_of(table.name, nouns), done);
  };
  for (const RecordedTable& table : tables) {
    if (rank_of(table, nouns) != rank) continue;
    add(table.inserted + table.updated, table, L"saved");
    add(table.deleted, table, L"deleted");
  }
  return phrases > kMostPhrases ? name + L" and more" : name;
}

}  // namespace modeldb
