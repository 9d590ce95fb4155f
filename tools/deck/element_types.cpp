#include "tools/deck/element_types.h"

#include <algorithm>
#include <array>

namespace deck {
namespace {

struct Family {
  std::string_view prefix;
  std::size_t nodes;
};

// A type is its family and letters for its integration, C3D8R for example. Where one family begins
// like another, the longer name stands first.
constexpr auto kFamilies = std::to_array<Family>({
    {"C3D20", 20},  {"C3D15", 15},  {"C3D10", 10},   {"C3D4", 4},   {"C3D6", 6},    {"C3D8", 8},
    {"F3D4", 4},    {"F3D6", 6},    {"F3D8", 8},     {"CPS3", 3},   {"CPS4", 4},    {"CPS6", 6},
    {"CPS8", 8},    {"CPE3", 3},    {"CPE4", 4},     {"CPE6", 6},   {"CPE8", 8},    {"CAX3", 3},
    {"CAX4", 4},    {"CAX6", 6},    {"CAX8", 8},     {"M3D3", 3},   {"M3D4", 4},    {"M3D6", 6},
    {"M3D8", 8},    {"S3", 3},      {"S4", 4},       {"S6", 6},     {"S8", 8},      {"B21", 2},
    {"B31", 2},     {"B32", 3},     {"T2D2", 2},     {"T3D2", 2},   {"T3D3", 3},    {"SPRINGA", 2},
    {"SPRING1", 1}, {"SPRING2", 2}, {"DASHPOTA", 2}, {"GAPUNI", 2}, {"DCOUP3D", 1}, {"MASS", 1},
});

// Letters that follow the number of nodes: reduced, incompatible, hybrid, modified, thermal.
constexpr std::string_view kLetters = "RIHMT";

}  // namespace

std::size_t nodes_per_element(std::string_view type) {
  if (type == "D") return 3;
  const auto family = std::find_if(kFamilies.begin(), kFamilies.end(), [type](const Family& each) {
    return type.starts_with(each.prefix) &&
           type.find_first_not_of(kLetters, each.prefix.size()) == std::string_view::npos;
  });
  return family == kFamilies.end() ? 0 : family->nodes;
}

bool is_network_or_flow(std::string_view type) {
  if (type.starts_with("DASHPOT") || type.starts_with("DCOUP")) return false;
  return type.starts_with("D") || type.starts_with("F3D");
}

}  // namespace deck
