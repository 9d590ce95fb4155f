#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace orv {

// What arguments may be, and what is said of those that are something else.

/// A whole number that a long has room for.
CLI::Validator whole_number();
/// A number above 0.
CLI::Validator positive_number();

/// Why the arguments were not understood, as a sentence, and which help tells more.
std::string fault_of(const CLI::App& program, const CLI::ParseError& error);

}  // namespace orv
