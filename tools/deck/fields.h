#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace deck {

/// The fields of a line as the solver sees them: blanks vanish, wherever they stand, and case does
/// not matter. The texts hold until the next line is split.
class Fields {
 public:
  /// Lines of more fields than this do not exist: the solver reads 16 at most.
  static constexpr std::size_t kMost = 32;

  void split(std::string_view line);

  [[nodiscard]] std::size_t size() const { return size_; }
  /// Empty behind the last field.
  [[nodiscard]] std::string_view operator[](std::size_t index) const {
    return index < size_ ? fields_[index] : std::string_view();
  }

 private:
  std::string characters_;
  std::array<std::string_view, kMost> fields_;
  std::size_t size_ = 0;
};

/// The line in capitals and without blanks.
std::string compact(std::string_view line);
bool is_blank(char c);

/// A field for a sentence: in quotation marks, and no more of it than a line can show.
std::string quoted(std::string_view field);

/// A whole number; nothing if the field is none. The solver reads ten characters and drops others,
/// so that a longer field is none.
std::optional<std::int32_t> whole_number(std::string_view field);

/// Whether the solver takes the field for a number where a number or the name of a set may stand.
bool looks_like_whole_number(std::string_view field);

/// The solver reads a number from the first 20 characters of a field.
inline constexpr std::size_t kNumberWidth = 20;

enum class Reading {
  kNumber,
  kCut,        ///< it reads another number than stands there
  kNoNumber,   ///< it refuses the field
  kNotFinite,  ///< infinite or not a number, which it accepts
};

/// Reads a number as the solver does; an empty field is 0.
Reading read_number(std::string_view field, double& value);

/// The shortest text of at most 20 characters for a finite number, or the nearest one.
struct NumberText {
  std::string text;
  bool is_exact = true;
};
NumberText number_text(double value);

}  // namespace deck
