#include "tools/content/record_name.h"

namespace content {

std::string singular(std::string_view table) {
  std::string noun(table);
  if (noun.ends_with("ies")) {
    noun.replace(noun.size() - 3, 3, "y");
  } else if (noun.ends_with("sses")) {
    noun.resize(noun.size() - 2);
  } else {
    noun.pop_back();
  }
  return noun;
}

std::string name_of(const Table& table, std::size_t record) {
  const Key id = record < table.ids.size() ? table.ids[record] : 0;
  std::string name = singular(table.name);
  name +=
      id == 0 ? " on vertex " + std::to_string(table.vertices[record]) : " " + std::to_string(id);
  if (record < table.descriptions.size() && !table.descriptions[record].empty()) {
    name += " '" + table.descriptions[record] + "'";
  }
  return name;
}

}  // namespace content
