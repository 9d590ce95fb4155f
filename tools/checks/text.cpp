#include "tools/checks/text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "tools/checks/acting.h"
#include "tools/checks/json.h"
#include "tools/deck/record_rows.h"

namespace checks {
namespace {

using Cells = std::vector<std::string>;

std::string number(double value) {
  std::array<char, 32> digits;
  std::snprintf(digits.data(), digits.size(), "%.6g", value == 0 ? 0 : value);
  return digits.data();
}

/// Columns as wide as their widest cell; `numbers` of them, from the first on, stand at the right.
std::string table_text(const std::vector<Cells>& rows, std::size_t first_number,
                       std::size_t end_number) {
  std::vector<std::size_t> widths;
  for (const Cells& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  std::string text;
  for (const Cells& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string gap(widths[i] - row[i].size(), ' ');
      const bool is_number = first_number <= i && i < end_number;
      line += (i == 0 ? "" : "  ") + (is_number ? gap + row[i] : row[i] + gap);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
  }
  return text;
}

const char* name_of(Effect effect) {
  switch (effect) {
    case Effect::force:
      return "force";
    case Effect::heat:
      return "heat";
    case Effect::held:
      return "held";
    case Effect::moved:
      return "moved";
    case Effect::temperature:
      return "temperature";
    default:
      return "other";
  }
}

std::string amplitude_name(const Subject& subject, content::Key number) {
  if (number == 0) return "";
  const auto found =
      std::ranges::find(subject.source.amplitudes, number, &content::Numbered::number);
  return found == subject.source.amplitudes.end() ? std::to_string(number) : found->name;
}

Acting acting_in(const Subject& subject, const Schedule& schedule, int step) {
  Acting acting(subject, schedule);
  acting.enter(step);
  return acting;
}

}  // namespace

std::string text(const std::vector<Finding>& findings) {
  std::string text;
  for (const Finding& finding : findings) {
    text.append(name_of(finding.severity)).append(" ").append(finding.code).append(": ");
    text += finding.what + "\n  where: " + finding.where + "\n  do:    " + finding.advice + "\n";
  }
  return text;
}

std::string text(const std::vector<Resultant>& resultants) {
  if (resultants.empty()) return "";
  std::vector<Cells> rows{{"", "records", "Fx", "Fy", "Fz", "Mx", "My", "Mz"}};
  for (const Resultant& sum : resultants) {
    Cells row{sum.of, std::to_string(sum.records)};
    for (const double component : sum.rounded_force()) row.push_back(number(component));
    for (const double component : sum.rounded_moment()) row.push_back(number(component));
    if (sum.left_out > 0) row.push_back("without " + std::to_string(sum.left_out) + " more");
    if (sum.with_amplitude > 0) row.push_back("amplitudes count as 1");
    rows.push_back(std::move(row));
  }
  const auto& point = resultants.front().point;
  return "Resultants, moments about (" + number(point[0]) + ", " + number(point[1]) + ", " +
         number(point[2]) + ")\n" + table_text(rows, 1, 8);
}

std::string acting_text(const Subject& subject, int step) {
  const Schedule schedule = schedule_of(subject);
  std::vector<Cells> rows{{"node", "dof", "value", "what", "amplitude", "step", "record", "set"}};
  acting_in(subject, schedule, step).each([&](const Action& action) {
    const Statement& what = action.what;
    bool is_first = true;
    for (const Origin& from : action.from) {
      const bool has_value = what.effect != Effect::held && what.effect != Effect::other;
      Cells row(8);
      if (is_first) {
        row = {std::to_string(what.node),
               what.freedom == 0 ? "" : std::to_string(what.freedom),
               has_value ? number(what.value) : "",
               name_of(what.effect),
               amplitude_name(subject, what.multiplier),
               std::to_string(action.step),
               "",
               ""};
      }
      row[6] = deck::name_of(*from.batch->table, from.record);
      row[7] = from.batch->set_name;
      rows.push_back(std::move(row));
      is_first = false;
    }
  });
  return rows.size() == 1 ? "" : table_text(rows, 0, 3);
}

std::string acting_json(const Subject& subject, int step) {
  using Json = nlohmann::ordered_json;
  const Schedule schedule = schedule_of(subject);
  std::string text;
  acting_in(subject, schedule, step).each([&](const Action& action) {
    const Statement& what = action.what;
    Json from = Json::array();
    for (const Origin& each : action.from) {
      from.push_back({{"table", each.batch->table->name},
                      {"record", each.batch->table->ids[each.record]},
                      {"set", each.batch->set_name}});
    }
    const Json json{{"node", what.node},
                    {"freedom", what.freedom},
                    {"what", name_of(what.effect)},
                    {"value", what.value},
                    {"system", what.system},
                    {"amplitude", amplitude_name(subject, what.multiplier)},
                    {"load_case", action.load_case},
                    {"step", action.step},
                    {"from", from}};
    text += text.empty() ? "[\n" : ",\n";
    text += json.dump(-1, ' ', false, Json::error_handler_t::replace);
  });
  return text.empty() ? "[]\n" : text + "\n]\n";
}

}  // namespace checks
