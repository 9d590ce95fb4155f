#include "tools/picture/legend.h"

#include <algorithm>
#include <array>

#include "tools/picture/labels.h"
#include "tools/picture/svg.h"

namespace picture {
namespace {

constexpr double axes_height = 84;
constexpr double room_below = 150;  // the entries, for the resultant and the notes
constexpr double small = 11;

class Legend {
 public:
  Legend(const Picture& picture, const Area& area) : picture_(picture), area_(area), y_(area.top) {}

  std::string draw() {
    add_entries();
    add_resultant();
    add_notes();
    return std::move(svg_);
  }

 private:
  void text(const std::string& words, double x, double size, const std::string& attributes) {
    svg_ += "<text x=\"" + svg::number(x) + "\" y=\"" + svg::number(y_) + "\" font-size=\"" +
            svg::number(size) + "\" " + attributes + '>' +
            svg::escaped(cut_to(words, size, area_.right - x)) + "</text>\n";
  }

  // For the resultant and the notes, which say more than the last of many entries.
  [[nodiscard]] double room() const { return area_.bottom - axes_height - y_; }

  void add_entries() {
    is_close_ = room() - room_below < 44.0 * static_cast<double>(picture_.legend.size());
    for (std::size_t i = 0; i < picture_.legend.size(); ++i) {
      if (room() < room_below && i + 1 < picture_.legend.size()) {
        y_ += 18;
        text("and " + svg::count(picture_.legend.size() - i) + " more sorts", area_.left + 44,
             small, "fill=\"#555\"");
        break;
      }
      add(picture_.legend[i]);
    }
  }

  void add(const LegendEntry& entry) {
    y_ += is_close_ ? 24 : 30;
    svg_ += "<g transform=\"translate(" + svg::number(area_.left + 18) + ' ' + svg::number(y_ - 4) +
            ")\" color=\"" + entry.color + "\">" + entry.sample + "</g>\n";
    std::string line = svg::count(entry.records);
    if (entry.drawn < entry.records) line += " (" + svg::count(entry.drawn) + " drawn)";
    if (!entry.range.empty()) line += ": " + entry.range;
    const double left = area_.left + 44;
    const double width = area_.right - left;
    if (is_close_) {
      // Of a name one can guess the end, of a number not.
      line = "  " + line;
      const std::string name = cut_to(entry.name, small, width - text_width(line, small));
      text(name + line, left, small, "fill=\"#111\"");
      return;
    }
    for (const std::string& words : wrapped(entry.name, 13, width)) {
      text(words, left, 13, "fill=\"#111\"");
      y_ += 14;
    }
    text(line, left, small, "fill=\"#555\"");
  }

  void add_resultant() {
    const checks::Resultant& sum = picture_.resultant;
    if (sum.records == 0) return;
    y_ += 10;
    add_vector("Sum of the forces", sum.rounded_force());
    add_vector("Moment about the origin", sum.rounded_moment());
  }

  void add_vector(const std::string& name, const std::array<double, 3>& vector) {
    y_ += 22;
    text(name, area_.left + 4, 12, "fill=\"#111\"");
    y_ += 15;
    text("x " + svg::readable(vector[0]) + "   y " + svg::readable(vector[1]) + "   z " +
             svg::readable(vector[2]),
         area_.left + 4, small, "fill=\"#333\" xml:space=\"preserve\"");
  }

  void add_notes() {
    y_ += 8;
    for (const std::string& note : picture_.notes) {
      y_ += 5;
      for (const std::string& line : wrapped(note, small, area_.right - area_.left - 8)) {
        if (room() < 14) return;
        y_ += 14;
        text(line, area_.left + 4, small, "fill=\"#555\"");
      }
    }
  }

  static std::vector<std::string> wrapped(const std::string& words, double size, double width) {
    std::vector<std::string> lines(1);
    for (std::size_t begin = 0; begin < words.size();) {
      const std::size_t end = std::min(words.find(' ', begin), words.size());
      const std::string word = words.substr(begin, end - begin);
      const std::string longer = lines.back().empty() ? word : lines.back() + ' ' + word;
      if (lines.back().empty() || text_width(longer, size) <= width) {
        lines.back() = longer;
      } else {
        lines.push_back(word);
      }
      begin = end + 1;
    }
    return lines;
  }

  const Picture& picture_;
  Area area_;
  double y_;
  bool is_close_ = false;  // one line for an entry rather than two
  std::string svg_;
};

}  // namespace

std::string axes_svg(const geometry::View& view, const Spot& at) {
  constexpr std::array<std::string_view, 3> names = {"x", "y", "z"};
  constexpr std::array<std::string_view, 3> colors = {"#b71c1c", "#1b7a1f", "#1a3fb0"};
  constexpr double length = 28;
  std::array<std::size_t, 3> order = {0, 1, 2};
  const auto tip = [&](std::size_t i) {
    return view.project(Point::Unit(static_cast<Eigen::Index>(i)));
  };
  std::ranges::sort(order, {}, [&](std::size_t i) { return tip(i).z(); });
  std::string text;
  for (const std::size_t i : order) {
    const Spot end = at + tip(i).head<2>() * length;
    const Spot name = at + tip(i).head<2>() * (length + 9) + Spot(-3, 4);
    const std::string color(colors.at(i));
    text += "<path d=\"M" + svg::number(at.x()) + ' ' + svg::number(at.y()) + 'L' +
            svg::number(end.x()) + ' ' + svg::number(end.y()) + "\" stroke=\"" + color +
            R"(" stroke-width="2" stroke-linecap="round"/>)" + "<text x=\"" +
            svg::number(name.x()) + "\" y=\"" + svg::number(name.y()) +
            "\" font-size=\"12\" fill=\"" + color + "\">" + std::string(names.at(i)) + "</text>\n";
  }
  return text;
}

std::string legend_svg(const Picture& picture, const geometry::View& view, const Area& area) {
  return Legend(picture, area).draw() +
         axes_svg(view, {area.left + 44, area.bottom - axes_height / 2});
}

}  // namespace picture
