#include "tools/checks/json.h"

#include <nlohmann/json.hpp>

namespace checks {
namespace {

using Json = nlohmann::ordered_json;

Json json_of(const Finding& finding) {
  Json json{{"code", finding.code},
            {"severity", name_of(finding.severity)},
            {"what", finding.what},
            {"where", finding.where},
            {"advice", finding.advice}};
  if (!finding.table.empty()) json["table"] = finding.table;
  if (!finding.records.empty()) json["records"] = finding.records;
  if (!finding.nodes.empty()) json["nodes"] = finding.nodes;
  if (!finding.set.empty()) json["set"] = finding.set;
  if (finding.step >= 0) json["step"] = finding.step;
  return json;
}

Json json_of(const Resultant& sum) {
  Json json{{"of", sum.of}};
  if (sum.step > 0) json["step"] = sum.step;
  json["records"] = sum.records;
  json["left_out"] = sum.left_out;
  json["with_amplitude"] = sum.with_amplitude;
  json["about"] = sum.point;
  json["force"] = sum.rounded_force();
  json["moment"] = sum.rounded_moment();
  return json;
}

/// One object on each line, so that two answers can be compared line by line.
template <class Item>
std::string lines_of(const std::vector<Item>& items) {
  std::string text;
  for (const Item& item : items) {
    text += text.empty() ? "\n  " : ",\n  ";
    text += json_of(item).dump(-1, ' ', false, Json::error_handler_t::replace);
  }
  return "[" + text + "]";
}

}  // namespace

std::string_view name_of(Severity severity) {
  switch (severity) {
    case Severity::note:
      return "note";
    case Severity::warning:
      return "warning";
    default:
      return "error";
  }
}

std::string json(const std::vector<Finding>& findings, const std::vector<Resultant>& resultants) {
  return "{\"findings\": " + lines_of(findings) + ",\n\"resultants\": " + lines_of(resultants) +
         "}\n";
}

}  // namespace checks
