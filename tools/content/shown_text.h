#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Texts of users as a terminal shows them: names of sets and descriptions may hold anything.
namespace content {

/// A text on one line: control characters, and those that turn the direction of writing, as \n,
/// \t or \x1B; what is no UTF-8 as U+FFFD.
std::string on_one_line(std::string_view text);
/// The same for a sentence, whose line breaks stay.
std::string without_controls(std::string_view text);

/// Columns that a text of one line takes on a terminal: a letter with accents one, Chinese,
/// Japanese and Korean characters and emoji two.
std::size_t columns_of(std::string_view text);

/// The beginning of a text of one line that takes at most so many columns, with an ellipsis in the
/// place of what is cut off.
std::string cut_to_columns(const std::string& text, std::size_t columns);

/// A name as sentences show it: on one line, and no longer than a line.
std::string shown_name(std::string_view name);

}  // namespace content
