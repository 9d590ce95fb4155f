#include "tests/frame/catalogue.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "tests/host/loaded_module.h"

namespace catalogue {
namespace {

using Lines = std::vector<std::string>;

/// The lines below a title in catalogue.txt.
Lines section(const std::string& title) {
  const std::filesystem::path checkout = server::environment(L"ORV_SOURCE_DIR");
  std::ifstream file(checkout / "tests/frame/catalogue.txt");
  Lines lines;
  bool is_inside = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('[')) {
      is_inside = line == '[' + title + ']';
    } else if (is_inside && !line.empty()) {
      lines.push_back(line);
    }
  }
  return lines;
}

/// Get and put of every property, by its name, from lines such as
/// `18 Magnitude double: Gets/Sets the magnitude of this object.`
/// One number means one property, whichever record has it. References are put by reference.
std::map<std::string, Lines> accessors() {
  std::map<std::string, Lines> result;
  for (const std::string& line : section("properties")) {
    const std::size_t colon = line.find(':');
    std::istringstream words(line.substr(0, colon));
    std::string number;
    std::string name;
    std::string type;
    words >> number >> name >> type;
    const std::string put = type == "IDispatch*" ? " putref " : " put ";
    const std::string end = ")" + line.substr(colon);
    result[name] = {number + " get " + name + "([out,retval] " + type + "* pVal" + end,
                    number + put + name + "([in] " + type + end};
  }
  return result;
}

}  // namespace

std::vector<std::string> record_members(const ExpectedKind& kind) {
  static const auto of_properties = accessors();
  Lines members = section("every record");
  for (const std::string& name : kind.properties) {
    const Lines& lines = of_properties.at(name);
    members.insert(members.end(), lines.begin(), lines.end());
  }
  return members;
}

std::vector<std::string> collection_members(const ExpectedKind& kind) {
  const std::string placeholder = "RECORD";
  Lines members = section("every collection");
  for (std::string& line : members) {
    const std::size_t at = line.find(placeholder);
    if (at != std::string::npos) line.replace(at, placeholder.size(), "I" + kind.record);
  }
  return members;
}

}  // namespace catalogue
