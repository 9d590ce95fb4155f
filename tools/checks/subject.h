#pragma once

#include "tools/content/content.h"
#include "tools/content/loads.h"

/// Checks of a model before it is solved: what acts, what does not fit, and what it adds up to.
namespace checks {

/// The model that is looked at. All that it names must live as long as what was made of it.
struct Subject {
  const content::Content& content;
  const content::Source& source;
  int steps = 0;            ///< of the deck that the model came from; 0: as many as its sets name
  content::LocalAxes axes;  ///< of its coordinate systems
};

}  // namespace checks
