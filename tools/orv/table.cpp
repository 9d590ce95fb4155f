#include <algorithm>

#include "tools/orv/output.h"
#include "tools/orv/terminal.h"

namespace orv {
namespace {

constexpr std::size_t kGap = 2;  // between columns

/// Characters of a UTF-8 text: bytes that begin one.
std::size_t length_of(const std::string& text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

/// The first characters of a text, an ellipsis in the place of what is cut off.
std::string shortened(const std::string& text, std::size_t length) {
  if (length_of(text) <= length) return text;
  std::size_t bytes = 0;
  for (std::size_t seen = 0; bytes < text.size(); ++bytes) {
    if ((text[bytes] & 0xC0) != 0x80 && ++seen == length) break;
  }
  return text.substr(0, bytes) + "\u2026";
}

/// Characters in front of the decimal point, and from it on.
struct Halves {
  std::size_t whole = 0;
  std::size_t fraction = 0;
};

Halves halves_of(const std::string& number) {
  const std::size_t point = std::min(number.find_first_of(".e"), number.size());
  return {.whole = point, .fraction = number.size() - point};
}

struct Column {
  std::string name;
  std::vector<std::string> cells;
  bool is_number = true;  // as long as no cell is a text
  bool is_zero = true;    // as long as all cells are 0 or empty
  Halves halves;          // the largest, of numbers
  std::size_t width = 0;

  void add(const Cell& cell) {
    std::string text = cell_text(cell);
    const bool is_text =
        std::holds_alternative<std::string>(cell) || std::holds_alternative<Names>(cell);
    if (is_text) is_number = false;
    if (!text.empty() && (is_text || text != "0")) is_zero = false;
    const Halves own = halves_of(text);
    halves.whole = std::max(halves.whole, own.whole);
    halves.fraction = std::max(halves.fraction, own.fraction);
    width = std::max(width, length_of(text));
    cells.push_back(std::move(text));
  }

  void finish() {
    if (is_number) width = halves.whole + halves.fraction;
    width = std::max(width, length_of(name));
  }

  [[nodiscard]] std::string heading() const {
    const std::string gap(width - std::min(width, length_of(name)), ' ');
    return is_number ? gap + name : shortened(name, width) + gap;
  }

  [[nodiscard]] std::string padded(const std::string& cell) const {
    if (!is_number) {
      const std::string text = shortened(cell, width);
      return text + std::string(width - length_of(text), ' ');
    }
    const std::string text = cell + std::string(halves.fraction - halves_of(cell).fraction, ' ');
    return std::string(width - std::min(width, text.size()), ' ') + text;
  }
};

std::vector<Column> read_columns(Listing& listing) {
  std::vector<Column> columns;
  for (const std::string& name : listing.columns()) columns.emplace_back().name = name;
  Row row;
  while (listing.next(row)) {
    for (std::size_t i = 0; i < row.size(); ++i) columns[i].add(row[i]);
  }
  for (Column& column : columns) column.finish();
  return columns;
}

std::size_t width_of(const std::vector<Column>& columns) {
  std::size_t width = 0;
  for (const Column& column : columns) width += column.width + kGap;
  return width - std::min(width, kGap);
}

/// The widest texts give way until the table fits, as far as that goes.
void fit(std::vector<Column>& columns, std::size_t terminal) {
  constexpr std::size_t kShortest = 8;
  while (width_of(columns) > terminal) {
    const auto widest = std::ranges::max_element(
        columns, {}, [](const Column& column) { return column.is_number ? 0 : column.width; });
    if (widest->is_number || widest->width <= kShortest) return;
    --widest->width;
  }
}

void write_line(std::ostream& out, std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  out << line << '\n';
}

}  // namespace

std::size_t write_table(std::ostream& out, Listing& listing) {
  std::vector<Column> columns = read_columns(listing);
  const std::size_t rows = columns.empty() ? 0 : columns.front().cells.size();
  if (rows == 0) return 0;
  std::string zeros;
  for (const Column& column : columns) {
    if (column.is_zero) zeros += (zeros.empty() ? "" : ", ") + column.name;
  }
  std::erase_if(columns, [](const Column& column) { return column.is_zero; });
  if (const auto terminal = terminal_width()) fit(columns, *terminal);

  const std::string gap(kGap, ' ');
  std::string line;
  for (const Column& column : columns) line += (line.empty() ? "" : gap) + column.heading();
  write_line(out, line);
  for (std::size_t row = 0; row < rows; ++row) {
    line.clear();
    for (const Column& column : columns) {
      line += (&column == columns.data() ? "" : gap) + column.padded(column.cells[row]);
    }
    write_line(out, line);
  }
  if (!zeros.empty()) out << "(0 or empty throughout: " << zeros << ")\n";
  return rows;
}

}  // namespace orv
