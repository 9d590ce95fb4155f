#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "modeldb/engine/database.h"
#include "modeldb/history/history.h"
#include "modeldb/model/activation.h"
#include "modeldb/model/seen_rows.h"
#include "modeldb/schema/catalogue.h"

namespace modeldb {

/// An open model: its file with all tables, and what holds for as long as it is open.
class Model {
 public:
  /// Opens the file, or makes it. Raises, with a sentence, when that cannot be done; an existing
  /// file is left as it was.
  explicit Model(std::wstring_view location);
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;
  /// Rolls back what is not committed, and closes the file whoever still uses the database.
  ~Model() { database_->close(); }

  [[nodiscard]] const Catalogue& catalogue() const { return catalogue_; }
  [[nodiscard]] const std::shared_ptr<Database>& database() const { return database_; }
  /// The path of its file, for whoever remembers it longer than the model lives.
  [[nodiscard]] const std::shared_ptr<const std::wstring>& shared_location() const {
    return location_;
  }
  /// What can be undone.
  [[nodiscard]] History& history() { return *history_; }
  /// Null where nobody else changes rows at the same time.
  [[nodiscard]] const std::shared_ptr<SeenRows>& seen_rows() const { return seen_rows_; }

 private:
  // First: the catalogue asks records, which create the model's objects.
  Activation activation_;
  const Catalogue& catalogue_;
  std::shared_ptr<Database> database_;
  std::shared_ptr<const std::wstring> location_;
  std::optional<History> history_;
  std::shared_ptr<SeenRows> seen_rows_;
};

}  // namespace modeldb
