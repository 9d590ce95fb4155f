#include "tools/picture/picture.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "tools/picture/body.h"
#include "tools/picture/glyph_layer.h"
#include "tools/picture/labels.h"
#include "tools/picture/legend.h"
#include "tools/picture/svg.h"

namespace picture {
namespace {

constexpr double margin = 14;
constexpr double title_height = 34;
constexpr double legend_width = 256;

geometry::View view_of(const Options& options, const geometry::Shape& shape) {
  if (!options.from) return geometry::View(geometry::best_direction(shape));
  const auto& [x, y, z] = *options.from;
  return geometry::View(Point(x, y, z));
}

Extras extras_of(const geometry::Shape& shape, const content::Content& content) {
  Extras extras;
  if (shape.elements == 0) {
    for (const auto& [x, y, z] : content.vertices.coordinates) {
      const Point point(x, y, z);
      if (point.allFinite() && point.cwiseAbs().maxCoeff() < 1e30) extras.vertices.push_back(point);
    }
  }
  // The axis is drawn unless that would make a small section far out too small to see.
  double low = INFINITY;
  double high = -INFINITY;
  double inner = INFINITY;
  double outer = -INFINITY;
  for (const geometry::Face& face : shape.faces) {
    if (face.family != geometry::Family::axisymmetric) continue;
    for (const auto node : face.around()) {
      low = std::min(low, shape.points[node].y());
      high = std::max(high, shape.points[node].y());
      inner = std::min(inner, shape.points[node].x());
      outer = std::max(outer, shape.points[node].x());
    }
  }
  if (low < high && inner < 2 * (outer - inner)) {
    const double beyond = 0.06 * (high - low);
    extras.axis = {Point(0, low - beyond, 0), Point(0, high + beyond, 0)};
  }
  return extras;
}

std::string extras_svg(const Layout& layout) {
  std::vector<Spot> spots;
  for (const Point& point : layout.extras.vertices) spots.emplace_back(point.head<2>());
  std::string text = dots_svg(spots, R"(stroke="#8794a3" stroke-width="2.4")");
  if (layout.extras.axis.size() == 2) {
    const Point& a = layout.extras.axis[0];
    const Point& b = layout.extras.axis[1];
    text += "<path d=\"M" + svg::number(a.x()) + ' ' + svg::number(a.y()) + 'L' +
            svg::number(b.x()) + ' ' + svg::number(b.y()) +
            R"(" stroke="#37424e" stroke-width="1" stroke-dasharray="14 3 2 3"/>)" + '\n';
  }
  return text;
}

// "3 records are not drawn: …"
std::string sentence(std::size_t count, const std::string& one, const std::string& many,
                     const std::string& rest) {
  return svg::count(count) + ' ' + (count == 1 ? one : many) + rest;
}

std::vector<std::string> notes_of(const geometry::Shape& shape, const Symbols& symbols,
                                  const GlyphLayer& glyphs) {
  std::vector<std::string> notes;
  if (glyphs.legend.empty() && symbols.without_node + symbols.without_system == 0) {
    notes.emplace_back("There are no loads, supports or other records to draw.");
  }
  if (glyphs.dots > 0) {
    notes.emplace_back(
        "Where glyphs would lie over each other, a dot stands for each of the others in sight.");
  }
  if (glyphs.hidden > 0) notes.emplace_back("Faint glyphs are behind the part.");
  if (symbols.without_node > 0) {
    notes.push_back(sentence(symbols.without_node, "record is", "records are",
                             " not drawn: no coordinates are known of the nodes."));
  }
  if (symbols.without_system > 0) {
    notes.push_back(sentence(symbols.without_system, "record is", "records are",
                             " not drawn: the vector or its coordinate system is not known."));
  }
  if (shape.elements_without_node > 0) {
    notes.push_back(sentence(shape.elements_without_node, "element is", "elements are",
                             " not drawn: the mesh lacks a node of it."));
  }
  if (glyphs.no_label > 0) {
    notes.push_back(
        sentence(glyphs.no_label, "label is", "labels are", " left out for want of room."));
  }
  return notes;
}

std::string frame_begin(const Options& options) {
  const std::string width = svg::number(options.width);
  const std::string height = svg::number(options.height);
  std::string text =
      "<svg xmlns=\"http://www.w3.org/2000/svg\" "
      "xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"" +
      width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + ' ' + height +
      "\" font-family=\"Helvetica,Arial,sans-serif\">\n";
  text += "<rect width=\"" + width + "\" height=\"" + height + "\" fill=\"#fff\"/>\n";
  if (!options.title.empty()) {
    const std::string title = cut_to(options.title, 16, options.width - 2 * margin);
    text += "<text x=\"14\" y=\"24\" font-size=\"16\" font-weight=\"bold\" fill=\"#111\">" +
            svg::escaped(title) + "</text>\n";
  }
  return text;
}

}  // namespace

Picture draw(const mesh::Mesh& mesh, const content::Content& content, const Options& options) {
  const geometry::Shape shape = geometry::shape_of(mesh);
  const Symbols symbols = find_symbols(mesh, shape, content, options);
  const Extras extras = extras_of(shape, content);
  const geometry::View view = view_of(options, shape);

  Area area{margin, options.title.empty() ? margin : title_height, options.width - margin,
            options.height - margin};
  Area legend_area = area;
  if (options.has_legend) {
    legend_area.left = options.width - std::min(legend_width, options.width * 0.4);
    area.right = legend_area.left - margin;
  }
  const Layout layout = lay_out(shape, symbols, extras, view, area, options.scale);

  geometry::DepthBuffer buffer(static_cast<int>(options.width), static_cast<int>(options.height));
  const std::string body = body_svg(shape, view, layout, buffer);
  const GlyphLayer glyphs = draw_glyphs(symbols, view, layout, buffer, options);

  Picture picture;
  picture.legend = glyphs.legend;
  picture.notes = options.notes;
  std::ranges::move(notes_of(shape, symbols, glyphs), std::back_inserter(picture.notes));
  picture.resultant = symbols.resultant;
  picture.svg = frame_begin(options);
  if (!glyphs.definitions.empty()) {
    picture.svg += "<defs>\n" + glyphs.definitions + "</defs>\n";
  }
  picture.svg += body + extras_svg(layout) + glyphs.body;
  picture.svg += options.has_legend ? legend_svg(picture, view, legend_area)
                                    : axes_svg(view, {area.left + 40, area.bottom - 40});
  picture.svg += "</svg>\n";
  return picture;
}

}  // namespace picture
