#pragma once

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace orv {

/// A table for the eye. Numbers stand below each other by their points; texts are shown on one
/// line.
class Table {
 public:
  explicit Table(const std::vector<std::string>& names);

  /// The next cell of the row at hand, which has one for each column.
  void add_number(std::string number);
  void add_text(const std::string& text);
  [[nodiscard]] std::size_t rows() const { return columns_.front().cells.size(); }

  /// Takes the columns away that are 0 or empty in all rows, and returns their names.
  std::vector<std::string> take_zeros();

  /// Writes it for a terminal of that many columns. Long texts give way first; columns for which
  /// there still is no room stand below in a part of their own, beside the first column again.
  void write(std::ostream& out, std::optional<std::size_t> terminal);

 private:
  /// Characters of a number in front of its point, and from it on.
  struct Halves {
    std::size_t whole = 0;
    std::size_t fraction = 0;
  };

  struct Column {
    std::string name;
    std::vector<std::string> cells;
    bool is_number = true;  // as long as no cell is a text
    bool is_zero = true;    // as long as all cells are 0 or empty
    Halves halves;          // the largest, of numbers
    std::size_t width = 0;

    [[nodiscard]] std::string padded(const std::string& cell) const;
    [[nodiscard]] std::string heading() const;
  };

  using Part = std::vector<std::size_t>;  // indices of columns

  static Halves halves_of(const std::string& number);
  Column& next_column();
  [[nodiscard]] std::size_t width_of(const Part& part) const;
  void shorten_texts(std::size_t terminal);
  [[nodiscard]] std::vector<Part> parts(std::size_t terminal) const;
  void write(std::ostream& out, const Part& part) const;

  std::vector<Column> columns_;
  std::size_t next_ = 0;
};

}  // namespace orv
