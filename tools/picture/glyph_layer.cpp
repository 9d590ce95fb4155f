#include "tools/picture/glyph_layer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

#include "tools/picture/body.h"
#include "tools/picture/labels.h"
#include "tools/picture/svg.h"

namespace picture {
namespace {

constexpr double sample_size = 20;  // pixels, in the legend

// From the lowest value to the highest.
constexpr std::array<std::string_view, 7> value_colors = {
    "#2c4fb0", "#2f86c1", "#2a9d8f", "#7ca52f", "#d9a11e", "#e2702d", "#c62424"};

std::string color_of(const Sort& sort, double value) {
  if (!sort.kind->is_colored_by_value || !(sort.highest > sort.lowest)) {
    return std::string(sort.kind->color);
  }
  const double part = (value - sort.lowest) / (sort.highest - sort.lowest);
  const auto index = static_cast<std::size_t>(std::lround(part * (value_colors.size() - 1)));
  return std::string(value_colors.at(std::min(index, value_colors.size() - 1)));
}

std::string record_name(const Symbol& symbol, const Kind& kind) {
  const content::Key id = symbol.table->ids[symbol.record];
  // A record that was never saved has no key; its place in the table tells it apart.
  const std::string key = id != 0 ? std::to_string(id) : "at " + std::to_string(symbol.record + 1);
  return std::string(kind.record) + ' ' + key;
}

std::string label_of(const Symbol& symbol, const Sort& sort, content::Key node, Labels labels) {
  switch (labels) {
    case Labels::none:
      break;
    case Labels::values:
      return sort.kind->has_value ? svg::readable(symbol.mark.value) : std::string();
    case Labels::nodes:
      return std::to_string(node);
    case Labels::names:
      if (symbol.record < symbol.table->descriptions.size() &&
          !symbol.table->descriptions[symbol.record].empty()) {
        return symbol.table->descriptions[symbol.record];
      }
      return record_name(symbol, *sort.kind);
  }
  return {};
}

std::string range_of(const Sort& sort) {
  if (!sort.kind->has_value) return {};
  const std::string lowest = svg::readable(sort.lowest);
  const std::string highest = svg::readable(sort.highest);
  return lowest == highest ? lowest : lowest + " to " + highest;
}

// Glyphs by the text of their elements; one that occurs twice is defined once and used.
class Definitions {
 public:
  explicit Definitions(std::string prefix) : prefix_(std::move(prefix)) {}

  std::size_t add(const std::string& text) {
    const auto [found, is_new] = number_of_.try_emplace(text, uses_.size());
    if (is_new) {
      uses_.push_back(0);
      texts_.push_back(&found->first);
    }
    ++uses_[found->second];
    return found->second;
  }

  [[nodiscard]] std::string element(std::size_t number, const Spot& at, const std::string& more,
                                    const std::string& title) const {
    const std::string x = svg::number(at.x());
    const std::string y = svg::number(at.y());
    const std::string end = "><title>" + title + "</title>";
    if (uses_[number] > 1) {
      return "<use xlink:href=\"#" + id(number) + "\" x=\"" + x + "\" y=\"" + y + '"' + more + end +
             "</use>\n";
    }
    return "<g transform=\"translate(" + x + ' ' + y + ")\"" + more + end + *texts_[number] +
           "</g>\n";
  }

  [[nodiscard]] std::string svg() const {
    std::string text;
    for (std::size_t i = 0; i < uses_.size(); ++i) {
      if (uses_[i] > 1) text += "<g id=\"" + id(i) + "\">" + *texts_[i] + "</g>\n";
    }
    return text;
  }

 private:
  [[nodiscard]] std::string id(std::size_t number) const {
    return prefix_ + 'g' + std::to_string(number);
  }

  std::string prefix_;
  std::unordered_map<std::string, std::size_t> number_of_;
  std::vector<std::size_t> uses_;
  std::vector<const std::string*> texts_;
};

class Layer {
 public:
  Layer(const Symbols& symbols, const geometry::View& view, const Layout& layout,
        const geometry::DepthBuffer& buffer, const Options& options)
      : symbols_(symbols),
        view_(view),
        layout_(layout),
        options_(options),
        definitions_(options.id_prefix),
        labels_(options.width, options.height) {
    for (const Point& node : layout.nodes) is_in_sight_.push_back(buffer.sees(node));
  }

  GlyphLayer draw() {
    for (std::size_t i = 0; i < symbols_.sorts.size(); ++i) add(symbols_.sorts[i], i);
    write();
    result_.definitions = definitions_.svg();
    result_.body += labels_.svg();
    result_.no_label = labels_.without_room();
    return std::move(result_);
  }

 private:
  struct Placed {
    const Symbol* symbol;
    std::size_t sort;
    std::size_t definition;
  };

  Setting setting(const Symbol& symbol, const Sort& sort) const {
    const Carrier& node = symbols_.nodes[symbol.node];
    // Of the kinds that decks have only supports ask for axes.
    const bool is_support = sort.kind->table == "NodalBoundaryConditions";
    Setting setting{view_, node.outward, axes_at(node.id, is_support ? options_ : Options()),
                    Point::Zero(), symbol.ends_at_node};
    if (sort.kind->has_arrow) setting.arrow = arrow_of(symbol, sort, view_);
    return setting;
  }

  void add(const Sort& sort, std::size_t number) {
    const double unit = layout_.unit_of_sort[number];
    const auto has_glyph = thinned(sort, layout_, unit, is_in_sight_);
    LegendEntry entry{std::string(sort.kind->name) + sort.kind->variant_name(sort.variant),
                      sample(sort),
                      color_of(sort, sort.highest),
                      sort.symbols.size(),
                      0,
                      range_of(sort)};
    std::vector<Spot> dots;
    for (std::size_t i = 0; i < sort.symbols.size(); ++i) {
      const Symbol& symbol = sort.symbols[i];
      if (!has_glyph[i]) {
        ++result_.dots;
        if (is_in_sight_[symbol.node]) dots.push_back(layout_.nodes[symbol.node].head<2>());
        continue;
      }
      ++entry.drawn;
      const Drawing drawing = sort.kind->draw(symbol.mark, setting(symbol, sort));
      placed_.push_back({&symbol, number, definitions_.add(drawing.svg(unit))});
    }
    result_.body += dots_svg(dots, "stroke=\"" + std::string(sort.kind->color) +
                                       R"(" stroke-width="2.2" stroke-opacity=".5")");
    result_.legend.push_back(std::move(entry));
  }

  // The glyph as it looks at the first record that has one of full length.
  std::string sample(const Sort& sort) const {
    const auto longest = std::ranges::max_element(
        sort.symbols, {}, [](const Symbol& symbol) { return symbol.mark.vector.squaredNorm(); });
    Setting set = setting(*longest, sort);
    set.outward = Point::Zero();
    set.ends_at_node = false;
    if (sort.kind->has_arrow && sort.largest > 0) set.arrow = Point(1.3, 0, 0);
    const Drawing drawing = sort.kind->draw(longest->mark, set);
    const auto bounds = drawing.bounds();
    const Spot size = bounds.high - bounds.low;
    const double unit = std::min(sample_size / std::max(size.y(), 0.1),
                                 1.4 * sample_size / std::max(size.x(), 0.1));
    const double smaller = std::min(unit, sample_size);
    const Spot middle = -(bounds.low + bounds.high) / 2 * smaller;
    return "<g transform=\"translate(" + svg::number(middle.x()) + ' ' + svg::number(middle.y()) +
           ")\">" + drawing.svg(smaller) + "</g>";
  }

  void write() {
    std::size_t sort_before = symbols_.sorts.size();
    for (const Placed& glyph : placed_) {
      const Sort& sort = symbols_.sorts[glyph.sort];
      if (glyph.sort != sort_before) {
        if (sort_before != symbols_.sorts.size()) result_.body += "</g>\n";
        result_.body += "<g color=\"" + std::string(sort.kind->color) + "\">\n";
      }
      sort_before = glyph.sort;
      write(glyph, sort);
    }
    if (!placed_.empty()) result_.body += "</g>\n";
  }

  void write(const Placed& glyph, const Sort& sort) {
    const Symbol& symbol = *glyph.symbol;
    const Point& at = layout_.nodes[symbol.node];
    const content::Key node = symbols_.nodes[symbol.node].id;
    const std::string record = record_name(symbol, *sort.kind);
    std::string more = " data-record=\"" + record + '"';
    const std::string color = color_of(sort, symbol.mark.value);
    if (color != sort.kind->color) more += " color=\"" + color + '"';
    if (!is_in_sight_[symbol.node]) {
      more += " opacity=\".3\"";
      ++result_.hidden;
    }
    std::string title = record + ", node " + std::to_string(node);
    if (sort.kind->has_value) title += ": " + svg::readable(symbol.mark.value);
    result_.body += definitions_.element(glyph.definition, at.head<2>(), more, title);

    const std::string label = label_of(symbol, sort, node, options_.labels);
    if (label.empty()) return;
    Spot end = at.head<2>();
    if (sort.kind->has_arrow) {
      const Spot arrow = arrow_of(symbol, sort, view_).head<2>() * layout_.unit_of_sort[glyph.sort];
      end += symbol.ends_at_node ? Spot(-arrow) : arrow;
    }
    labels_.add(label, end, color);
  }

  const Symbols& symbols_;
  const geometry::View& view_;
  const Layout& layout_;
  std::vector<bool> is_in_sight_;  // for each node
  const Options& options_;
  Definitions definitions_;
  LabelLayer labels_;
  std::vector<Placed> placed_;
  GlyphLayer result_;
};

}  // namespace

GlyphLayer draw_glyphs(const Symbols& symbols, const geometry::View& view, const Layout& layout,
                       const geometry::DepthBuffer& buffer, const Options& options) {
  return Layer(symbols, view, layout, buffer, options).draw();
}

}  // namespace picture
