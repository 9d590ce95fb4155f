#include "tools/checks/findings.h"

#include <algorithm>

#include "tools/content/record_name.h"
#include "tools/content/shown_text.h"

namespace checks {
namespace {

/// Records that a finding names; the others are counted.
constexpr std::size_t kNamed = 3;

std::string counted(std::size_t count, const std::string& table) {
  return std::to_string(count) + " " + (count == 1 ? content::singular(table) : table);
}

std::string step_name(int step) {
  return step == 0 ? "before the first step" : "step " + std::to_string(step);
}

std::string and_more(std::size_t count) {
  return count > kNamed ? " and " + std::to_string(count - kNamed) + " more" : "";
}

std::string names_of(const content::Table& table, const std::vector<std::size_t>& records) {
  std::string text;
  for (std::size_t i = 0; i < std::min(records.size(), kNamed); ++i) {
    text.append(i == 0 ? "" : ", ")
        .append(content::shown_name(content::name_of(table, records[i])));
    const content::Key node = table.vertices[records[i]];
    // A record without a key is named by its vertex already.
    if (node != 0 && table.ids[records[i]] != 0) text += " on node " + std::to_string(node);
  }
  return text + and_more(records.size());
}

std::string names_of(const std::string& table, const std::vector<content::Set>& sets) {
  std::string text;
  for (std::size_t i = 0; i < std::min(sets.size(), kNamed); ++i) {
    text.append(i == 0 ? "" : ", ");
    text += content::singular(table) + " " + std::to_string(sets[i].id);
    text += " '" + content::shown_name(sets[i].name) + "'";
  }
  return text + and_more(sets.size());
}

}  // namespace

void Findings::add(Code code, const content::Table& table, std::size_t record, std::string_view set,
                   int step) {
  Entry& entry = entries_[{code, table.name, std::string(set), step}];
  entry.severity = words_of(code).severity;
  entry.table = &table;
  if (entry.records.empty() || entry.records.back() != record) entry.records.push_back(record);
}

void Findings::add_set(Code code, Severity severity, const std::string& table,
                       const content::Set& set) {
  // The severity stands in the place of the step, so that notes and warnings stay apart.
  Entry& entry = entries_[{code, table, "", -1 - static_cast<int>(severity)}];
  entry.severity = severity;
  entry.sets.push_back(set);
}

void Findings::add_step(Code code, Severity severity, int step) {
  entries_[{code, "", "", step}].severity = severity;
}

Finding Findings::told(const Spot& spot, const Entry& entry) {
  const auto& [code, table, set, step] = spot;
  const CodeWords& words = words_of(code);
  Finding finding;
  finding.code = words.name;
  finding.severity = entry.severity;
  finding.advice = words.advice;
  finding.table = table;
  finding.set = set;
  finding.step = std::max(step, -1);
  if (entry.records.empty() && entry.sets.empty()) {
    finding.what = "Step " + std::to_string(step) + " " + std::string(words.one);
    finding.where = "step " + std::to_string(step);
    return finding;
  }
  const std::size_t count = entry.records.size() + entry.sets.size();
  finding.what = counted(count, table) + " " + std::string(count == 1 ? words.one : words.many);
  if (entry.table == nullptr) {
    finding.where = names_of(table, entry.sets);
    for (const content::Set& each : entry.sets) finding.records.push_back(each.id);
    return finding;
  }
  finding.where = names_of(*entry.table, entry.records);
  if (!set.empty()) finding.where += ", in the set '" + content::shown_name(set) + "'";
  // The names of most sets tell the step.
  if (step >= 0 && set.empty()) finding.where += ", " + step_name(step);
  for (const std::size_t record : entry.records) {
    finding.records.push_back(entry.table->ids[record]);
    finding.nodes.push_back(entry.table->vertices[record]);
  }
  return finding;
}

std::vector<Finding> Findings::finish() {
  std::vector<Finding> findings;
  for (const auto& [spot, entry] : entries_) findings.push_back(told(spot, entry));
  entries_.clear();
  std::ranges::stable_sort(findings, std::ranges::greater(), &Finding::severity);
  return findings;
}

}  // namespace checks
