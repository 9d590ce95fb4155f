#pragma once

#include "tools/orv/command.h"
#include "tools/views/views.h"

namespace orv {

/// Adds the options of a command that shows a model.
void add_view_options(CLI::App& command, views::Options& options);

}  // namespace orv
