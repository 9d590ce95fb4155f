#include "tools/picture/labels.h"

#include <array>
#include <cmath>

#include "tools/picture/svg.h"

namespace picture {
namespace {

constexpr double font_size = 11;
constexpr double cell = 40;  // pixels

bool continues_character(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80; }

template <class Visit>
void for_each_cell(const Spot& low, const Spot& high, const Visit& visit) {
  for (auto x = static_cast<std::int64_t>(low.x() / cell); x <= high.x() / cell; ++x) {
    for (auto y = static_cast<std::int64_t>(low.y() / cell); y <= high.y() / cell; ++y) {
      visit(x << 32 ^ y);
    }
  }
}

}  // namespace

double text_width(const std::string& text, double font_size) {
  double characters = 0;
  for (const char byte : text) characters += continues_character(byte) ? 0 : 1;
  return 0.58 * font_size * characters;
}

std::string cut_to(const std::string& text, double font_size, double width) {
  if (text_width(text, font_size) <= width) return text;
  std::string result = text;
  while (!result.empty() && text_width(result, font_size) + font_size > width) {
    while (continues_character(result.back())) result.pop_back();
    result.pop_back();
  }
  return result + "…";
}

bool LabelLayer::is_free(const Rectangle& rectangle) const {
  if (rectangle.low.x() < 2 || rectangle.low.y() < 2 || rectangle.high.x() > width_ - 2 ||
      rectangle.high.y() > height_ - 2) {
    return false;
  }
  bool result = true;
  for_each_cell(rectangle.low, rectangle.high, [&](std::int64_t key) {
    const auto found = cells_.find(key);
    if (found == cells_.end()) return;
    for (const Rectangle& other : found->second) {
      const bool is_apart =
          other.low.x() >= rectangle.high.x() || other.high.x() <= rectangle.low.x() ||
          other.low.y() >= rectangle.high.y() || other.high.y() <= rectangle.low.y();
      result = result && is_apart;
    }
  });
  return result;
}

void LabelLayer::take(const Rectangle& rectangle) {
  for_each_cell(rectangle.low, rectangle.high,
                [&](std::int64_t key) { cells_[key].push_back(rectangle); });
}

void LabelLayer::add(const std::string& text, const Spot& at, const std::string& color) {
  const double width = text_width(text, font_size);
  const std::array<Spot, 4> corners = {
      Spot(at.x() + 5, at.y() - font_size - 2), Spot(at.x() - 5 - width, at.y() - font_size - 2),
      Spot(at.x() + 5, at.y() + 3), Spot(at.x() - 5 - width, at.y() + 3)};
  for (const Spot& corner : corners) {
    const Rectangle rectangle{corner, corner + Spot(width, font_size)};
    if (!is_free(rectangle)) continue;
    take(rectangle);
    svg_ += "<text x=\"" + svg::number(corner.x()) + "\" y=\"" +
            svg::number(corner.y() + font_size - 2) + "\" font-size=\"11\" fill=\"" + color +
            "\">" + svg::escaped(text) + "</text>\n";
    return;
  }
  ++without_room_;
}

}  // namespace picture
