#include <algorithm>
#include <map>
#include <set>

#include "tools/checks/single_checks.h"

namespace checks {
namespace {

bool is_amplitude(const content::Source& source, double number) {
  return number == 0 || number == 1 ||
         std::ranges::any_of(source.amplitudes, [number](const content::Numbered& each) {
           return each.number == number;
         });
}

std::set<content::Key> keys_of(const content::Content& content, const std::string& table) {
  std::set<content::Key> keys;
  for (const content::SetTable& each : content.set_tables) {
    if (each.name != table) continue;
    for (const content::Set& set : each.sets) keys.insert(set.id);
  }
  return keys;
}

}  // namespace

void check_links(const Subject& subject, Findings& findings) {
  for (const content::Table& table : subject.content.tables) {
    const std::set<content::Key> sets = keys_of(subject.content, table.sets);
    for (std::size_t record = 0; record < table.size(); ++record) {
      const content::Row row(table, record);
      if (record < table.set_ids.size()) {
        for (const content::Key set : table.set_ids[record]) {
          if (!sets.contains(set)) findings.add(Code::dead_set_link, table, record);
        }
      }
      // A model of no deck follows tables of its host, which nobody here knows.
      if (!subject.source.deck.empty() && !is_amplitude(subject.source, row["MultiplierTableID"])) {
        findings.add(Code::dead_amplitude_link, table, record);
      }
      const auto system = static_cast<content::Key>(row["CoordinateSystemID"]);
      if (system == 0) continue;
      if (!subject.axes || !subject.axes(system, table.vertices[record])) {
        findings.add(Code::dead_system_link, table, record);
      }
    }
  }
}

}  // namespace checks
