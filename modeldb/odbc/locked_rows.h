#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "modeldb/odbc/reach.h"
#include "modeldb/odbc/result_rows.h"

namespace modeldb {

class Session;

/// Rows of a table of records that the open transaction has locked, and read as they are, before it
/// changes or deletes them: what is done to them then cannot fail, and goes to the server with the
/// rest. The first row that a transaction changes is not locked so, and those that others have
/// locked are left out: their own statements wait for them.
class LockedRows {
 public:
  /// `columns` begins with the key. Rows that are `only_changed`, never deleted, may be stood on by
  /// others meanwhile.
  LockedRows(Session& session, std::wstring table, std::wstring columns, std::wstring key,
             bool only_changed);

  /// Locks the row with that key, and others next to it, if it is not locked yet; false when its
  /// own statement has to do that.
  [[nodiscard]] bool reach(std::int64_t key);
  /// The row of a key that reach() has found: its number in rows().
  [[nodiscard]] std::size_t row(std::int64_t key) const { return places_.at(key); }
  [[nodiscard]] const ResultRows& rows() const { return rows_; }
  /// How many links of that table the record of that key has, which reach() has found; nothing when
  /// they are not known.
  [[nodiscard]] std::optional<std::int64_t> links(const std::wstring& link_table, std::int64_t key);

  // What is changed is not known any more until the server has heard of it.

  void take(std::int64_t key);
  void take_links(const std::wstring& link_table, std::int64_t key);
  void note_sent() noexcept { changed_.clear(); }

  /// Something else may have changed.
  void forget() noexcept;
  /// They are locked no more. Where that happens again and again, to lock many each time would cost
  /// more than it saves.
  void lose() noexcept;
  /// A transaction begins.
  void reset() noexcept;

 private:
  using Counts = std::unordered_map<std::int64_t, std::int64_t>;

  void lock();
  void clear() noexcept;

  Session& session_;
  const std::wstring table_;
  const std::wstring columns_;
  const std::wstring key_;
  const wchar_t* const lock_;
  Reach reach_;
  ResultRows rows_;
  std::unordered_map<std::int64_t, std::size_t> places_;
  std::wstring keys_;                               // of all that were locked together
  std::unordered_map<std::wstring, Counts> links_;  // of these, by link table
  std::unordered_set<std::int64_t> changed_;        // rows and links that wait to be sent
};

}  // namespace modeldb
