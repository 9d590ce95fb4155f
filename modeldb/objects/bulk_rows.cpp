#include "modeldb/objects/bulk_rows.h"

#include <algorithm>
#include <optional>
#include <span>
#include <unordered_set>

#include "com/sentence.h"
#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"
#include "modeldb/objects/cells.h"
#include "modeldb/schema/host_kinds.h"
#include "modeldb/store/cell_value.h"
#include "modeldb/store/row_values.h"
#include "modeldb/store/set_names.h"

namespace modeldb {
namespace {

constexpr wchar_t kNothingAdded[] = L" Nothing was added.";

/// What the cells of one column are for.
struct Target {
  enum class Role { kKey, kValue, kSetName, kSetKey };
  Role role;
  std::wstring name;
  std::size_t value = 0;  // the kind's column, for kValue
};

std::wstring list_of_columns(const Kind& kind, const Kind* sets) {
  std::wstring list = kind.key;
  for (const Column& column : kind.columns) list += L", " + column.name;
  if (sets) list += L", " + sets->table + L" (by name), " + sets->key;
  return list;
}

std::wstring_view without_blanks(std::wstring_view name) {
  const auto first = name.find_first_not_of(L" \t");
  if (first == std::wstring_view::npos) return {};
  return name.substr(first, name.find_last_not_of(L" \t") - first + 1);
}

Target target_of(std::wstring_view name, const Kind& kind, const Kind* sets) {
  using enum Target::Role;
  if (same_name(name, kind.key)) return {kKey, kind.key};
  if (sets && same_name(name, sets->table)) return {kSetName, sets->table};
  if (sets && same_name(name, sets->key)) return {kSetKey, sets->key};
  const auto column = std::ranges::find_if(
      kind.columns, [&](const Column& candidate) { return same_name(candidate.name, name); });
  if (column == kind.columns.end()) {
    fail(kItemNotFound, L"The table " + kind.table + L" has no column " + quoted(name) +
                            L". Its columns are " + list_of_columns(kind, sets) + L".");
  }
  return {kValue, column->name, static_cast<std::size_t>(column - kind.columns.begin())};
}

void require_no_second(const std::vector<Target>& targets, const Target& target) {
  const bool may_repeat =
      target.role == Target::Role::kSetName || target.role == Target::Role::kSetKey;
  if (may_repeat) return;
  if (std::ranges::find(targets, target.name, &Target::name) != targets.end()) {
    fail(kInvalidArgument,
         L"The column " + target.name + L" is named twice. Name each column once.");
  }
}

std::vector<Target> targets_of(const VARIANT& columns, const Kind& kind, const Kind* sets) {
  std::vector<Target> targets;
  for (const std::wstring& name : list_of_texts(columns)) {
    Target target = target_of(without_blanks(name), kind, sets);
    require_no_second(targets, target);
    targets.push_back(std::move(target));
  }
  if (targets.empty()) {
    fail(kInvalidArgument, L"No columns are named. Name those that the rows have values for.");
  }
  return targets;
}

/// What a new object of the kind says of itself.
class Sample {
 public:
  explicit Sample(const Table& table) : record_(table, create(table.kind())) {
    values_.read_for_insert(record_);
  }

  [[nodiscard]] const std::vector<Literal>& values() const { return values_.get(); }
  [[nodiscard]] long event_type() const { return record_.event_type(); }

 private:
  static com::Ptr<IPersistentObject> create(const Kind& kind) {
    com::Ptr<IPersistentObject> object;
    com::check(CoCreateInstance(kind.object_class, nullptr, CLSCTX_INPROC_SERVER,
                                kind.object_interface, object.put_void()));
    return object;
  }

  Record record_;
  RowValues values_;
};

/// Makes the vertices that the rows stand on and the model does not have.
class VertexRows {
 public:
  VertexRows(Database& database, const Table& vertices)
      : database_(database), vertices_(vertices), blank_(vertices) {}

  /// The key of the vertex `id`; of a new one for 0.
  long provide(long id) {
    if (id == 0) return vertices_.insert(database_, 0, blank_.values());
    if (seen_.insert(id).second && !vertices_.find(database_, id)) {
      vertices_.provide(database_, id, blank_.values());
    }
    return id;
  }

 private:
  Database& database_;
  const Table& vertices_;
  Sample blank_;
  std::unordered_set<long> seen_;
};

/// Writes the rows of one call, in the change that is under way.
class Appender {
 public:
  Appender(const Model& model, const Table& table, const Kind* sets, std::vector<Target> targets)
      : database_(*model.database()),
        table_(table),
        sample_(table),
        targets_(std::move(targets)),
        texts_(targets_.size()) {
    const Table* const vertices = model.catalogue().find(vertex_kind().table);
    const auto vertex = std::ranges::find(kind().columns, vertex_kind().key, &Column::name);
    if (vertices && vertex != kind().columns.end()) {
      vertex_column_ = static_cast<std::size_t>(vertex - kind().columns.begin());
      vertices_.emplace(database_, *vertices);
    }
    if (!sets) return;
    set_names_.emplace(database_, *sets);
    link_ = L"INSERT INTO " + kind().link_table() + L" (" + sets->key + L", " + kind().key +
            L") VALUES (?, ?)";
  }

  [[nodiscard]] long event_type() const { return sample_.event_type(); }

  long append(Cells& cells, std::size_t row) {
    values_ = sample_.values();
    key_ = 0;
    sets_.clear();
    for (std::size_t column = 0; column < targets_.size(); ++column) {
      const VARIANT& cell = cells.get(row, column);
      if (is_blank(cell)) continue;
      try {
        take(targets_[column], cell, texts_[column]);
      } catch (const CellFault& fault) {
        fail(kInvalidArgument, L"Row " + std::to_wstring(row + 1) + L", column " +
                                   targets_[column].name + L", " + fault.words + kNothingAdded);
      }
    }
    complete_place();
    return write(row);
  }

 private:
  [[nodiscard]] const Kind& kind() const { return table_.kind(); }

  void take(const Target& target, const VARIANT& cell, std::wstring& text) {
    switch (target.role) {
      case Target::Role::kKey:
        key_ = key_of(cell);
        require_free(key_);
        return;
      case Target::Role::kValue:
        values_[target.value] = vertices_ && target.value == vertex_column_
                                    ? Literal(std::int64_t{vertex_of(cell)})
                                    : literal_of(cell, kind().columns[target.value], text);
        return;
      case Target::Role::kSetName:
        return add_set(set_names_->find(name_in(cell, text)));
      case Target::Role::kSetKey: {
        const long id = key_of(cell);
        set_names_->require(id);
        return add_set(id);
      }
    }
  }

  void require_free(long key) const {
    if (!table_.find(database_, key)) return;
    throw CellFault{L"holds " + std::to_wstring(key) + L", but the model has a " + kind().object +
                    L" of that number. Leave the cell empty for a new number."};
  }

  /// A name as it stands in the cell, with the blanks around it.
  static std::wstring_view name_in(const VARIANT& cell, std::wstring& text) {
    const std::wstring_view name = text_of_cell(cell, text);
    return cell.vt == VT_BSTR ? com::Bstr::view(cell.bstrVal) : name;
  }

  /// A vertex with a single coordinate has the others, too: they are 0.
  void complete_place() {
    const auto is_unknown = [](const Literal& value) {
      return std::holds_alternative<std::nullptr_t>(value);
    };
    const auto& columns = kind().columns;
    const auto coordinate = std::ranges::find(columns, true, &Column::may_be_unknown);
    const std::span coordinates(values_.begin() + (coordinate - columns.begin()), values_.end());
    if (std::ranges::all_of(coordinates, is_unknown)) return;
    std::ranges::replace_if(coordinates, is_unknown, Literal(0.0));
  }

  void add_set(long id) {
    if (std::ranges::find(sets_, id) == sets_.end()) sets_.push_back(id);
  }

  long write(std::size_t row) {
    try {
      if (vertices_) provide_vertex();
      const long key = table_.insert(database_, key_, values_);
      for (const long set : sets_) database_.execute(link_, set, key);
      return key;
    } catch (const com::Error& error) {
      // Others, such as a full disk, are not the row's.
      if (error.result() != kInvalidArgument && error.result() != kIntegrityViolation) throw;
      fail(error.result(),
           L"Row " + std::to_wstring(row + 1) + L". " + sentence_of(error) + kNothingAdded);
    }
  }

  void provide_vertex() {
    Literal& vertex = values_[vertex_column_];
    const long id = vertices_->provide(static_cast<long>(std::get<std::int64_t>(vertex)));
    vertex = std::int64_t{id};
  }

  Database& database_;
  const Table& table_;
  Sample sample_;
  std::vector<Target> targets_;
  std::optional<VertexRows> vertices_;
  std::size_t vertex_column_ = 0;
  std::optional<SetNames> set_names_;
  std::wstring link_;

  // Of the row at hand.
  std::vector<Literal> values_;
  std::vector<std::wstring> texts_;  // by column, for values that refer to them
  std::vector<long> sets_;
  long key_ = 0;
};

const Table& require_table(const Catalogue& catalogue, std::wstring_view name) {
  const Table* const table = catalogue.find(name);
  if (table) return *table;
  std::wstring list;
  for (const Table& known : catalogue.tables()) {
    list += (list.empty() ? L"" : L", ") + known.kind().table;
  }
  fail(kItemNotFound,
       L"There is no table " + quoted(name) + L" to add rows to. The tables are " + list + L".");
}

}  // namespace

std::vector<long> append_rows(RecordStore& store, std::wstring_view name, const VARIANT& columns,
                              const VARIANT& rows) {
  const auto model = store.model();
  const Table& table = require_table(model->catalogue(), name);
  const Table* const sets_table = model->catalogue().find(table.kind().sets);
  const Kind* const sets = sets_table ? &sets_table->kind() : nullptr;
  auto targets = targets_of(columns, table.kind(), sets);
  Cells cells(rows, targets.size());

  std::vector<long> keys;
  keys.reserve(cells.rows());
  if (cells.rows() == 0) return keys;
  const bool alone = !store.is_changing();
  long event_type = 0;
  store.change_together([&] {
    Appender appender(*model, table, sets, std::move(targets));
    event_type = appender.event_type();
    for (std::size_t row = 0; row < cells.rows(); ++row)
      keys.push_back(appender.append(cells, row));
    store.note_added(event_type, keys);
  });
  if (alone) store.RecordsSaved(event_type, com::Variant::array(keys));
  return keys;
}

}  // namespace modeldb
