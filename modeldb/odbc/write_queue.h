#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <variant>
#include <vector>

#include "modeldb/engine/table_definition.h"
#include "modeldb/odbc/locked_rows.h"
#include "modeldb/odbc/reach.h"

namespace modeldb {

class Session;

/// A value on its way into a row; nothing stands for NULL.
using RowValue = std::variant<std::nullptr_t, std::int64_t, double, std::wstring_view>;

/// "INSERT INTO table (column, …) VALUES (?, …)", one row; with "ON CONFLICT (key) DO UPDATE …"
/// behind it, it may find that row there.
struct RowInsertion {
  std::wstring table;  ///< in small letters, as the columns
  std::vector<std::wstring> columns;
  std::wstring merging;  ///< what stands behind the values

  /// Nothing when the text is anything else.
  static std::optional<RowInsertion> of(std::wstring_view sql, bool may_merge);
};

/// "DELETE FROM table WHERE column = ?", or the same of "UPDATE table SET column = ?, …"; a further
/// "AND column IS NOT DISTINCT FROM ?" asks for what the row has had.
struct RowChange {
  std::wstring table;                 ///< in small letters, as the columns
  std::vector<std::wstring> columns;  ///< that are set; none of a row that is deleted
  std::wstring key;
  std::vector<std::wstring> had;

  /// Nothing when the text is anything else.
  static std::optional<RowChange> of(std::wstring_view sql);
};

/// The keys of a table, as a transaction has to do with them.
struct KeysInUse {
  std::vector<std::int64_t> drawn;  // for rows to come, the last first
  long next_draw = 1;
  bool are_in_use = false;                    // rows were inserted in this session
  bool are_reserved = false;                  // nobody else takes any until the transaction ends
  std::unordered_set<std::int64_t> own;       // rows that the transaction has inserted
  std::unordered_set<std::int64_t> unlinked;  // of these, those without a link
  std::unordered_set<std::int64_t> linked;   // rows that it has locked, so that others stay on them
  std::unordered_set<std::int64_t> waiting;  // rows that the server does not have as they are
};

/// How rows of a table go there with others.
struct RowPlan {
  const TableDefinition* table = nullptr;
  std::wstring columns = {};  ///< "NodalForceID, Description, …"
  std::wstring merging = {};  ///< of rows that may be there
  bool has_links = false;     ///< its rows may have
  std::vector<ColumnType> types = {};
  KeysInUse* keys = nullptr;     ///< of the table; null for one of links
  KeysInUse* sets = nullptr;     ///< of the sets that links lead to
  KeysInUse* records = nullptr;  ///< of the records that they come from
  std::size_t vertex = kNone;    ///< the column of the vertex that they stand on
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
};

/// How changes of rows, deletions of records' rows, or deletions of their links, go there with
/// others.
struct ChangePlan {
  const TableDefinition* table = nullptr;
  std::vector<std::wstring> columns = {};
  std::vector<ColumnType> types = {};      ///< of these, as they are set
  std::vector<std::size_t> compared = {};  ///< of what the row has had: columns of the locked rows
  KeysInUse* keys = nullptr;               ///< of the rows, or of the records that have the links
  LockedRows* rows = nullptr;              ///< likewise
  std::size_t vertex = RowPlan::kNone;     ///< as of a RowPlan
  std::size_t had_vertex = 0;              ///< that column of the locked rows
};

/// What a transaction has written and the server does not have yet, since a way to it and back
/// costs more than a row does. It reaches it with the transaction's next statement that could see
/// it, or with its end, many rows at once. Only what nothing can be wrong with is kept back: new
/// rows under a key that the server has given for them, or that are merged into what is there, with
/// values that fit, on vertices that are locked or the transaction's own; links to sets that are
/// so; and changes of rows, and deletions of records' rows, that are locked and known.
///
/// Savepoints reach it with the rows behind them, if ever.
class WriteQueue {
 public:
  explicit WriteQueue(Session& session) : session_(session) {}

  /// A table of the model.
  void learn(const TableDefinition& table);
  /// The vertices, and which tables stand on them.
  void learn(const RowGuard& vertices);

  /// A transaction begins, or ends.
  void reset() noexcept;

  /// The way of rows; it stays as long as this. Null: there is none but their own statements.
  RowPlan* plan(const RowInsertion& insertion);
  ChangePlan* plan(const RowChange& change);

  /// Takes a row over, and tells its key, or 0 of a table without; nothing when the row has to be
  /// inserted by its own statement. That it was is told by
  /// note_inserted().
  std::optional<std::int64_t> insert(RowPlan& plan, std::span<const RowValue> values);
  void note_inserted(RowPlan& plan, std::span<const RowValue> values);
  /// Takes a change over, and tells how many rows it concerns; nothing when its own statement has
  /// to be run.
  std::optional<std::int64_t> change(ChangePlan& plan, std::span<const RowValue> values);
  /// A statement is about to change the server's rows by itself.
  void note_change() noexcept;
  /// Nobody else writes to the table until the transaction ends: rows may bring their keys.
  void reserve(const TableDefinition& table);
  /// A statement of the engine's own, without parameters, that nobody waits for.
  void add(std::wstring_view statement);

  void begin_savepoint();
  /// These answer false when the server knows the savepoint, and has to be told.
  [[nodiscard]] bool release_savepoint();
  [[nodiscard]] bool restart_savepoint() noexcept;
  [[nodiscard]] bool undo_savepoint() noexcept;

  /// Whether that table of the model has that column; both in small letters.
  [[nodiscard]] bool has_column(std::wstring_view table, std::wstring_view column) const;
  /// Whether that column is what gives the rows of that table their numbers; likewise.
  [[nodiscard]] bool is_key(std::wstring_view table, std::wstring_view column) const;
  /// A row that is there, and locked until the transaction ends.
  void note_locked(std::wstring_view table, std::int64_t key);
  /// Whether records belong to the rows of that table.
  [[nodiscard]] bool is_of_sets(std::wstring_view table) const;
  /// Whether rows wait; whether some of that table do.
  [[nodiscard]] bool has_rows() const { return waiting_ > 0; }
  [[nodiscard]] bool has_rows_of(std::wstring_view table) const;
  /// Whether the row of that key may be among them.
  [[nodiscard]] bool is_waiting(std::wstring_view table, std::int64_t key) const;
  /// Sends what waits. Savepoints behind which nothing waits stay here, unless `all`.
  void flush(bool all);
  /// Sends what waits, and commits in the same way; false when nothing waits.
  [[nodiscard]] bool flush_and_commit();

 private:
  struct Rows {
    const RowPlan* plan;
    std::vector<std::wstring> values;  // of each column, with commas between them
    std::size_t count = 0;
  };
  struct Changes {
    const ChangePlan* plan;
    std::wstring keys;  // with commas between them, like the values
    std::vector<std::wstring> values;
    std::size_t count = 0;
  };
  /// What waits behind a savepoint that the server does not know of; in front of all stands what
  /// waits behind none. Of a record and its links, which are there already, nothing is changed
  /// twice.
  struct Piece {
    std::vector<Changes> changes;
    std::vector<Rows> rows;
    std::wstring statements;
  };

  [[nodiscard]] const TableDefinition* find(std::wstring_view table) const;
  KeysInUse* keys_of(std::wstring_view key_column);
  /// The table of records that have links, by their key.
  [[nodiscard]] const TableDefinition* records_of(std::wstring_view key_column) const;
  LockedRows& locked_rows(const TableDefinition& table);
  std::optional<std::int64_t> change_links(ChangePlan& plan, std::int64_t key);
  [[nodiscard]] static bool is_as_before(const ChangePlan& plan, std::int64_t key,
                                         std::span<const RowValue> had);
  void keep(const ChangePlan& plan, std::int64_t key, std::span<const RowValue> values);
  /// The place of the vertex's column among those of a table that stands on vertices.
  [[nodiscard]] std::size_t vertex_among(const TableDefinition& table,
                                         std::span<const std::wstring> columns) const;
  /// Whether nobody else can delete that vertex until the transaction ends: it is locked if it can
  /// be, with those next to it.
  [[nodiscard]] bool holds_vertex(const RowValue& vertex);
  [[nodiscard]] std::int64_t take_key(const RowPlan& plan, const RowValue& brought);
  void count_one_more();
  /// Whether values go into columns of these types as they are.
  [[nodiscard]] static bool fit(std::span<const ColumnType> types,
                                std::span<const RowValue> values);
  /// 0: there are none left.
  std::int64_t draw_key(KeysInUse& keys);
  void draw_keys_for(const KeysInUse& needed);
  static void note_link(RowPlan& plan, std::span<const RowValue> values);
  static Rows& rows_for(Piece& piece, const RowPlan& plan);
  static void append(Piece& to, Piece&& from);
  static std::wstring text_of(const Changes& changes);
  void forget_rows() noexcept;
  void note_sent() noexcept;
  void send(std::size_t pieces, std::wstring_view behind);
  [[nodiscard]] static bool is_empty(const Piece& piece);
  void send(const Piece& piece, std::wstring_view behind);
  void drop(Piece& piece) noexcept;

  Session& session_;
  std::map<std::wstring, TableDefinition, std::less<>> tables_;
  std::map<std::wstring, KeysInUse, std::less<>> keys_;  // by table, in small letters
  std::map<std::wstring, RowPlan, std::less<>> plans_;   // by table and columns
  std::map<std::wstring, ChangePlan, std::less<>> change_plans_;
  std::map<std::wstring, LockedRows, std::less<>> locked_;  // by table, in small letters
  RowGuard vertices_;
  Reach vertices_reach_;
  std::vector<Piece> pieces_ = std::vector<Piece>(1);
  std::size_t waiting_ = 0;
};

}  // namespace modeldb
