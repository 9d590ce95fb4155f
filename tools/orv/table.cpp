#include "tools/orv/table.h"

#include <algorithm>
#include <numeric>

#include "tools/content/shown_text.h"

namespace orv {
namespace {

constexpr std::size_t kGap = 2;  // between columns

void write_line(std::ostream& out, std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  out << line << '\n';
}

std::string blanks(std::size_t width, std::size_t used) {
  return std::string(width - std::min(width, used), ' ');
}

}  // namespace

Table::Table(const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    columns_.emplace_back().name = name;
    columns_.back().width = name.size();
  }
}

Table::Column& Table::next_column() {
  Column& column = columns_[next_];
  next_ = (next_ + 1) % columns_.size();
  return column;
}

Table::Halves Table::halves_of(const std::string& number) {
  const std::size_t point = std::min(number.find_first_of(".e"), number.size());
  return {.whole = point, .fraction = number.size() - point};
}

void Table::add_number(std::string number) {
  Column& column = next_column();
  if (!number.empty() && number != "0") column.is_zero = false;
  const Halves own = halves_of(number);
  column.halves.whole = std::max(column.halves.whole, own.whole);
  column.halves.fraction = std::max(column.halves.fraction, own.fraction);
  column.width = std::max(column.width, column.halves.whole + column.halves.fraction);
  column.cells.push_back(std::move(number));
}

void Table::add_text(const std::string& text) {
  Column& column = next_column();
  column.is_number = false;
  if (!text.empty()) column.is_zero = false;
  column.cells.push_back(content::on_one_line(text));
  column.width = std::max(column.width, content::columns_of(column.cells.back()));
}

std::vector<std::string> Table::take_zeros() {
  std::vector<std::string> names;
  for (const Column& column : columns_) {
    if (column.is_zero) names.push_back(column.name);
  }
  std::erase_if(columns_, [](const Column& column) { return column.is_zero; });
  return names;
}

std::string Table::Column::heading() const {
  return is_number ? blanks(width, name.size()) + name
                   : name + blanks(width, content::columns_of(name));
}

std::string Table::Column::padded(const std::string& cell) const {
  if (!is_number) {
    const std::string text = content::cut_to_columns(cell, width);
    return text + blanks(width, content::columns_of(text));
  }
  const std::string text = cell + blanks(halves.fraction, halves_of(cell).fraction);
  return blanks(width, text.size()) + text;
}

std::size_t Table::width_of(const Part& part) const {
  std::size_t width = 0;
  for (const std::size_t column : part) width += columns_[column].width + kGap;
  return width - std::min(width, kGap);
}

/// The widest first, as far as that goes.
void Table::shorten_texts(std::size_t terminal) {
  constexpr std::size_t kShortest = 12;
  Part all(columns_.size());
  std::iota(all.begin(), all.end(), 0U);
  for (std::size_t width = width_of(all); width > terminal; --width) {
    const auto widest = std::ranges::max_element(
        columns_, {}, [](const Column& column) { return column.is_number ? 0 : column.width; });
    const std::size_t least = std::max(kShortest, widest->name.size());
    if (widest->is_number || widest->width <= least) return;
    --widest->width;
  }
}

std::vector<Table::Part> Table::parts(std::size_t terminal) const {
  std::vector<Part> parts{{0}};
  for (std::size_t column = 1; column < columns_.size(); ++column) {
    parts.back().push_back(column);
    if (width_of(parts.back()) <= terminal || parts.back().size() == 2) continue;
    parts.back().pop_back();
    parts.push_back({0, column});
  }
  return parts;
}

void Table::write(std::ostream& out, std::optional<std::size_t> terminal) {
  if (columns_.empty()) return;
  if (terminal) shorten_texts(*terminal);
  bool is_first = true;
  for (const Part& part : parts(terminal.value_or(static_cast<std::size_t>(-1)))) {
    if (!is_first) out << '\n';
    is_first = false;
    write(out, part);
  }
}

void Table::write(std::ostream& out, const Part& part) const {
  const auto write_row = [&](const auto& text_of) {
    std::string line;
    for (const std::size_t column : part) {
      line += (line.empty() ? "" : std::string(kGap, ' ')) + text_of(columns_[column]);
    }
    write_line(out, line);
  };
  write_row([](const Column& column) { return column.heading(); });
  for (std::size_t row = 0; row < rows(); ++row) {
    write_row([row](const Column& column) { return column.padded(column.cells[row]); });
  }
}

}  // namespace orv
