#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/model/database.h"

/// Pictures of models and reports about them, written to files. Texts are UTF-8; every failure is
/// raised with a sentence.
namespace views {

/// What to show, as users say it.
struct Options {
  std::string deck;                ///< path of the deck whose mesh is shown; empty: none
  std::string view;                ///< as geometry::read_direction reads it; empty: the best one
  std::string labels = "none";     ///< none, values, nodes or names
  double scale = 1;                ///< of the glyphs
  std::vector<std::string> kinds;  ///< as model::find_kind takes them; empty: all
  std::vector<std::string> sets;   ///< names; empty: all, and records without a set
  std::optional<int> step;         ///< only what is said in that step
  std::string title;
};

/// Raises kInvalidArgument unless view, labels, scale and step can be meant.
void require_valid(const Options& options);

/// Writes a picture. Returns what it leaves out, as sentences.
std::vector<std::string> draw(model::Database& database, const Options& options,
                              const std::string& path);

/// Writes a report: the picture, and of the whole model findings, resultants, sets and records.
void report(model::Database& database, const Options& options, const std::string& path);

}  // namespace views
