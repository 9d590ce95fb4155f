#pragma once

#include <orv_tools.h>

#include <string>

#include "com/ptr.h"

namespace orv {

/// Prints what the deck's last call left out, under a heading; nothing when there is nothing.
void print_remarks(const std::string& heading, const com::Ptr<IDeck>& deck);

}  // namespace orv
