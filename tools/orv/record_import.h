#pragma once

#include <array>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tools/model/database.h"
#include "tools/model/insertion.h"
#include "tools/model/kinds.h"

namespace orv {

/// A fault of a table's row: which column, and what is wrong.
struct RowFault {
  std::string column;
  std::string reason;
};

/// Takes rows of texts over into the records of a kind, inside the transaction that the caller has
/// begun. Columns bear the names that Listing gives them, in any order.
///
/// A row with a key changes that record; one without makes a new record. A column that is not there
/// leaves a record as it is; there, and where a cell is empty, a new one keeps its own value. Sets
/// that the model does not have are made; so are vertices, when their coordinates are given.
class RecordImport {
 public:
  /// `new_record` has the values of a new record in the kind's columns. Raises, with a sentence, a
  /// name that is no column, is there twice, or is missing.
  RecordImport(model::Database& database, const model::Kind& kind,
               const std::vector<std::string>& columns, std::vector<double> new_record);

  /// Throws RowFault; then the transaction is of no use any more.
  void add(const std::vector<std::string>& cells);
  /// Writes what is left.
  void finish();

  [[nodiscard]] long added() const { return added_; }
  [[nodiscard]] long changed() const { return changed_; }

 private:
  using Cells = std::vector<std::string>;
  static constexpr std::size_t kAbsent = static_cast<std::size_t>(-1);

  [[nodiscard]] std::size_t place_of(const std::string& column) const;
  [[nodiscard]] const std::string& cell(const Cells& cells, std::size_t place) const;
  void load_keys();
  void load_vertices();
  void load_sets();
  long read_key(const Cells& cells);
  long read_vertex(const Cells& cells);
  std::vector<long> read_sets(const Cells& cells);
  void add_new(const Cells& cells, long vertex, const std::vector<long>& sets);
  void change(const Cells& cells, long key, long vertex, const std::vector<long>& sets);
  void add_values(model::Insertion& rows, const Cells& cells, long vertex);
  [[nodiscard]] std::string insert_columns() const;

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

  std::unordered_set<long> keys_;  // of records that may still be changed
  std::unordered_map<long, std::array<double, 3>> vertices_;
  std::unordered_map<std::string, long> set_ids_;
  long last_set_ = 0;
  std::vector<std::pair<long, long>> links_;  // set and record

  model::Insertion new_vertices_;
  model::Insertion new_records_;
  long last_key_ = 0;  // of a new record
  long added_ = 0;
  long changed_ = 0;
};

}  // namespace orv
