#include "tests/picture/drawn.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <stdexcept>
#include <vector>

namespace tests {
namespace {

struct Element {
  std::string name;
  std::map<std::string, std::string> attributes;
  bool is_end = false, is_empty = false;

  [[nodiscard]] std::string operator[](const std::string& attribute) const {
    const auto found = attributes.find(attribute);
    return found == attributes.end() ? "" : found->second;
  }
};

Element read_element(const std::string& text) {
  Element element;
  element.is_end = text[0] == '/';
  element.is_empty = text.back() == '/';
  std::size_t at = text.find_first_of(" \n/", 1);
  element.name = text.substr(element.is_end ? 1 : 0, at - (element.is_end ? 1 : 0));
  while (at < text.size()) {
    const std::size_t begin = text.find_first_not_of(" \n/", at);
    if (begin == std::string::npos) break;
    const std::size_t equal = text.find("=\"", begin);
    if (equal == std::string::npos) throw std::runtime_error("no attribute: " + text);
    const std::size_t end = text.find('"', equal + 2);
    element.attributes[text.substr(begin, equal - begin)] = text.substr(equal + 2, end - equal - 2);
    at = end + 1;
  }
  return element;
}

struct Box {
  double left = 1e9, top = 1e9, right = -1e9, bottom = -1e9;
  void add(double x, double y) {
    left = std::min(left, x);
    right = std::max(right, x);
    top = std::min(top, y);
    bottom = std::max(bottom, y);
  }
};

// All numbers in turn are x and y, but for the "h0" of dots.
void add_path(const std::string& path, double x, double y, Box& box) {
  std::vector<double> numbers;
  for (const char* at = path.c_str(); *at != 0;) {
    if (std::isdigit(static_cast<unsigned char>(*at)) != 0 || *at == '-' || *at == '.') {
      char* end = nullptr;
      numbers.push_back(std::strtod(at, &end));
      at = end;
    } else {
      at += *at == 'h' ? 2 : 1;
    }
  }
  if (numbers.size() % 2 != 0) throw std::runtime_error("odd path: " + path);
  for (std::size_t i = 0; i < numbers.size(); i += 2) box.add(x + numbers[i], y + numbers[i + 1]);
}

}  // namespace

Drawn read_picture(const std::string& svg) {
  Drawn drawn;
  Box frame;
  std::map<std::string, Box> definitions;
  std::vector<std::pair<double, double>> origins = {{0, 0}};
  std::string definition;
  bool is_defining = false;
  for (std::size_t at = svg.find('<'); at != std::string::npos; at = svg.find('<', at)) {
    const std::size_t end = svg.find('>', at);
    const Element element = read_element(svg.substr(at + 1, end - at - 1));
    at = end;
    if (element.name == "defs") is_defining = !element.is_end;
    const std::string record = element["data-record"];
    if (!record.empty()) ++drawn.records[record];
    if (element.name == "g") {
      if (element.is_end) {
        origins.pop_back();
        continue;
      }
      auto origin = origins.back();
      if (const std::string move = element["transform"]; !move.empty()) {
        char* rest = nullptr;
        origin.first += std::strtod(move.c_str() + std::string("translate(").size(), &rest);
        origin.second += std::strtod(rest, nullptr);
      }
      origins.push_back(origin);
      if (is_defining && !element["id"].empty()) definition = element["id"];
    } else if (element.name == "path") {
      const auto [x, y] = origins.back();
      add_path(element["d"], x, y, is_defining ? definitions[definition] : frame);
    } else if (element.name == "use" && !element.is_end) {
      const std::string id = element["xlink:href"].substr(1);
      const Box& glyph = definitions.at(id);
      const double x = std::strtod(element["x"].c_str(), nullptr);
      const double y = std::strtod(element["y"].c_str(), nullptr);
      frame.add(x + glyph.left, y + glyph.top);
      frame.add(x + glyph.right, y + glyph.bottom);
      drawn.definition_of[record] = id;
    }
  }
  drawn.left = frame.left;
  drawn.top = frame.top;
  drawn.right = frame.right;
  drawn.bottom = frame.bottom;
  return drawn;
}

}  // namespace tests
