#include "modeldb/schema/history_terms.h"

#include <cwctype>

#include "modeldb/schema/definition.h"
#include "modeldb/schema/host_kinds.h"

namespace modeldb {
namespace {

/// What a step is about: its records rather than their sets, these rather than their vertices, and
/// links when there is nothing else.
enum Rank { kRecords, kSets, kVertices, kLinks };

/// "prescribed velocity" of "NodalPrescribedVelocity"
std::wstring words_of(std::wstring_view name) {
  constexpr std::wstring_view kPrefix = L"Nodal";
  if (name.starts_with(kPrefix)) name.remove_prefix(kPrefix.size());
  std::wstring words;
  for (const wchar_t letter : name) {
    if (std::iswupper(letter) && !words.empty()) words += L' ';
    words += static_cast<wchar_t>(std::towlower(letter));
  }
  return words;
}

Rank rank_of(const Kind& kind) {
  if (kind.table == vertex_kind().table) return kVertices;
  return kind.sets.empty() && !stands_on_vertex(kind) ? kSets : kRecords;
}

}  // namespace

HistoryTerms history_terms(const Catalogue& catalogue) {
  HistoryTerms terms;
  for (const Table& table : catalogue.tables()) {
    const Kind& kind = table.kind();
    terms.nouns.push_back({.table = kind.table,
                           .one = words_of(kind.object),
                           .many = words_of(kind.table),
                           .rank = rank_of(kind)});
    if (stands_on_vertex(kind)) {
      terms.references.push_back({.table = kind.table,
                                  .column = vertex_kind().key,
                                  .to_table = vertex_kind().table,
                                  .to_key = vertex_kind().key});
    }
    const Table* const sets = catalogue.find(kind.sets);
    if (!sets) continue;
    terms.nouns.push_back({.table = kind.link_table(),
                           .one = L"link of a " + words_of(kind.object) + L" to a set",
                           .many = L"links of " + words_of(kind.table) + L" to sets",
                           .rank = kLinks});
    for (const Kind* const end : {&kind, &sets->kind()}) {
      terms.references.push_back({.table = kind.link_table(),
                                  .column = end->key,
                                  .to_table = end->table,
                                  .to_key = end->key});
    }
  }
  return terms;
}

}  // namespace modeldb
