#pragma once

#include <string>

#include "tools/orv/command.h"
#include "tools/views/views.h"

namespace orv {

/// The arguments of a command that shows a model.
struct ViewOptions {
  std::string model;
  std::string out;
  views::Options view;
};

/// Adds them to the command; `out` says what it writes.
void add_view_options(CLI::App& command, ViewOptions& options, const std::string& out);

}  // namespace orv
