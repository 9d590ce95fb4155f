#include "modeldb/odbc/write_queue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <utility>

#include "modeldb/engine/tokeniser.h"
#include "modeldb/odbc/key_rules.h"
#include "modeldb/odbc/odbc_statement.h"
#include "modeldb/odbc/session.h"

namespace modeldb {
namespace {

/// Rows that wait at most: enough to make the way count for little, and to be read by the server as
/// fast as any number.
constexpr std::size_t kMostWaiting = 3000;
/// Keys that are drawn at once at most; those that nobody uses are lost when the model is closed.
constexpr long kMostKeys = 1024;

const wchar_t* array_type(ColumnType type) {
  switch (type) {
    case ColumnType::kInteger:
      return L"integer[]";
    case ColumnType::kReal:
      return L"double precision[]";
    case ColumnType::kText:
      return L"text[]";
  }
  return L"";
}

template <class Number>
void append_number(std::wstring& text, Number number) {
  std::array<char, 32> digits;
  char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  text.append(digits.data(), end);
}

/// As an element of an array in a literal.
void append_text(std::wstring& array, std::wstring_view text) {
  array += L'"';
  for (const wchar_t letter : text) {
    if (letter == L'"' || letter == L'\\') array += L'\\';
    if (letter == L'\'') array += L'\'';
    array += letter;
  }
  array += L'"';
}

void append_value(std::wstring& array, const RowValue& value) {
  if (const auto* const text = std::get_if<std::wstring_view>(&value)) {
    append_text(array, *text);
  } else if (const auto* const real = std::get_if<double>(&value)) {
    append_number(array, *real);
  } else {
    append_number(array, std::get<std::int64_t>(value));
  }
}

bool is_word(const Token& token, std::wstring_view word) {
  return token.kind == TokenKind::kName && folded_name(token.text) == word;
}

std::vector<Token> tokens_of(std::wstring_view sql) {
  std::vector<Token> tokens;
  Tokeniser tokeniser(sql);
  for (Token token = tokeniser.next(); token.kind != TokenKind::kEnd; token = tokeniser.next()) {
    tokens.push_back(token);
  }
  return tokens;
}

}  // namespace

std::optional<RowInsertion> RowInsertion::of(std::wstring_view sql) {
  const auto tokens = tokens_of(sql);
  if (tokens.size() < 9 || !is_word(tokens[0], L"insert") || !is_word(tokens[1], L"into")) {
    return {};
  }
  RowInsertion row{.table = folded_name(tokens[2].text), .columns = {}};
  std::size_t next = 3;
  const auto take_list = [&](auto&& take) {
    if (next >= tokens.size() || !tokens[next].is_operator(L'(')) return false;
    do {
      if (++next + 1 >= tokens.size() || !take(tokens[next])) return false;
    } while (tokens[++next].is_operator(L','));
    return tokens[next++].is_operator(L')');
  };
  const bool has_columns = take_list([&](const Token& token) {
    row.columns.push_back(folded_name(token.text));
    return token.kind == TokenKind::kName;
  });
  if (!has_columns || next >= tokens.size() || !is_word(tokens[next++], L"values")) return {};
  std::size_t count = 0;
  const bool has_values = take_list([&](const Token& token) {
    ++count;
    return token.kind == TokenKind::kParameter;
  });
  if (!has_values || next != tokens.size() || count != row.columns.size()) return {};
  return row;
}

std::optional<RowDeletion> RowDeletion::of(std::wstring_view sql) {
  const auto tokens = tokens_of(sql);
  if (tokens.size() != 7 || !is_word(tokens[0], L"delete") || !is_word(tokens[1], L"from") ||
      tokens[2].kind != TokenKind::kName || !is_word(tokens[3], L"where") ||
      tokens[4].kind != TokenKind::kName || !tokens[5].is_operator(L'=') ||
      tokens[6].kind != TokenKind::kParameter) {
    return {};
  }
  return RowDeletion{folded_name(tokens[2].text), folded_name(tokens[4].text)};
}

void WriteQueue::learn(const TableDefinition& table) { tables_[folded_name(table.name)] = table; }

const TableDefinition* WriteQueue::find(std::wstring_view table) const {
  const auto found = tables_.find(table);
  return found == tables_.end() ? nullptr : &found->second;
}

KeysInUse* WriteQueue::keys_of(std::wstring_view key_column) {
  const auto table = std::ranges::find_if(tables_, [&](const auto& each) {
    return !each.second.key.empty() && folded_name(each.second.key) == key_column;
  });
  return table == tables_.end() ? nullptr : &keys_[table->first];
}

RowPlan* WriteQueue::plan(const RowInsertion& insertion) {
  const TableDefinition* const table = find(insertion.table);
  if (!table) return nullptr;
  RowPlan plan{.table = table};
  for (const std::wstring& name : insertion.columns) {
    const auto column = std::ranges::find_if(
        table->columns, [&](const Column& each) { return folded_name(each.name) == name; });
    const bool is_key = name == folded_name(table->key);
    if (!is_key && column == table->columns.end()) return nullptr;
    plan.types.push_back(is_key ? ColumnType::kInteger : column->type);
    plan.columns += (plan.columns.empty() ? L"" : L", ") + name;
  }
  if (table->is_link_table()) {
    if (insertion.columns.size() != 2) return nullptr;
    plan.sets = keys_of(insertion.columns[0]);
    plan.records = keys_of(insertion.columns[1]);
    if (insertion.columns[0] != folded_name(table->sets_key()) || !plan.sets || !plan.records) {
      return nullptr;
    }
  } else {
    if (insertion.columns[0] != folded_name(table->key)) return nullptr;
    plan.keys = &keys_[insertion.table];
  }
  return &plans_.try_emplace(insertion.table + L" " + plan.columns, plan).first->second;
}

const KeysInUse* WriteQueue::plan(const RowDeletion& deletion) {
  const TableDefinition* const links = find(deletion.table);
  return links && links->is_link_table() ? keys_of(deletion.column) : nullptr;
}

void WriteQueue::reset() noexcept {
  pieces_.resize(1);
  pieces_.front() = {};
  waiting_ = 0;
  forget_rows();
  for (auto& [table, keys] : keys_) keys.next_draw = 1;
}

/// What is undone is nobody's own any more, and locked no more.
void WriteQueue::forget_rows() noexcept {
  for (auto& [table, keys] : keys_) {
    keys.own.clear();
    keys.unlinked.clear();
    keys.linked.clear();
  }
}

// --- Rows ---

bool WriteQueue::fits(const RowPlan& plan, std::span<const RowValue> values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const RowValue& value = values[i];
    // The key alone, which is given then.
    if (std::holds_alternative<std::nullptr_t>(value)) {
      if (i != 0 || !plan.keys) return false;
      continue;
    }
    const auto* const number = std::get_if<std::int64_t>(&value);
    const bool is_text = std::holds_alternative<std::wstring_view>(value);
    if (is_text != (plan.types[i] == ColumnType::kText)) return false;
    if (plan.types[i] != ColumnType::kInteger) continue;
    if (!number || *number < INT32_MIN || *number > INT32_MAX) return false;
  }
  return true;
}

std::optional<std::int64_t> WriteQueue::insert(RowPlan& plan, std::span<const RowValue> values) {
  if (!session_.is_in_transaction() || !fits(plan, values)) return {};
  std::int64_t key = 0;
  if (plan.keys) {
    // A key that the row brings may be taken.
    if (!std::holds_alternative<std::nullptr_t>(values[0])) return {};
    key = draw_key(*plan.keys);
    if (key == 0) return {};
    plan.keys->own.insert(key);
    plan.keys->unlinked.insert(key);
  } else {
    // A set that stays there until the transaction ends.
    const std::int64_t set = std::get<std::int64_t>(values[0]);
    if (!plan.sets->linked.contains(set) && !plan.sets->own.contains(set)) return {};
    note_link(plan, values);
  }
  Rows& rows = rows_for(pieces_.back(), plan);
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::wstring& array = rows.values[i];
    if (rows.count > 0) array += L',';
    append_value(array, i == 0 && key != 0 ? RowValue(key) : values[i]);
  }
  ++rows.count;
  if (++waiting_ >= kMostWaiting) flush(false);
  return key;
}

WriteQueue::Rows& WriteQueue::rows_for(Piece& piece, const RowPlan& plan) {
  const auto found = std::ranges::find(piece.rows, &plan, &Rows::plan);
  if (found != piece.rows.end()) return *found;
  return piece.rows.emplace_back(Rows{&plan, std::vector<std::wstring>(plan.types.size()), 0});
}

void WriteQueue::add(std::wstring_view statement) {
  pieces_.back().statements.append(statement).append(L"; ");
}

// --- Links ---

bool WriteQueue::has_column(std::wstring_view table, std::wstring_view column) const {
  const TableDefinition* const found = find(table);
  return found && (folded_name(found->key) == column ||
                   std::ranges::any_of(found->columns, [&](const Column& each) {
                     return folded_name(each.name) == column;
                   }));
}

void WriteQueue::note_locked(std::wstring_view table, std::int64_t key) {
  keys_[std::wstring(table)].linked.insert(key);
}

bool WriteQueue::is_of_sets(std::wstring_view table) const {
  return !table.empty() && std::ranges::any_of(tables_, [&](const auto& each) {
    return folded_name(each.second.sets) == table;
  });
}

void WriteQueue::note_link(RowPlan& plan, std::span<const RowValue> values) {
  plan.sets->linked.insert(std::get<std::int64_t>(values[0]));
  plan.records->unlinked.erase(std::get<std::int64_t>(values[1]));
}

void WriteQueue::note_inserted(RowPlan& plan, std::span<const RowValue> values) {
  const bool is_link = !plan.keys && std::holds_alternative<std::int64_t>(values[0]) &&
                       std::holds_alternative<std::int64_t>(values[1]);
  if (is_link && session_.is_in_transaction()) note_link(plan, values);
}

// --- Keys ---

std::int64_t WriteQueue::draw_key(KeysInUse& keys) {
  keys.are_in_use = true;
  if (keys.drawn.empty()) draw_keys_for(keys);
  if (keys.drawn.empty()) return 0;
  const std::int64_t key = keys.drawn.back();
  keys.drawn.pop_back();
  return key;
}

/// And one, in the same way, for each other table that is in use and has none at the beginning of a
/// transaction. The more a transaction needs of a table, the more it gets.
void WriteQueue::draw_keys_for(const KeysInUse& needed) {
  std::wstring sql;
  std::vector<KeysInUse*> drawing;
  for (auto& [name, keys] : keys_) {
    const bool is_wanted = &keys == &needed || keys.next_draw == 1;
    if (!is_wanted || !keys.are_in_use || !keys.drawn.empty()) continue;
    sql += (sql.empty() ? L"SELECT " : L", ") + name_of_drawing(tables_.at(name)) + L"(" +
           std::to_wstring(keys.next_draw) + L")";
    keys.next_draw = std::min(2 * keys.next_draw, kMostKeys);
    drawing.push_back(&keys);
  }
  const auto lists = session_.ask(sql);
  for (std::size_t i = 0; i < std::min(lists.size(), drawing.size()); ++i) {
    std::vector<std::int64_t>& drawn = drawing[i]->drawn;
    drawn.emplace_back();
    for (const wchar_t digit : lists[i]) {
      if (digit == L',') {
        drawn.emplace_back();
      } else {
        drawn.back() = 10 * drawn.back() + (digit - L'0');
      }
    }
    std::ranges::reverse(drawn);
  }
}

// --- Savepoints ---

void WriteQueue::begin_savepoint() { pieces_.emplace_back(); }

bool WriteQueue::release_savepoint() {
  if (pieces_.size() == 1) return false;
  Piece last = std::move(pieces_.back());
  pieces_.pop_back();
  append(pieces_.back(), std::move(last));
  return true;
}

void WriteQueue::append(Piece& to, Piece&& from) {
  if (to.rows.empty()) {
    to.rows = std::move(from.rows);
  } else {
    for (Rows& rows : from.rows) {
      const auto there =
          std::ranges::find_if(to.rows, [&](const Rows& each) { return each.plan == rows.plan; });
      if (there == to.rows.end()) {
        to.rows.push_back(std::move(rows));
        continue;
      }
      for (std::size_t i = 0; i < rows.values.size(); ++i) {
        there->values[i].append(L",").append(rows.values[i]);
      }
      there->count += rows.count;
    }
  }
  to.statements += from.statements;
}

bool WriteQueue::restart_savepoint() noexcept {
  forget_rows();
  drop(pieces_.back());
  return pieces_.size() > 1;
}

bool WriteQueue::undo_savepoint() noexcept {
  if (!restart_savepoint()) return false;
  pieces_.pop_back();
  return true;
}

void WriteQueue::drop(Piece& piece) noexcept {
  for (const Rows& rows : piece.rows) waiting_ -= rows.count;
  piece = {};
}

// --- Sending ---

bool WriteQueue::has_rows_of(std::wstring_view table) const {
  return waiting_ > 0 && std::ranges::any_of(pieces_, [&](const Piece& piece) {
           return std::ranges::any_of(piece.rows, [&](const Rows& rows) {
             return folded_name(rows.plan->table->name) == table;
           });
         });
}

bool WriteQueue::is_empty(const Piece& piece) {
  return piece.rows.empty() && piece.statements.empty();
}

void WriteQueue::flush(bool all) {
  std::size_t end = pieces_.size();
  while (!all && end > 0 && is_empty(pieces_[end - 1])) --end;
  if (end == 0 || (end == 1 && is_empty(pieces_[0]))) return;
  send(end, {});
}

bool WriteQueue::flush_and_commit() {
  if (pieces_.size() != 1 || is_empty(pieces_[0])) return false;
  send(1, L"COMMIT");
  return true;
}

void WriteQueue::send(std::size_t pieces, std::wstring_view behind) {
  const auto end = pieces_.begin() + static_cast<std::ptrdiff_t>(pieces);
  const std::vector<Piece> sending(std::make_move_iterator(pieces_.begin()),
                                   std::make_move_iterator(end));
  pieces_.erase(pieces_.begin(), end - 1);
  pieces_.front() = {};
  waiting_ = 0;
  for (std::size_t i = 0; i < pieces; ++i) {
    if (i > 0) session_.send(L"SAVEPOINT level", L"SAVEPOINT");
    if (!is_empty(sending[i])) send(sending[i], i + 1 == pieces ? behind : L"");
  }
}

/// The rows of records, vertices and sets first, which links refer to.
void WriteQueue::send(const Piece& piece, std::wstring_view behind) {
  std::wstring sql;
  std::wstring tables;
  for (const bool are_links : {false, true}) {
    for (const Rows& rows : piece.rows) {
      const RowPlan& plan = *rows.plan;
      if (plan.table->is_link_table() != are_links) continue;
      std::wstring arrays;
      for (std::size_t i = 0; i < rows.values.size(); ++i) {
        arrays.append(i == 0 ? L"'{" : L", '{").append(rows.values[i]).append(L"}'::");
        arrays += array_type(plan.types[i]);
      }
      sql += L"INSERT INTO " + plan.table->name + L" (" + plan.columns +
             L") SELECT * FROM unnest(" + arrays + L"); ";
      tables += (tables.empty() ? L"INSERT INTO " : L", ") + plan.table->name;
    }
  }
  session_.send(sql.append(piece.statements).append(behind), tables);
}

}  // namespace modeldb
