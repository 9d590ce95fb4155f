#include "tools/orv/record_import.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

#include "com/error.h"
#include "com/sentence.h"
#include "tools/model/insertion.h"
#include "tools/orv/listing.h"
#include "tools/orv/output.h"
#include "tools/text/failure.h"
#include "tools/text/utf8.h"

namespace orv {
namespace {

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// The names in a cell, as cell_text writes them: with semicolons between them, and between
/// quotation marks where a name could be misread.
std::vector<std::string> names_in(const std::string& cell) {
  std::vector<std::string> names;
  for (std::size_t place = cell.find_first_not_of(' '); place < cell.size();) {
    std::string name;
    if (cell[place] == '"') {
      for (++place; place < cell.size(); ++place) {
        if (cell[place] == '"' && (++place == cell.size() || cell[place] != '"')) break;
        name += cell[place];
      }
      place = cell.find(';', place);
      names.push_back(name);
    } else {
      const std::size_t end = std::min(cell.find(';', place), cell.size());
      name = trimmed(cell.substr(place, end - place));
      place = end;
      if (!name.empty()) names.push_back(name);
    }
    place = place < cell.size() ? cell.find_first_not_of(' ', place + 1) : place;
  }
  return names;
}

template <class Number>
bool read(const std::string& text, Number& number) {
  const char* first = text.data();
  const char* const last = first + text.size();
  if (first != last && *first == '+') ++first;
  const auto [end, error] = std::from_chars(first, last, number);
  return error == std::errc() && end == last;
}

long read_whole(const std::string& column, const std::string& text) {
  long number = 0;
  if (!read(text, number)) {
    throw RowFault{column, "\"" + text + "\" is no whole number up to 2147483647."};
  }
  return number;
}

double read_real(const std::string& column, const std::string& text) {
  double number = 0;
  if (!read(text, number) || !std::isfinite(number)) {
    throw RowFault{column, "\"" + text + "\" is no number. Write it like -1234.5."};
  }
  return number;
}

/// Why the model refuses a single row, without its number there.
std::string reason_of(const com::Error& error) {
  std::string reason = text::to_utf8(com::sentence_of(error));
  if (reason.starts_with("Row 1")) reason.erase(0, std::string_view("Row 1, ").size());
  constexpr std::string_view kEnd = " Nothing was added.";
  if (reason.ends_with(kEnd)) reason.erase(reason.size() - kEnd.size());
  return reason;
}

}  // namespace

RecordImport::RecordImport(model::Database& database, const model::Kind& kind,
                           const std::vector<std::string>& columns, std::vector<double> new_record)
    : database_(database),
      kind_(kind),
      columns_(columns),
      key_(place_of(kind.key())),
      description_(place_of("Description")),
      vertex_(place_of("VertexID")),
      coordinates_{place_of("X"), place_of("Y"), place_of("Z")},
      sets_(place_of(kind.sets)),
      new_record_(std::move(new_record)),
      new_vertices_(database, "Vertices", {"VertexID", "X", "Y", "Z"}) {
  for (const std::string& column : kind.columns) values_.push_back(place_of(column));
  std::vector<std::string> known = Listing(database, kind.table, "1 = 0").columns();
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const bool is_known = std::ranges::find(known, columns_[i]) != known.end();
    if (is_known && place_of(columns_[i]) == i) continue;
    std::string names;
    for (const std::string& name : known) names += (names.empty() ? "" : ", ") + name;
    text::fail(text::kInvalidArgument,
               "The first row has the column \"" + columns_[i] + "\"" +
                   (is_known ? " twice."
                             : ", which " + kind.table + " do not have. They have " + names + "."));
  }
  if (vertex_ == kAbsent) {
    text::fail(text::kInvalidArgument,
               "The first row lacks the column VertexID: the number of the record's node.");
  }
  load_sets();
}

std::size_t RecordImport::place_of(const std::string& column) const {
  const auto found = std::ranges::find(columns_, column);
  return found == columns_.end() ? kAbsent : static_cast<std::size_t>(found - columns_.begin());
}

const std::string& RecordImport::cell(const Cells& cells, std::size_t place) const {
  static const std::string empty;
  return place < cells.size() ? cells[place] : empty;
}

void RecordImport::load_sets() {
  const std::string key = model::key_of_sets(kind_.sets);
  model::Rows rows =
      database_.query("SELECT " + key + ", Description FROM " + kind_.sets + " ORDER BY " + key);
  while (rows.next()) set_ids_[rows.text(1)].push_back(rows.integer(0));
}

/// The whole numbers in a column of the rows, with commas between them; what is none is told when
/// its row is read.
std::string RecordImport::numbers_in(const std::vector<TextRow>& rows, std::size_t place) const {
  std::string list;
  for (const TextRow& row : rows) {
    long number = 0;
    if (!read(cell(row.cells, place), number)) continue;
    list += (list.empty() ? "" : ",") + std::to_string(number);
  }
  return list;
}

void RecordImport::look_up_records(const std::vector<TextRow>& rows) {
  held_.clear();
  const std::string list = numbers_in(rows, key_);
  if (list.empty()) return;
  const std::string among = " WHERE " + kind_.key() + " IN (" + list + ")";
  std::string columns = kind_.key() + ", VertexID, Description";
  for (const std::string& column : kind_.columns) columns += ", " + column;
  model::Rows found = database_.query("SELECT " + columns + " FROM " + kind_.table + among);
  while (found.next()) {
    Held& held = held_[found.integer(0)];
    held.vertex = found.integer(1);
    held.description = found.text(2);
    for (std::size_t i = 0; i < kind_.columns.size(); ++i) {
      held.values.push_back(found.real_or_nan(i + 3));
    }
  }
  if (sets_ == kAbsent) return;
  model::Rows links =
      database_.query("SELECT " + kind_.key() + ", " + model::key_of_sets(kind_.sets) + " FROM " +
                      kind_.link_table() + among + " ORDER BY " + model::key_of_sets(kind_.sets));
  while (links.next()) held_[links.integer(0)].sets.push_back(links.integer(1));
}

void RecordImport::look_up_vertices(const std::vector<TextRow>& rows) {
  vertices_.clear();
  const std::string list = numbers_in(rows, vertex_);
  if (list.empty()) return;
  model::Rows found =
      database_.query("SELECT VertexID, X, Y, Z FROM Vertices WHERE VertexID IN (" + list + ")");
  while (found.next()) {
    Place& place = vertices_[found.integer(0)];
    for (std::size_t axis = 0; axis < place.size(); ++axis)
      place[axis] = found.real_or_nan(axis + 1);
  }
}

long RecordImport::read_key(const Cells& cells) {
  const std::string& text = cell(cells, key_);
  if (text.empty()) return 0;
  const long key = read_whole(kind_.key(), text);
  if (!held_.contains(key)) {
    throw RowFault{kind_.key(), "there is no " + kind_.object + " " + text +
                                    " in the model. Leave the cell empty for a new record."};
  }
  if (!changed_keys_.insert(key)) {
    throw RowFault{kind_.key(), "the " + kind_.object + " " + text +
                                    " stands in the file twice. Delete one of the two rows."};
  }
  return key;
}

long RecordImport::read_vertex(const Cells& cells) {
  const std::string& text = cell(cells, vertex_);
  if (text.empty()) throw RowFault{"VertexID", "the number of the record's node is missing."};
  const long vertex = read_whole("VertexID", text);
  if (vertex <= 0) throw RowFault{"VertexID", "no node has the number " + text + "."};
  place_vertex(cells, vertex);
  return vertex;
}

/// Puts the vertex where the cells say, if it has no place yet.
void RecordImport::place_vertex(const Cells& cells, long vertex) {
  const std::string number = std::to_string(vertex);
  const auto known = vertices_.find(vertex);
  const bool is_known = known != vertices_.end();
  Place place = is_known ? known->second : Place{};
  bool is_given = false;
  std::string changes;
  for (std::size_t axis = 0; axis < place.size(); ++axis) {
    const std::string& text = cell(cells, coordinates_[axis]);
    if (text.empty()) continue;
    const std::string name(1, static_cast<char>('X' + axis));
    const double given = read_real(name, text);
    is_given = true;
    if (!is_known || std::isnan(place[axis])) {
      changes += (changes.empty() ? "" : ", ") + name + " = " + model::literal(given);
      place[axis] = given;
    } else if (place[axis] != given) {
      throw RowFault{name, "the node " + number + " lies at " + number_text(place[axis]) +
                               ", not at " + text + ". Leave the cell empty, or correct it."};
    }
  }
  if (!is_known && !is_given) {
    throw RowFault{"VertexID",
                   "the model has no node " + number + ". Give its X, Y and Z as well."};
  }
  for (std::size_t axis = 0; axis < place.size(); ++axis) {
    // Of a node with one coordinate the others are 0.
    if (changes.empty() || !std::isnan(place[axis])) continue;
    changes += std::string(", ") + static_cast<char>('X' + axis) + " = 0";
    place[axis] = 0;
  }
  vertices_[vertex] = place;
  if (!is_known) {
    ++made_vertices_;
    new_vertices_.add(vertex);
    for (const double coordinate : place) new_vertices_.add(coordinate);
  } else if (!changes.empty()) {
    new_vertices_.finish();  // it may be among them
    database_.execute("UPDATE Vertices SET " + changes + " WHERE VertexID = " + number);
  }
}

std::vector<long> RecordImport::read_sets(const Cells& cells) {
  std::vector<long> sets;
  for (const std::string& name : names_in(cell(cells, sets_))) {
    std::vector<long>& ids = set_ids_[name];
    if (ids.size() > 1) {
      throw RowFault{kind_.sets, "the model has " + std::to_string(ids.size()) + " sets named \"" +
                                     name + "\". Give each a name of its own first."};
    }
    if (ids.empty()) {
      ids.push_back(make_set(name));
      made_sets_.push_back(name);
    }
    if (std::ranges::find(sets, ids.front()) == sets.end()) sets.push_back(ids.front());
  }
  return sets;
}

long RecordImport::make_set(const std::string& name) {
  if (name.find_first_not_of(" \t\r\n\v\f") == std::string::npos) {
    throw RowFault{kind_.sets, "a set without a name is not made. Give it one."};
  }
  try {
    database_.execute("INSERT INTO " + kind_.sets + " (Description) VALUES (" + sql_literal(name) +
                      ")");
  } catch (const com::Error& error) {
    if (error.result() != text::kInvalidArgument) throw;
    throw RowFault{kind_.sets, reason_of(error)};
  }
  model::Rows newest =
      database_.query("SELECT MAX(" + model::key_of_sets(kind_.sets) + ") FROM " + kind_.sets);
  newest.next();
  return newest.integer(0);
}

/// Before anything is written: half a row could not be taken back.
std::vector<double> RecordImport::read_values(const Cells& cells) const {
  std::vector<double> values = new_record_;
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const std::string& text = cell(cells, values_[i]);
    if (text.empty()) continue;
    const std::string& column = kind_.columns[i];
    values[i] = kind_.is_whole[i] ? read_whole(column, text) : read_real(column, text);
  }
  return values;
}

/// What an UPDATE sets, where the cells say something else than the model has; empty if nowhere.
std::string RecordImport::changes_of(const Cells& cells, const Held& held, long vertex) const {
  const std::vector<double> values = read_values(cells);
  std::string changes;
  const auto set = [&](const std::string& column, const std::string& value) {
    changes += (changes.empty() ? "" : ", ") + column + " = " + value;
  };
  if (vertex != 0 && vertex != held.vertex) set("VertexID", std::to_string(vertex));
  if (description_ != kAbsent && cell(cells, description_) != held.description) {
    set("Description", sql_literal(cell(cells, description_)));
  }
  for (std::size_t i = 0; i < values_.size(); ++i) {
    if (values_[i] == kAbsent || values[i] == held.values[i]) continue;
    const bool stays_empty = std::isnan(held.values[i]) && cell(cells, values_[i]).empty();
    if (stays_empty) continue;
    set(kind_.columns[i], kind_.is_whole[i] ? std::to_string(static_cast<long>(values[i]))
                                            : model::literal(values[i]));
  }
  return changes;
}

void RecordImport::change(const Cells& cells, long key, long vertex, std::vector<long> sets) {
  const Held& held = held_.at(key);
  const std::string changes = changes_of(cells, held, vertex);
  if (!changes.empty()) {
    new_vertices_.finish();  // it may stand on one of them
    database_.execute("UPDATE " + kind_.table + " SET " + changes + " WHERE " + kind_.key() +
                      " = " + std::to_string(key));
  }
  std::ranges::sort(sets);
  const bool is_in_others = sets_ != kAbsent && sets != held.sets;
  if (is_in_others) {
    unlinked_.push_back(key);
    for (const long set : sets) links_.emplace_back(set, key);
  }
  ++(changes.empty() && !is_in_others ? unchanged_ : changed_);
}

void RecordImport::add(const std::vector<TextRow>& rows, std::vector<RowFault>& faults) {
  look_up_records(rows);
  look_up_vertices(rows);
  for (const TextRow& row : rows) {
    try {
      add(row);
    } catch (RowFault& fault) {
      fault.row = row.number;
      faults.push_back(std::move(fault));
    }
  }
  new_vertices_.finish();  // for the rows of the next piece
  // With a fault nothing of it will be kept.
  if (faults.empty()) write_piece(faults);
  new_records_.clear();
  unlinked_.clear();
  links_.clear();
}

void RecordImport::add(const TextRow& row) {
  const Cells& cells = row.cells;
  if (cells.size() > columns_.size()) {
    throw RowFault{"", "the row has " + std::to_string(cells.size()) + " cells, the first row " +
                           std::to_string(columns_.size()) + "."};
  }
  const long key = read_key(cells);
  const bool stays = key != 0 && cell(cells, vertex_).empty();
  const long vertex = stays ? 0 : read_vertex(cells);
  std::vector<long> sets = read_sets(cells);
  if (key != 0) {
    change(cells, key, vertex, std::move(sets));
    return;
  }
  new_records_.push_back({.row = row.number,
                          .description = cell(cells, description_),
                          .vertex = vertex,
                          .values = read_values(cells),
                          .sets = std::move(sets)});
  ++added_;
}

/// What the model itself refuses is told row by row.
void RecordImport::write_piece(std::vector<RowFault>& faults) {
  try {
    append(new_records_);
  } catch (const com::Error&) {
    for (const NewRecord& record : new_records_) {
      try {
        append({&record, 1});
      } catch (const com::Error& error) {
        faults.push_back({.column = "", .reason = reason_of(error), .row = record.row});
      }
    }
    if (faults.empty()) throw;
    return;
  }
  if (!unlinked_.empty()) {
    std::string list;
    for (const long key : unlinked_) list += (list.empty() ? "" : ",") + std::to_string(key);
    database_.execute("DELETE FROM " + kind_.link_table() + " WHERE " + kind_.key() + " IN (" +
                      list + ")");
  }
  model::Insertion links(database_, kind_.link_table(),
                         model::key_of_sets(kind_.sets) + ", " + kind_.key());
  for (const auto& [set, record] : links_) {
    links.begin_row();
    links.add(set);
    links.add(record);
  }
  links.finish();
}

void RecordImport::append(std::span<const NewRecord> records) {
  std::size_t most_sets = 0;
  for (const NewRecord& record : records) most_sets = std::max(most_sets, record.sets.size());
  std::vector<std::string> columns = kind_.columns;
  columns.insert(columns.begin(), "VertexID");
  columns.insert(columns.end(), most_sets, model::key_of_sets(kind_.sets));
  const bool is_described = description_ != kAbsent;
  if (is_described) columns.emplace_back("Description");
  model::Appending rows(database_, kind_.table, columns);
  for (const NewRecord& record : records) {
    rows.add(record.vertex);
    for (const double value : record.values) rows.add(value);
    for (const long set : record.sets) rows.add(set);
    for (std::size_t i = record.sets.size(); i < most_sets; ++i) rows.add("");
    if (is_described) rows.add(record.description);
  }
  rows.finish();
}

}  // namespace orv
