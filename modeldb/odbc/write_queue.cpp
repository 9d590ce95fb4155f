#include "modeldb/odbc/write_queue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <utility>

#include "com/error.h"
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
  if (std::holds_alternative<std::nullptr_t>(value)) {
    array += L"NULL";
  } else if (const auto* const text = std::get_if<std::wstring_view>(&value)) {
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

namespace {

/// Whether a list in parentheses follows from `next` on, each of whose tokens is what `take` takes.
template <class Take>
bool takes_list(std::span<const Token> tokens, std::size_t& next, Take&& take) {
  if (next >= tokens.size() || !tokens[next].is_operator(L'(')) return false;
  do {
    if (++next + 1 >= tokens.size() || !take(tokens[next])) return false;
  } while (tokens[++next].is_operator(L','));
  return tokens[next++].is_operator(L')');
}

}  // namespace

std::optional<RowInsertion> RowInsertion::of(std::wstring_view sql, bool may_merge) {
  const auto tokens = tokens_of(sql);
  if (tokens.size() < 9 || !is_word(tokens[0], L"insert") || !is_word(tokens[1], L"into")) {
    return {};
  }
  RowInsertion row{.table = folded_name(tokens[2].text), .columns = {}, .merging = {}};
  std::size_t next = 3;
  const bool has_columns = takes_list(tokens, next, [&](const Token& token) {
    row.columns.push_back(folded_name(token.text));
    return token.kind == TokenKind::kName;
  });
  if (!has_columns || next >= tokens.size() || !is_word(tokens[next++], L"values")) return {};
  std::size_t count = 0;
  const bool has_values = takes_list(tokens, next, [&](const Token& token) {
    ++count;
    return token.kind == TokenKind::kParameter;
  });
  if (!has_values || count != row.columns.size()) return {};
  if (next == tokens.size()) return row;
  if (!may_merge || !is_word(tokens[next], L"on")) return {};
  row.merging = sql.substr(tokens[next].text.data() - sql.data());
  return row;
}

std::optional<RowChange> RowChange::of(std::wstring_view sql) {
  const auto tokens = tokens_of(sql);
  std::size_t next = 0;
  const auto takes_word = [&](std::wstring_view word) {
    const bool is = next < tokens.size() && is_word(tokens[next], word);
    next += is ? 1 : 0;
    return is;
  };
  const auto takes_name = [&](std::wstring& name) {
    if (next >= tokens.size() || tokens[next].kind != TokenKind::kName) return false;
    name = folded_name(tokens[next++].text);
    return true;
  };
  const auto takes_parameter = [&] {
    return next < tokens.size() && tokens[next++].kind == TokenKind::kParameter;
  };
  const auto takes_operator = [&](wchar_t which) {
    const bool is = next < tokens.size() && tokens[next].is_operator(which);
    next += is ? 1 : 0;
    return is;
  };
  RowChange change;
  if (takes_word(L"delete")) {
    if (!takes_word(L"from") || !takes_name(change.table)) return {};
  } else {
    if (!takes_word(L"update") || !takes_name(change.table) || !takes_word(L"set")) return {};
    do {
      if (!takes_name(change.columns.emplace_back()) || !takes_operator(L'=') ||
          !takes_parameter()) {
        return {};
      }
    } while (takes_operator(L','));
  }
  if (!takes_word(L"where") || !takes_name(change.key) || !takes_operator(L'=') ||
      !takes_parameter()) {
    return {};
  }
  while (takes_word(L"and")) {
    if (!takes_name(change.had.emplace_back()) || !takes_word(L"is") || !takes_word(L"not") ||
        !takes_word(L"distinct") || !takes_word(L"from") || !takes_parameter()) {
      return {};
    }
  }
  if (next != tokens.size()) return {};
  return change;
}

void WriteQueue::learn(const TableDefinition& table) { tables_[folded_name(table.name)] = table; }

void WriteQueue::learn(const RowGuard& vertices) { vertices_ = vertices; }

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
  RowPlan plan{.table = table, .merging = insertion.merging};
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
    plan.has_links = records_of(insertion.columns[0]) != nullptr;
    plan.vertex = vertex_among(*table, insertion.columns);
  }
  return &plans_.try_emplace(insertion.table + L" " + plan.columns + plan.merging, plan)
              .first->second;
}

const TableDefinition* WriteQueue::records_of(std::wstring_view key_column) const {
  const auto links = std::ranges::find_if(tables_, [&](const auto& each) {
    const TableDefinition& table = each.second;
    return table.is_link_table() && folded_name(table.columns.back().name) == key_column;
  });
  if (links == tables_.end()) return nullptr;
  const auto records = std::ranges::find_if(tables_, [&](const auto& each) {
    return !each.second.key.empty() && folded_name(each.second.key) == key_column;
  });
  return records == tables_.end() ? nullptr : &records->second;
}

LockedRows& WriteQueue::locked_rows(const TableDefinition& table) {
  std::wstring columns = table.key;
  for (const Column& column : table.columns) columns += L", " + column.name;
  return locked_
      .try_emplace(folded_name(table.name), session_, table.name, std::move(columns), table.key,
                   records_of(folded_name(table.key)) == nullptr)
      .first->second;
}

ChangePlan* WriteQueue::plan(const RowChange& change) {
  const TableDefinition* const table = find(change.table);
  if (!table) return nullptr;
  const bool is_deletion = change.columns.empty();
  const TableDefinition* const records = records_of(change.key);
  const TableDefinition* rows = records;
  if (table->is_link_table()) {
    if (!records || !is_deletion || !change.had.empty()) return nullptr;
  } else {
    // The server may refuse to delete what is no record, and sets are locked by who links to them.
    const bool is_sure = table == records || (!is_deletion && !is_of_sets(change.table));
    if (!is_sure || folded_name(table->key) != change.key) return nullptr;
    rows = table;
  }
  ChangePlan plan{.table = table, .columns = change.columns};
  const auto place_of = [&](const std::wstring& name) {
    return static_cast<std::size_t>(
        std::ranges::find(table->columns, name,
                          [](const Column& each) { return folded_name(each.name); }) -
        table->columns.begin());
  };
  std::wstring name = change.table;
  for (const std::wstring& column : change.columns) {
    const std::size_t place = place_of(column);
    if (place == table->columns.size()) return nullptr;
    plan.types.push_back(table->columns[place].type);
    name += L" " + column;
  }
  name += L" had";
  for (const std::wstring& column : change.had) {
    const std::size_t place = place_of(column);
    if (place == table->columns.size()) return nullptr;
    plan.compared.push_back(place + 1);  // behind the key
    name += L" " + column;
  }
  plan.vertex = vertex_among(*table, change.columns);
  if (plan.vertex != RowPlan::kNone) plan.had_vertex = place_of(change.columns[plan.vertex]) + 1;
  plan.keys = keys_of(change.key);
  plan.rows = &locked_rows(*rows);
  return &change_plans_.try_emplace(name, std::move(plan)).first->second;
}

void WriteQueue::reset() noexcept {
  pieces_.resize(1);
  pieces_.front() = {};
  waiting_ = 0;
  forget_rows();
  for (auto& [table, keys] : keys_) {
    keys.next_draw = 1;
    keys.waiting.clear();
  }
  for (auto& [table, rows] : locked_) rows.reset();
  vertices_reach_ = {};
}

/// What is undone is nobody's own any more, and locked no more.
void WriteQueue::forget_rows() noexcept {
  for (auto& [table, keys] : keys_) {
    keys.own.clear();
    keys.unlinked.clear();
    keys.linked.clear();
    keys.are_reserved = false;
  }
  for (auto& [table, rows] : locked_) rows.lose();
}

void WriteQueue::note_change() noexcept {
  for (auto& [table, rows] : locked_) rows.forget();
}

// --- Rows ---

bool WriteQueue::fit(std::span<const ColumnType> types, std::span<const RowValue> values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const RowValue& value = values[i];
    if (std::holds_alternative<std::nullptr_t>(value)) continue;
    const auto* const number = std::get_if<std::int64_t>(&value);
    const bool is_text = std::holds_alternative<std::wstring_view>(value);
    if (is_text != (types[i] == ColumnType::kText)) return false;
    if (types[i] != ColumnType::kInteger) continue;
    if (!number || *number < INT32_MIN || *number > INT32_MAX) return false;
  }
  return true;
}

std::optional<std::int64_t> WriteQueue::insert(RowPlan& plan, std::span<const RowValue> values) {
  // The key alone may be left to be given.
  const std::size_t left = plan.keys && std::holds_alternative<std::nullptr_t>(values[0]) ? 1 : 0;
  const std::span<const ColumnType> types(plan.types);
  if (!session_.is_in_transaction() || !fit(types.subspan(left), values.subspan(left))) return {};
  if (plan.vertex != RowPlan::kNone && !holds_vertex(values[plan.vertex])) return {};
  std::int64_t key = 0;
  if (plan.keys) {
    key = take_key(plan, values[0]);
    if (key == 0) return {};
  } else {
    // A set that stays there until the transaction ends.
    const auto* const set = std::get_if<std::int64_t>(values.data());
    const bool is_link = set && std::holds_alternative<std::int64_t>(values[1]);
    if (!is_link || (!plan.sets->linked.contains(*set) && !plan.sets->own.contains(*set)))
      return {};
    note_link(plan, values);
  }
  Rows& rows = rows_for(pieces_.back(), plan);
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::wstring& array = rows.values[i];
    if (rows.count > 0) array += L',';
    append_value(array, i == 0 && key != 0 ? RowValue(key) : values[i]);
  }
  ++rows.count;
  count_one_more();
  return key;
}

/// The key under which a row will wait; 0 when it cannot.
std::int64_t WriteQueue::take_key(const RowPlan& plan, const RowValue& brought) {
  KeysInUse& keys = *plan.keys;
  const auto* const own = std::get_if<std::int64_t>(&brought);
  // A key that the row brings may be taken, and no statement merges two rows into one.
  if (own && !keys.are_reserved && plan.merging.empty()) return 0;
  const std::int64_t key = own ? *own : draw_key(keys);
  if (key == 0 || !keys.waiting.insert(key).second) return 0;
  keys.own.insert(key);
  if (plan.has_links) keys.unlinked.insert(key);
  return key;
}

void WriteQueue::count_one_more() {
  if (++waiting_ >= kMostWaiting) flush(false);
}

WriteQueue::Rows& WriteQueue::rows_for(Piece& piece, const RowPlan& plan) {
  const auto found = std::ranges::find(piece.rows, &plan, &Rows::plan);
  if (found != piece.rows.end()) return *found;
  return piece.rows.emplace_back(Rows{&plan, std::vector<std::wstring>(plan.types.size()), 0});
}

void WriteQueue::reserve(const TableDefinition& table) {
  if (!table.key.empty()) keys_[folded_name(table.name)].are_reserved = true;
}

void WriteQueue::add(std::wstring_view statement) {
  pieces_.back().statements.append(statement).append(L"; ");
}

// --- Changes ---

namespace {

/// Whether a value is what "IS NOT DISTINCT FROM" takes for the same.
bool is_same(const ResultRows& rows, std::size_t row, std::size_t column, const RowValue& value) {
  switch (rows.type(row, column)) {
    case ResultRows::Type::kNull:
      return std::holds_alternative<std::nullptr_t>(value);
    case ResultRows::Type::kText: {
      const auto* const text = std::get_if<std::wstring_view>(&value);
      return text && *text == rows.text(row, column);
    }
    case ResultRows::Type::kInteger:
    case ResultRows::Type::kReal: {
      if (const auto* const whole = std::get_if<std::int64_t>(&value)) {
        return static_cast<double>(*whole) == rows.real(row, column);
      }
      const auto* const real = std::get_if<double>(&value);
      return real && *real == rows.real(row, column);
    }
    default:
      return false;
  }
}

}  // namespace

bool WriteQueue::is_as_before(const ChangePlan& plan, std::int64_t key,
                              std::span<const RowValue> had) {
  const std::size_t row = plan.rows->row(key);
  for (std::size_t i = 0; i < had.size(); ++i) {
    if (!is_same(plan.rows->rows(), row, plan.compared[i], had[i])) return false;
  }
  return true;
}

/// The values are those that are set, the key, and those that the row has had.
std::optional<std::int64_t> WriteQueue::change(ChangePlan& plan, std::span<const RowValue> values) {
  const std::size_t set = plan.columns.size();
  if (values.size() != set + 1 + plan.compared.size() || !session_.is_in_transaction()) return {};
  const auto* const key = std::get_if<std::int64_t>(&values[set]);
  if (!key) return {};
  if (plan.table->is_link_table()) return change_links(plan, *key);
  if (plan.keys->own.contains(*key) || !plan.rows->reach(*key)) return {};
  const bool fits = fit(plan.types, values.first(set));
  if (!fits || !is_as_before(plan, *key, values.subspan(set + 1))) return {};
  const bool stays =
      plan.vertex == RowPlan::kNone ||
      is_same(plan.rows->rows(), plan.rows->row(*key), plan.had_vertex, values[plan.vertex]) ||
      holds_vertex(values[plan.vertex]);
  if (!stays) return {};
  plan.rows->take(*key);
  plan.keys->waiting.insert(*key);
  keep(plan, *key, values.first(set));
  return 1;
}

std::optional<std::int64_t> WriteQueue::change_links(ChangePlan& plan, std::int64_t key) {
  if (plan.keys->unlinked.contains(key)) return 0;
  if (plan.keys->own.contains(key)) return {};
  const std::wstring& table = plan.table->name;
  auto links = plan.rows->links(table, key);
  if (!links && plan.rows->reach(key)) links = plan.rows->links(table, key);
  if (!links) return {};
  plan.rows->take_links(table, key);
  if (*links > 0) keep(plan, key, {});
  return links;
}

void WriteQueue::keep(const ChangePlan& plan, std::int64_t key, std::span<const RowValue> values) {
  std::vector<Changes>& all = pieces_.back().changes;
  auto found = std::ranges::find(all, &plan, &Changes::plan);
  if (found == all.end()) {
    all.push_back({&plan, {}, std::vector<std::wstring>(values.size())});
    found = all.end() - 1;
  }
  if (found->count++ > 0) {
    found->keys += L',';
    for (std::wstring& array : found->values) array += L',';
  }
  append_number(found->keys, key);
  for (std::size_t i = 0; i < values.size(); ++i) append_value(found->values[i], values[i]);
  count_one_more();
}

// --- Vertices ---

std::size_t WriteQueue::vertex_among(const TableDefinition& table,
                                     std::span<const std::wstring> columns) const {
  const auto& standing = vertices_.standing;
  if (std::ranges::find(standing, table.name) == standing.end()) return RowPlan::kNone;
  const auto found = std::ranges::find(columns, folded_name(vertices_.key));
  return found == columns.end() ? RowPlan::kNone
                                : static_cast<std::size_t>(found - columns.begin());
}

bool WriteQueue::holds_vertex(const RowValue& vertex) {
  const auto* const key = std::get_if<std::int64_t>(&vertex);
  if (!key) return true;  // it stands on none
  KeysInUse& keys = keys_[folded_name(vertices_.table)];
  if (keys.are_reserved || keys.own.contains(*key) || keys.waiting.contains(*key)) return true;
  if (keys.linked.contains(*key)) {
    vertices_reach_.note_use();
    return true;
  }
  (void)vertices_reach_.next(*key, session_.rows_ahead().order_of(folded_name(vertices_.key)));
  try {
    const ResultRows locked =
        session_.rows_of(L"SELECT " + vertices_.key + L" FROM " + vertices_.table + L" WHERE " +
                         vertices_reach_.condition(vertices_.key) + L" FOR KEY SHARE SKIP LOCKED");
    for (std::size_t row = 0; row < locked.count(); ++row) {
      keys.linked.insert(locked.integer(row, 0));
    }
  } catch (const com::Error&) {
    // The row's own statement tells what is wrong.
    vertices_reach_.forget();
  }
  return keys.linked.contains(*key);
}

// --- Links ---

bool WriteQueue::has_column(std::wstring_view table, std::wstring_view column) const {
  const TableDefinition* const found = find(table);
  return found && (folded_name(found->key) == column ||
                   std::ranges::any_of(found->columns, [&](const Column& each) {
                     return folded_name(each.name) == column;
                   }));
}

bool WriteQueue::is_key(std::wstring_view table, std::wstring_view column) const {
  const TableDefinition* const found = find(table);
  return found && folded_name(found->key) == column;
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
  for (Changes& changes : from.changes) {
    const auto there = std::ranges::find(to.changes, changes.plan, &Changes::plan);
    if (there == to.changes.end()) {
      to.changes.push_back(std::move(changes));
      continue;
    }
    there->keys.append(L",").append(changes.keys);
    for (std::size_t i = 0; i < changes.values.size(); ++i) {
      there->values[i].append(L",").append(changes.values[i]);
    }
    there->count += changes.count;
  }
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
  for (const Changes& changes : piece.changes) waiting_ -= changes.count;
  piece = {};
}

// --- Sending ---

bool WriteQueue::has_rows_of(std::wstring_view table) const {
  return waiting_ > 0 && std::ranges::any_of(pieces_, [&](const Piece& piece) {
           return std::ranges::any_of(piece.rows,
                                      [&](const Rows& rows) {
                                        return folded_name(rows.plan->table->name) == table;
                                      }) ||
                  std::ranges::any_of(piece.changes, [&](const Changes& changes) {
                    return folded_name(changes.plan->table->name) == table;
                  });
         });
}

bool WriteQueue::is_waiting(std::wstring_view table, std::int64_t key) const {
  if (waiting_ == 0) return false;
  const auto keys = keys_.find(table);
  return keys != keys_.end() && keys->second.waiting.contains(key);
}

bool WriteQueue::is_empty(const Piece& piece) {
  return piece.changes.empty() && piece.rows.empty() && piece.statements.empty();
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
  note_sent();
  for (std::size_t i = 0; i < pieces; ++i) {
    if (i > 0) session_.send(L"SAVEPOINT level", L"SAVEPOINT");
    if (!is_empty(sending[i])) send(sending[i], i + 1 == pieces ? behind : L"");
  }
}

/// What is known of a row from before it waited is not so any more.
void WriteQueue::note_sent() noexcept {
  for (auto& [table, rows] : locked_) rows.note_sent();
  for (auto& [table, keys] : keys_) {
    if (keys.waiting.empty()) continue;
    keys.waiting.clear();
    session_.rows_ahead().forget(table);
  }
}

std::wstring WriteQueue::text_of(const Changes& changes) {
  const ChangePlan& plan = *changes.plan;
  const std::wstring& table = plan.table->name;
  const std::wstring key =
      plan.table->is_link_table() ? plan.table->columns.back().name : plan.table->key;
  const std::wstring keys = L"'{" + changes.keys + L"}'::integer[]";
  if (plan.columns.empty()) {
    const std::wstring text =
        L"DELETE FROM " + table + L" WHERE " + key + L" = ANY (" + keys + L")";
    // Of links there may be several to a key.
    return plan.table->is_link_table() ? text + L"; " : kept_whole(text, changes.count);
  }
  std::wstring assignments;
  std::wstring arrays = keys;
  std::wstring names = L"orv_key";
  for (std::size_t i = 0; i < plan.columns.size(); ++i) {
    const std::wstring name = L"orv_" + std::to_wstring(i);
    assignments += (i == 0 ? L"" : L", ") + plan.columns[i] + L" = " + name;
    arrays += L", '{" + changes.values[i] + L"}'::" + array_type(plan.types[i]);
    names += L", " + name;
  }
  return kept_whole(L"UPDATE " + table + L" SET " + assignments + L" FROM unnest(" + arrays +
                        L") AS orv_new (" + names + L") WHERE " + key + L" = orv_key",
                    changes.count);
}

/// What is changed first, then the rows of records, vertices and sets, which links refer to.
void WriteQueue::send(const Piece& piece, std::wstring_view behind) {
  std::wstring sql;
  std::wstring tables;
  for (const Changes& changes : piece.changes) {
    sql += text_of(changes);
    tables += (tables.empty() ? L"" : L", ") +
              std::wstring(changes.plan->columns.empty() ? L"DELETE FROM " : L"UPDATE ") +
              changes.plan->table->name;
  }
  for (const bool are_links : {false, true}) {
    for (const Rows& rows : piece.rows) {
      const RowPlan& plan = *rows.plan;
      if (plan.table->is_link_table() != are_links) continue;
      std::wstring arrays;
      for (std::size_t i = 0; i < rows.values.size(); ++i) {
        arrays.append(i == 0 ? L"'{" : L", '{").append(rows.values[i]).append(L"}'::");
        arrays += array_type(plan.types[i]);
      }
      // In the order of their keys, so that two programs with the same do not wait for each other.
      sql += kept_whole(L"INSERT INTO " + plan.table->name + L" (" + plan.columns +
                            L") SELECT * FROM unnest(" + arrays +
                            (plan.merging.empty() ? L")" : L") ORDER BY 1 " + plan.merging),
                        rows.count);
      tables += (tables.empty() ? L"INSERT INTO " : L", INSERT INTO ") + plan.table->name;
    }
  }
  session_.send(sql.append(piece.statements).append(behind), tables);
}

}  // namespace modeldb
