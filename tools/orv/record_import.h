#pragma once

#include <array>
#include <bitset>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tools/model/appending.h"
#include "tools/model/database.h"
#include "tools/model/kinds.h"

namespace orv {

/// A row of a table: its number, as the user counts, and its cells.
struct TextRow {
  long number = 0;
  std::vector<std::string> cells;
};

/// A fault of a row: which column, and what is wrong.
struct RowFault {
  std::string column;
  std::string reason;
  long row = 0;  ///< its number
};

/// Numbers that were seen already, in a small part of the memory that they would take themselves.
class SeenNumbers {
 public:
  /// False, if it was seen already.
  bool insert(long number) {
    const auto index = static_cast<unsigned long>(number);
    auto is_seen = blocks_[index / kBlock][index % kBlock];
    if (is_seen) return false;
    is_seen = true;
    return true;
  }

 private:
  static constexpr unsigned long kBlock = 4096;
  std::unordered_map<unsigned long, std::bitset<kBlock>> blocks_;
};

/// Takes rows of texts over into the records of a kind, inside the transaction that the caller has
/// begun. Columns bear the names that Listing gives them, in any order.
///
/// A row with a key changes that record, which stays on its vertex where VertexID is empty; one
/// without makes a new record. A column that is not there leaves a record as it is; there, and
/// where a cell is empty, a new one keeps its own value. An empty cell leaves a record without a
/// value in a column as it is, too. Sets that the model does not have are made; so are vertices,
/// when their coordinates are given.
///
/// The rows are taken in pieces, and nothing is kept of a piece that is done but the keys of
/// changed records: a table may be longer than the memory.
class RecordImport {
 public:
  /// `new_record` has the values of a new record in the kind's columns. Raises, with a sentence, a
  /// name that is no column, is there twice, or is missing.
  RecordImport(model::Database& database, const model::Kind& kind,
               const std::vector<std::string>& columns, std::vector<double> new_record);

  /// Writes a piece of the table, some hundred rows, and adds the faults that it has to `faults`;
  /// then the transaction is of no use any more.
  void add(const std::vector<TextRow>& rows, std::vector<RowFault>& faults);

  [[nodiscard]] long added() const { return added_; }
  /// Records that are not what they were, or not in the sets in which they were.
  [[nodiscard]] long changed() const { return changed_; }
  /// Records whose rows say what the model has already.
  [[nodiscard]] long unchanged() const { return unchanged_; }
  [[nodiscard]] long made_vertices() const { return made_vertices_; }
  [[nodiscard]] const std::vector<std::string>& made_sets() const { return made_sets_; }

 private:
  using Cells = std::vector<std::string>;
  using Place = std::array<double, 3>;  // not a number where it is not known

  struct NewRecord {
    long row;  // its number
    std::string description;
    long vertex;
    std::vector<double> values;
    std::vector<long> sets;
  };

  /// A record as the model has it.
  struct Held {
    long vertex;
    std::string description;
    std::vector<double> values;  // not a number where it has none
    std::vector<long> sets;
  };

  static constexpr std::size_t kAbsent = static_cast<std::size_t>(-1);

  [[nodiscard]] std::size_t place_of(const std::string& column) const;
  [[nodiscard]] const std::string& cell(const Cells& cells, std::size_t place) const;
  void load_sets();
  void look_up_records(const std::vector<TextRow>& rows);
  void look_up_vertices(const std::vector<TextRow>& rows);
  [[nodiscard]] std::string numbers_in(const std::vector<TextRow>& rows, std::size_t place) const;
  void add(const TextRow& row);
  long read_key(const Cells& cells);
  long read_vertex(const Cells& cells);
  std::vector<long> read_sets(const Cells& cells);
  long make_set(const std::string& name);
  void place_vertex(const Cells& cells, long vertex);
  void change(const Cells& cells, long key, long vertex, std::vector<long> sets);
  [[nodiscard]] std::string changes_of(const Cells& cells, const Held& held, long vertex) const;
  [[nodiscard]] std::vector<double> read_values(const Cells& cells) const;
  void write_piece(std::vector<RowFault>& faults);
  void append(std::span<const NewRecord> records);

  model::Database& database_;
  const model::Kind& kind_;
  std::vector<std::string> columns_;
  std::size_t key_;
  std::size_t description_;
  std::size_t vertex_;
  std::array<std::size_t, 3> coordinates_;
  std::size_t sets_;
  std::vector<std::size_t> values_;  // places of the kind's columns, kAbsent for those not given

  std::vector<double> new_record_;

  // Of the model, as far as the piece at hand needs them.
  std::unordered_map<long, Held> held_;
  std::unordered_map<long, Place> vertices_;

  SeenNumbers changed_keys_;
  std::unordered_map<std::string, std::vector<long>> set_ids_;  // those that bear a name
  std::vector<long> unlinked_;                                  // records that leave their sets
  std::vector<std::pair<long, long>> links_;                    // set and record

  model::Appending new_vertices_;
  std::vector<NewRecord> new_records_;
  long added_ = 0;
  long changed_ = 0;
  long unchanged_ = 0;
  long made_vertices_ = 0;
  std::vector<std::string> made_sets_;
};

}  // namespace orv
