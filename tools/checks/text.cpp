#include "tools/checks/text.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "tools/checks/json.h"
#include "tools/checks/step_actions.h"

namespace checks {
namespace {

using Cells = std::vector<std::string>;

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

}  // namespace

std::string number_text(double value) {
  std::array<char, 32> digits;
  std::snprintf(digits.data(), digits.size(), "%.6g", value == 0 ? 0 : value);
  return digits.data();
}

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
    for (const double component : sum.rounded_force()) row.push_back(number_text(component));
    for (const double component : sum.rounded_moment()) row.push_back(number_text(component));
    if (sum.left_out > 0) row.push_back("without " + std::to_string(sum.left_out) + " more");
    if (sum.with_amplitude > 0) row.push_back("amplitudes count as 1");
    rows.push_back(std::move(row));
  }
  const auto& point = resultants.front().point;
  return "Resultants, moments about (" + number_text(point[0]) + ", " + number_text(point[1]) +
         ", " + number_text(point[2]) + ")\n" + table_text(rows, 1, 8);
}

std::string acting_text(const Subject& subject, int step) {
  std::vector<Cells> rows{{"node", "dof", "value", "what", "amplitude", "step", "record", "set"}};
  each_action(subject, step, [&](const StepAction& action) {
    Cells row{std::to_string(action.node),
              action.freedom == 0 ? "" : std::to_string(action.freedom),
              action.has_value ? number_text(action.value) : "",
              std::string(action.what),
              action.amplitude,
              std::to_string(action.step),
              "",
              ""};
    for (const ActingRecord& record : action.records) {
      row[6] = record.name;
      row[7] = record.set;
      rows.push_back(std::move(row));
      row = Cells(8);  // of further records only where they come from
    }
  });
  return rows.size() == 1 ? "" : table_text(rows, 0, 3);
}

}  // namespace checks
