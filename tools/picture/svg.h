#pragma once

#include <string>
#include <string_view>

/// Texts of SVG and HTML, the same on every machine.
namespace svg {

/// The number with at most so many digits behind the point, without zeros at its end.
std::string number(double value, int digits = 1);

/// A number for people: four significant digits, with an exponent when it is very large or small.
std::string readable(double value);

/// A number with as many digits as it takes to read the same number back.
std::string exact(double value);

/// A count with commas between the thousands.
std::string count(std::size_t value);

/// The text as it may stand between tags or in an attribute. What no XML may hold becomes U+FFFD.
std::string escaped(std::string_view text);

}  // namespace svg
