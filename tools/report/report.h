#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/checks/finding.h"
#include "tools/checks/resultant.h"
#include "tools/content/content.h"
#include "tools/mesh/mesh.h"
#include "tools/picture/picture.h"

/// A report about a model as one page.
namespace report {

struct Options {
  std::string title;
  std::string subtitle;      ///< such as the deck's name; may be empty
  picture::Options picture;  ///< of its picture: view, filters, labels, coordinate systems
  std::size_t rows = 40;     ///< of each kind's table; the others are counted
  std::vector<checks::Finding> findings;
  std::vector<checks::Resultant> resultants;
};

/// The page: HTML without scripts and without anything from elsewhere. The same model and options
/// give the same bytes.
std::string html(const mesh::Mesh& mesh, const content::Content& content, const Options& options);

}  // namespace report
