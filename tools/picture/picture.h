#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/checks/resultant.h"
#include "tools/content/content.h"
#include "tools/content/loads.h"
#include "tools/mesh/mesh.h"

/// Pictures of a model and its nodal loads and constraints.
namespace picture {

enum class Labels : std::uint8_t {
  none,
  values,  ///< the number that a record carries
  nodes,   ///< the number of its node
  names,   ///< its description, or kind and key
};

/// Says whether a record is to be drawn.
using Filter = std::function<bool(const content::Table&, std::size_t record)>;

struct Options {
  std::string title;
  /// The side from which to look, as geometry::read_direction gives it. Nothing: isometric, or
  /// straight at plane and axisymmetric elements.
  std::optional<std::array<double, 3>> from;
  double width = 1000;  ///< pixels
  double height = 700;  ///< pixels
  double scale = 1;     ///< of the glyphs
  bool has_legend = true;
  Labels labels = Labels::none;
  std::vector<std::string> kinds;  ///< names of tables; empty: all
  std::vector<std::string> sets;   ///< names; empty: all, and records without a set
  Filter filter;                   ///< a further one
  content::LocalAxes axes;         ///< of coordinate systems; records in unknown ones are not drawn
  /// Of supports and prescribed displacements; without it they are along the global axes.
  content::NodeAxes node_axes;
  std::vector<std::string> notes;  ///< further ones, that stand in front of the picture's
  std::string id_prefix;           ///< before the identifiers, for several pictures on one page
};

/// Chooses what Options::kinds and Options::sets name. `content` must live as long as the filter.
Filter in_sets(const content::Content& content, const std::vector<std::string>& kinds,
               const std::vector<std::string>& sets);

/// A line of the legend.
struct LegendEntry {
  std::string name;    ///< "Support xyz"
  std::string sample;  ///< the glyph, as SVG elements around (0, 0)
  std::string color;
  std::size_t records = 0;
  std::size_t drawn = 0;  ///< with a glyph of their own; for the others there is a dot
  std::string range;      ///< of the values: "20 to 400"; empty if there are none
};

struct Picture {
  std::string svg;
  std::vector<LegendEntry> legend;
  std::vector<std::string> notes;  ///< what the picture leaves out, as sentences
  checks::Resultant resultant;     ///< of the forces and moments in it, about the origin
};

/// Draws a model. The same model and options give the same bytes on every machine. A record of
/// which no node, coordinates or coordinate system is known is counted in a note.
Picture draw(const mesh::Mesh& mesh, const content::Content& content, const Options& options = {});

}  // namespace picture
