#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "modeldb/engine/fixed_text.h"
#include "modeldb/engine/statement.h"

namespace modeldb {

/// Prepared statements by their text and author, kept for the next use.
class StatementCache {
 public:
  /// Where the statement of one text and author was found, so that it need not be looked for again.
  class Place {
    friend StatementCache;
    Statement* statement_ = nullptr;
    unsigned long times_forgotten_ = 0;
  };

  /// The statement of `sql`; a second one of its own when the cached one is in use.
  StatementLease lease(Database& database, std::wstring_view sql, Trust trust);
  StatementLease lease(Database& database, std::wstring_view sql, Trust trust, Place& place);
  /// Of the model database itself.
  StatementLease lease(Database& database, const FixedText& sql);

 private:
  // A text of clients is rarely repeated word by word, except for its literals, which are no part
  // of the key. The limit bounds what the rest may take, in bytes; a statement that alone takes
  // much of that is not kept.
  static constexpr std::size_t kMaximumSize = 4 << 20;
  static constexpr std::size_t kMaximumOfOne = 256 << 10;

  struct Hash : std::hash<std::wstring_view> {
    using is_transparent = void;
  };
  using Statements =
      std::unordered_map<std::wstring, std::unique_ptr<Statement>, Hash, std::equal_to<>>;

  void make_room(std::size_t size);

  Statements statements_[3];  // by Trust
  std::size_t size_ = 0;
  std::vector<Place> places_;          // by number of FixedText
  unsigned long times_forgotten_ = 0;  // statements; places of before mean nothing
};

}  // namespace modeldb
