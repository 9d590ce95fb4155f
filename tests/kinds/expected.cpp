#include "tests/kinds/expected.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "tests/host/loaded_module.h"

namespace {

std::vector<std::string> words(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> result;
  for (std::string word; in >> word;) result.push_back(word);
  return result;
}

/// Few columns have another name than the property that is kept in them.
std::string property_of(const std::string& column) {
  if (column == "MultiplierTableID") return "MultiplierID";
  if (column == "IsRotation") return "IsRotate";
  if (column == "SeparateWindow") return "UseSeparateWindow";
  return column;
}

ExpectedColumn to_column(const std::string& word) {
  static const std::map<std::string, Held> held = {
      {"double", Held::kDouble}, {"long", Held::kLong},     {"short", Held::kShort},
      {"flag", Held::kFlag},     {"wide", Held::kWideFlag}, {"raw", Held::kRawFlag}};
  const std::size_t colon = word.find(':');
  const std::string name = word.substr(0, colon);
  return {name, property_of(name), held.at(word.substr(colon + 1))};
}

/// A kind from its line in kinds.txt: names and event codes of record and collection; the columns,
/// each with a word for how its number is held; the defaults.
ExpectedKind to_kind(const std::string& line) {
  std::istringstream in(line);
  ExpectedKind kind;
  in >> kind.record >> kind.collection >> kind.record_event >> kind.collection_event;
  std::string part;
  std::getline(in, part, '|');
  std::getline(in, part, '|');
  for (const std::string& word : words(part)) kind.columns.push_back(to_column(word));
  std::getline(in, kind.defaults);
  return kind;
}

std::string number_of(const std::vector<ExpectedColumn>& columns, std::size_t index) {
  return std::to_string(index + 1) + (columns[index].held == Held::kDouble ? ".5" : "");
}

}  // namespace

std::string ExpectedKind::values() const {
  std::string text = "'Tip load', 12";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    // One separator of one kind has its blank on the other side.
    text += columns[i].name == "ActiveRangeID" ? " ," : ", ";
    text += number_of(columns, i);
  }
  return text;
}

std::string ExpectedKind::assignments() const {
  std::string text = "Description = 'Tip load', VertexID = 12";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    text += ", " + columns[i].name + " = " + number_of(columns, i);
  }
  return text;
}

const std::vector<ExpectedKind>& expected_kinds() {
  static const std::vector<ExpectedKind> kinds = [] {
    std::vector<ExpectedKind> result;
    const std::filesystem::path checkout = server::environment(L"ORV_SOURCE_DIR");
    std::ifstream file(checkout / "tests/kinds/kinds.txt");
    for (std::string line; std::getline(file, line);) result.push_back(to_kind(line));
    return result;
  }();
  return kinds;
}
