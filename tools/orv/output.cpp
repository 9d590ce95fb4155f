#include "tools/orv/output.h"

#include <charconv>
#include <nlohmann/json.hpp>

#include "tools/orv/progress.h"
#include "tools/orv/table.h"
#include "tools/orv/terminal.h"

namespace orv {
namespace {

std::string quoted_field(const std::string& text) {
  std::string field = "\"";
  for (const char c : text) field += c == '"' ? std::string("\"\"") : std::string(1, c);
  return field + '"';
}

std::string csv_field(const std::string& text) {
  return text.find_first_of(",;\"\r\n") == std::string::npos ? text : quoted_field(text);
}

nlohmann::ordered_json json_of(const Cell& cell) {
  return std::visit(
      [](const auto& value) -> nlohmann::ordered_json {
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::monostate>) {
          return nullptr;
        } else {
          return value;
        }
      },
      cell);
}

/// A name that would not read back among others stands between quotation marks.
std::string set_name_text(const std::string& name) {
  const bool is_plain = !name.empty() && name.front() != ' ' && name.back() != ' ' &&
                        name.find_first_of(";\"") == std::string::npos;
  return is_plain ? name : quoted_field(name);
}

}  // namespace

std::string number_text(double number) {
  char digits[32];
  return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

std::string cell_text(const Cell& cell) {
  if (const auto* const number = std::get_if<long>(&cell)) return std::to_string(*number);
  if (const auto* const number = std::get_if<double>(&cell)) return number_text(*number);
  if (const auto* const text = std::get_if<std::string>(&cell)) return *text;
  std::string text;
  if (const auto* const names = std::get_if<Names>(&cell)) {
    bool is_first = true;
    for (const std::string& name : *names) {
      text += (is_first ? "" : "; ") + set_name_text(name);
      is_first = false;
    }
  }
  return text;
}

std::size_t write_csv(std::ostream& out, Listing& listing) {
  const auto write_line = [&](const auto& cells, const auto& text_of) {
    bool is_first = true;
    for (const auto& cell : cells) {
      out << (is_first ? "" : ",") << csv_field(text_of(cell));
      is_first = false;
    }
    out << '\n';
  };
  write_line(listing.columns(), [](const std::string& name) { return name; });
  Row row;
  std::size_t rows = 0;
  for (; listing.next(row); ++rows) write_line(row, cell_text);
  return rows;
}

std::size_t write_table(std::ostream& out, Listing& listing, Zeros zeros_are) {
  Table table(listing.columns());
  {
    const Progress progress("Reading the model");
    Row row;
    while (listing.next(row)) {
      for (const Cell& cell : row) {
        const bool is_text =
            std::holds_alternative<std::string>(cell) || std::holds_alternative<Names>(cell);
        is_text ? table.add_text(cell_text(cell)) : table.add_number(cell_text(cell));
      }
    }
  }
  const std::size_t rows = table.rows();
  if (rows == 0) return 0;
  std::string zeros;
  if (zeros_are == Zeros::kNamed) {
    for (const std::string& name : table.take_zeros()) zeros += (zeros.empty() ? "" : ", ") + name;
  }
  table.write(out, terminal_width());
  if (!zeros.empty()) out << "(0 or empty throughout: " << zeros << ")\n";
  return rows;
}

void write_json(std::ostream& out, Listing& listing) {
  Row row;
  bool is_first = true;
  while (listing.next(row)) {
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (std::size_t i = 0; i < row.size(); ++i) object[listing.columns()[i]] = json_of(row[i]);
    out << (is_first ? "[\n" : ",\n")
        << object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    is_first = false;
  }
  out << (is_first ? "[]\n" : "\n]\n");
}

}  // namespace orv
