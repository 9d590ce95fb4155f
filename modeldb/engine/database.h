#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "modeldb/engine/client_texts.h"
#include "modeldb/engine/engine.h"
#include "modeldb/engine/statement.h"
#include "modeldb/engine/statement_cache.h"
#include "modeldb/engine/transactions.h"
#include "modeldb/engine/turns.h"

namespace modeldb {

/// An open model database, whatever its engine: its statements, its transactions, the texts of its
/// clients. Objects that work on it share it (std::shared_ptr); after close() each of their calls
/// fails with kObjectClosed.
///
/// Foreign keys are enforced, statement by statement.
/// A process that dies leaves the database as it was before the transaction that was open.
class Database : public std::enable_shared_from_this<Database> {
 public:
  explicit Database(std::unique_ptr<Engine> engine) : engine_(std::move(engine)) {}
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database() { close(); }

  /// Rolls back what is not committed and closes the database, whoever still holds statements.
  void close();
  /// Closes it, and removes it if opening made it: nothing became of it.
  void discard();
  [[nodiscard]] bool is_open() const { return engine_->is_open(); }
  /// kObjectClosed: it is closed.
  void require_open() const;
  /// Whether it is write-protected: then it can be read alone.
  [[nodiscard]] bool is_read_only();
  /// By what its users know it, such as the full path of its file.
  [[nodiscard]] const std::wstring& location() const { return engine_->location(); }

  /// What differs from one engine to another.
  [[nodiscard]] Engine& engine() { return *engine_; }

  /// The line of the threads that use it. Whoever calls a member, or releases a statement, has the
  /// turn; the database itself begins none.
  [[nodiscard]] const std::shared_ptr<Turns>& turns() const { return turns_; }
  /// Has its users stand in another line, before there are any.
  void share(std::shared_ptr<Turns> turns) { turns_ = std::move(turns); }

  /// The statement of a text with parameters (?), ready for bind and step, which stays in the
  /// cache.
  StatementLease prepare(std::wstring_view sql, Trust author = Trust::kHost) {
    return cache_.lease(*this, sql, author);
  }
  /// The same of a text whose compiled statement was found at `place` before.
  StatementLease prepare(std::wstring_view sql, Trust author, StatementCache::Place& place) {
    return cache_.lease(*this, sql, author, place);
  }
  StatementLease prepare(const FixedText& sql) { return cache_.lease(*this, sql); }

  /// The statement of the text (of any type that prepare takes) with `values` bound to its
  /// parameters in order, ready for step.
  template <class Text, class... Values>
  StatementLease query(const Text& sql, const Values&... values) {
    StatementLease statement = prepare(sql);
    int parameter = 0;
    (statement->bind(++parameter, values), ...);
    return statement;
  }

  /// Runs the statement to its end and returns the number of rows that it changed.
  template <class Text, class... Values>
  std::int64_t execute(const Text& sql, const Values&... values) {
    return query(sql, values...)->run();
  }

  [[nodiscard]] Transactions& transactions() { return transactions_; }

  [[nodiscard]] ClientTexts& texts() { return texts_; }
  /// Runs a client's text: see ClientTexts.
  TextResult execute_text(std::wstring_view text, Trust trust) {
    return texts_.execute(text, trust, texts_.time_limit());
  }

  /// Whether rows changed since mark_unchanged(), those apart whose change was undone.
  [[nodiscard]] bool is_changed() const { return engine_->total_changes() != total_unchanged_; }
  void mark_unchanged() { total_unchanged_ = engine_->total_changes(); }

 private:
  const std::unique_ptr<Engine> engine_;
  std::shared_ptr<Turns> turns_ = std::make_shared<Turns>();
  StatementCache cache_;
  Transactions transactions_{*this};
  ClientTexts texts_{*this};
  std::int64_t total_unchanged_ = 0;
};

}  // namespace modeldb
