#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/engine/client_text.h"
#include "modeldb/engine/statement_cache.h"

namespace modeldb {

/// What texts of a client have in common that differ in some whole numbers alone, and what has been
/// found out about them: records write their links, and read their sets, by such texts.
class TextShape {
 public:
  /// The shape of `text`, which was read as `read`, of that kind; nothing unless every literal that
  /// was replaced is a whole number, written in digits alone, and the text is short.
  ///
  /// Another number of that form in its place is read as the same word, between the same words: so
  /// a text that is the same before, between and behind these numbers, character by character, is
  /// read the same way.
  static std::optional<TextShape> of(std::wstring_view text, TextKind kind, const ReadText& read);

  /// Whether the text has this shape; if it does, its numbers are in `values`.
  [[nodiscard]] bool matches(std::wstring_view text, std::vector<Literal>& values) const;

  [[nodiscard]] TextKind kind() const { return kind_; }
  /// The text with parameters in the place of the numbers, and where its statement was found.
  [[nodiscard]] const std::wstring& sql() const { return sql_; }
  [[nodiscard]] StatementCache::Place& place() { return place_; }

 private:
  std::vector<std::wstring> pieces_;  // before, between and behind the numbers
  TextKind kind_;
  std::wstring sql_;
  StatementCache::Place place_;
};

}  // namespace modeldb
