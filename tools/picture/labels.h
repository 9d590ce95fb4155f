#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "tools/picture/drawing.h"

namespace picture {

/// Texts beside points that do not lie over each other and stay in the frame.
class LabelLayer {
 public:
  LabelLayer(double width, double height) : width_(width), height_(height) {}

  /// Puts the text beside the point, where there is room.
  void add(const std::string& text, const Spot& at, const std::string& color);

  [[nodiscard]] const std::string& svg() const { return svg_; }
  [[nodiscard]] std::size_t without_room() const { return without_room_; }

 private:
  struct Rectangle {
    Spot low, high;
  };
  [[nodiscard]] bool is_free(const Rectangle& rectangle) const;
  void take(const Rectangle& rectangle);

  double width_, height_;
  std::string svg_;
  std::size_t without_room_ = 0;
  std::unordered_map<std::int64_t, std::vector<Rectangle>> cells_;
};

/// How wide a text is about, in pixels.
double text_width(const std::string& text, double font_size);

/// The text, cut to a width in pixels.
std::string cut_to(const std::string& text, double font_size, double width);

}  // namespace picture
