#pragma once

#include <ostream>
#include <string>

#include "tools/orv/listing.h"

namespace orv {

/// A number in its shortest form that reads back as the same one.
std::string number_text(double number);
/// A cell as text: numbers as above, names of sets with "; " between them, those
/// that hold a semicolon or a quotation mark, or a blank at an end, between quotation marks.
std::string cell_text(const Cell& cell);

/// Comma-separated values with a header of the columns' names, as RFC 4180 has them, with line ends
/// of one character. Returns the number of rows.
std::size_t write_csv(std::ostream& out, Listing& listing);

/// A JSON array with an object on each line, its members in the order of the columns; sets are an
/// array of names.
void write_json(std::ostream& out, Listing& listing);

/// What becomes of columns that are 0 or empty in all rows: they stay, or are only named below.
enum class Zeros { kShown, kNamed };

/// A table as wide as the terminal. Returns the number of rows.
std::size_t write_table(std::ostream& out, Listing& listing, Zeros zeros_are = Zeros::kNamed);

}  // namespace orv
