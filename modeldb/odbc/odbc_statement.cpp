#include "modeldb/odbc/odbc_statement.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "modeldb/base/failure.h"
#include "modeldb/engine/client_text.h"
#include "modeldb/engine/tokeniser.h"
#include "modeldb/odbc/client_dialect.h"
#include "modeldb/odbc/result_names.h"
#include "modeldb/odbc/session.h"

namespace modeldb {
namespace {

const DriverManager& odbc() { return DriverManager::instance(); }

/// The key of "INSERT INTO table (key, …", as the model database writes the rows of its tables.
std::wstring_view first_column(std::wstring_view sql) {
  constexpr std::wstring_view kInsert = L"INSERT INTO ";
  if (!sql.starts_with(kInsert)) return {};
  const auto begin = sql.find(L'(');
  const auto end = sql.find_first_of(L",)", begin);
  if (begin == std::wstring_view::npos || end == std::wstring_view::npos) return {};
  return sql.substr(begin + 1, end - begin - 1);
}

std::wstring text_for(std::wstring_view sql, Trust trust) {
  if (trust != Trust::kHost) return in_server_dialect(sql);
  const auto key = first_column(sql);
  return key.empty() ? std::wstring(sql) : std::wstring(sql) + L" RETURNING " + std::wstring(key);
}

Statement::Type type_of(SQLSMALLINT sql_type) {
  switch (sql_type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return Statement::Type::kInteger;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
    case SQL_NUMERIC:
    case SQL_DECIMAL:
      return Statement::Type::kReal;
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
      return Statement::Type::kBlob;
    default:
      return Statement::Type::kText;
  }
}

const wchar_t* declared_type(Statement::Type type) {
  switch (type) {
    case Statement::Type::kInteger:
      return L"INTEGER";
    case Statement::Type::kReal:
      return L"DOUBLE PRECISION";
    case Statement::Type::kText:
      return L"TEXT";
    case Statement::Type::kBlob:
      return L"BLOB";
    case Statement::Type::kNull:
      break;
  }
  return L"";
}

/// The server cannot keep these, and the driver alters or cuts such a text without a word.
void require_characters(std::wstring_view text) {
  bool is_open = false;  // half of a pair came, and the other must follow
  for (const wchar_t unit : text) {
    const bool is_second = unit >= 0xDC00 && unit <= 0xDFFF;
    if (unit == 0 || is_second != is_open || unit >= 0xFFFE) {
      is_open = true;
      break;
    }
    is_open = unit >= 0xD800 && unit <= 0xDBFF;
  }
  if (!is_open) return;
  fail(kInvalidArgument,
       L"The text " + quoted(text.substr(0, text.find(L'\0'))) +
           L" has a character that the model cannot keep: one of code 0, half of a surrogate pair, "
           L"or U+FFFE or U+FFFF. Take it out.");
}

}  // namespace

OdbcStatement::OdbcStatement(Session& session, std::wstring_view sql, Trust trust, bool is_direct)
    : session_(session),
      sql_(sql),
      text_(text_for(sql, trust)),
      gives_key_(trust == Trust::kHost && !first_column(sql).empty()),
      only_reads_(is_query(text_)),
      is_direct_(is_direct),
      by_key_(QueryByKey::of(text_)),
      insertion_(RowInsertion::of(trust == Trust::kHost ? sql_ : text_)),
      deletion_(RowDeletion::of(text_)),
      handle_(session.allocate(this)) {
  try {
    if (!is_direct_) prepare();
    // The driver puts off what the server has to say until somebody asks.
    if (trust != Trust::kHost) describe();
  } catch (...) {
    session_.release(this);
    throw;
  }
}

OdbcStatement::~OdbcStatement() { session_.release(this); }

void OdbcStatement::check(SQLRETURN result) const {
  if (SQL_SUCCEEDED(result)) return;
  session_.fail_with(handle_.get(), expanded_sql());
}

std::wstring OdbcStatement::expanded_sql() const {
  std::wstring text;
  auto parameter = parameters_.begin();
  const wchar_t* copied = sql_.data();
  Tokeniser tokens(sql_);
  for (Token token = tokens.next(); token.kind != TokenKind::kEnd; token = tokens.next()) {
    if (token.kind != TokenKind::kParameter || parameter == parameters_.end()) continue;
    text.append(copied, token.text.data());
    copied = token.end();
    text += shown(*parameter++);
  }
  return text.append(copied, sql_.data() + sql_.size());
}

std::wstring OdbcStatement::shown(const Parameter& parameter) {
  if (parameter.length == SQL_NULL_DATA) return L"NULL";
  if (parameter.type == Type::kText) return L"'" + parameter.text + L"'";
  std::array<char, 32> digits;
  char* const end =
      parameter.type == Type::kReal
          ? std::to_chars(digits.data(), digits.data() + digits.size(), parameter.real).ptr
          : std::to_chars(digits.data(), digits.data() + digits.size(), parameter.integer).ptr;
  return {digits.data(), end};
}

void OdbcStatement::require_open() const { session_.require_open(); }

bool OdbcStatement::is_open() const { return session_.is_open(); }

std::size_t OdbcStatement::memory() const { return 2048 + text_.size() * sizeof(wchar_t); }

// --- Parameters ---

OdbcStatement::Parameter& OdbcStatement::parameter(int number, Type type) {
  session_.require_open();
  while (parameters_.size() < static_cast<std::size_t>(number)) parameters_.emplace_back();
  Parameter& found = parameters_[number - 1];
  if (found.type != type || type == Type::kText) found.is_told = false;
  found.type = type;
  return found;
}

void OdbcStatement::bind(int number, std::int64_t value) {
  Parameter& bound = parameter(number, Type::kInteger);
  bound.integer = value;
  bound.length = 0;
}

void OdbcStatement::bind(int number, double value) {
  Parameter& bound = parameter(number, Type::kReal);
  bound.real = value;
  bound.length = 0;
}

void OdbcStatement::bind(int number, std::wstring_view value) {
  require_characters(value);
  Parameter& bound = parameter(number, Type::kText);
  bound.text = value;
  bound.length = static_cast<SQLLEN>(value.size() * sizeof(wchar_t));
}

void OdbcStatement::bind(int number, std::nullptr_t) {
  parameter(number, Type::kNull).length = SQL_NULL_DATA;
}

void OdbcStatement::bind(int, std::span<const std::byte>) {
  fail(kInvalidArgument, L"A value is made of bytes, for which the model " +
                             quoted(session_.location()) +
                             L" has no room. Give it numbers and texts.");
}

void OdbcStatement::bind_all(std::span<const Literal> values, int first) {
  for (const Literal& value : values) Statement::bind(first++, value);
}

void OdbcStatement::tell(int number, Parameter& bound) {
  if (bound.is_told) return;
  SQLSMALLINT c_type = SQL_C_SBIGINT;
  SQLSMALLINT sql_type = SQL_BIGINT;
  SQLULEN size = 0;
  SQLPOINTER address = &bound.integer;
  if (bound.type == Type::kReal) {
    c_type = SQL_C_DOUBLE;
    sql_type = SQL_DOUBLE;
    address = &bound.real;
  } else if (bound.type == Type::kText) {
    c_type = SQL_C_WCHAR;
    sql_type = SQL_WLONGVARCHAR;
    size = std::max<SQLULEN>(bound.text.size(), 1);
    address = bound.text.data();
  } else if (bound.type == Type::kNull) {
    sql_type = SQL_INTEGER;
  }
  check(odbc().SQLBindParameter(handle_.get(), static_cast<SQLUSMALLINT>(number), SQL_PARAM_INPUT,
                                c_type, sql_type, size, 0, address, 0, &bound.length));
  bound.is_told = true;
}

void OdbcStatement::limit_time(Seconds limit) {
  session_.require_open();
  odbc().SQLSetStmtAttrW(handle_.get(), SQL_ATTR_QUERY_TIMEOUT,
                         as_pointer(static_cast<SQLULEN>(limit)), 0);
}

// --- Running ---

void OdbcStatement::prepare() {
  check(odbc().SQLPrepareW(handle_.get(), characters(text_.c_str()),
                           static_cast<SQLINTEGER>(text_.size())));
  is_described_ = false;
}

/// Whether somebody has said that this would be asked for.
bool OdbcStatement::finds_rows_ahead() {
  if (!by_key_ || parameters_.size() != 1 || parameters_.front().type != Type::kInteger) {
    return false;
  }
  const auto* const rows = session_.rows_ahead().find(*by_key_, parameters_.front().integer);
  if (!rows) return false;
  ahead_ = *rows;
  next_ahead_ = 0;
  return true;
}

std::span<const RowValue> OdbcStatement::row_values() {
  row_values_.clear();
  for (const Parameter& value : parameters_) {
    if (value.length == SQL_NULL_DATA) {
      row_values_.emplace_back(nullptr);
    } else if (value.type == Type::kText) {
      row_values_.emplace_back(std::wstring_view(value.text));
    } else if (value.type == Type::kReal) {
      row_values_.emplace_back(value.real);
    } else {
      row_values_.emplace_back(value.integer);
    }
  }
  return row_values_;
}

/// Whether its row waits for others, or there surely is none.
bool OdbcStatement::is_queued() {
  queued_rows_.reset();
  if (!is_planned_) {
    if (insertion_) insertion_plan_ = session_.queue().plan(*insertion_);
    if (deletion_) deletion_plan_ = session_.queue().plan(*deletion_);
    is_planned_ = true;
  }
  if (insertion_plan_ && insertion_plan_->types.size() == parameters_.size()) {
    const auto key = session_.queue().insert(*insertion_plan_, row_values());
    if (!key) return false;
    if (*key != 0) session_.set_last_insert_id(*key);
    session_.rows_ahead().forget(insertion_->table);
    session_.add_changes(1);
    queued_rows_ = 1;
  } else if (deletion_plan_ && parameters_.size() == 1 &&
             parameters_.front().type == Type::kInteger &&
             deletion_plan_->unlinked.contains(parameters_.front().integer)) {
    queued_rows_ = 0;
  }
  return queued_rows_.has_value();
}

std::vector<ResultRow> OdbcStatement::rows_of(Session& session, std::wstring_view sql) {
  OdbcStatement query(session, sql, Trust::kHost, true);
  std::vector<ResultRow> rows;
  while (query.step()) rows.push_back(query.row());
  return rows;
}

/// Records look their sets up time and again while they are saved.
bool OdbcStatement::looks_up_a_set() const {
  return by_key_ && session_.is_in_transaction() && !session_.is_read_only() &&
         parameters_.size() == 1 && parameters_.front().type == Type::kInteger &&
         session_.queue().is_of_sets(by_key_->table);
}

/// Nobody may take it away before it is linked.
void OdbcStatement::look_up_a_set() {
  const std::int64_t key = parameters_.front().integer;
  ahead_ = rows_of(session_,
                   text_.substr(0, text_.rfind(L'?')) + std::to_wstring(key) + L" FOR KEY SHARE");
  next_ahead_ = 0;
  has_rows_ = true;
  if (!ahead_->empty()) session_.queue().note_locked(by_key_->table, key);
  session_.rows_ahead().remember(*by_key_, key, *ahead_);
}

void OdbcStatement::execute() {
  session_.require_alive();
  has_run_ = true;
  has_rows_ = finds_rows_ahead();
  if (has_rows_ || is_queued()) return;
  if (!only_reads_) session_.rows_ahead().forget();
  // Who reads one table alone needs only the rows of that.
  const bool reads_beside =
      by_key_ && !by_key_->table.empty() && !session_.queue().has_rows_of(by_key_->table);
  // For one that is direct, whoever wanted it has done that.
  if (!reads_beside && !is_direct_) session_.queue().flush(!only_reads_);
  if (looks_up_a_set()) return look_up_a_set();
  session_.prepare_to_run();
  for (std::size_t i = 0; i < parameters_.size(); ++i) {
    tell(static_cast<int>(i) + 1, parameters_[i]);
  }
  SQLRETURN result = is_direct_ ? odbc().SQLExecDirectW(handle_.get(), characters(text_.c_str()),
                                                        static_cast<SQLINTEGER>(text_.size()))
                                : odbc().SQLExecute(handle_.get());
  // Somebody has given a table another column since.
  if (result == SQL_ERROR && !is_direct_ &&
      Diagnosis::of(SQL_HANDLE_STMT, handle_.get()).is(L"0A000")) {
    odbc().SQLFreeStmt(handle_.get(), SQL_CLOSE);
    prepare();
    result = odbc().SQLExecute(handle_.get());
  }
  if (result == SQL_NO_DATA) return;
  check(result);
  describe();
  has_rows_ = !types_.empty();
  if (insertion_plan_) session_.queue().note_inserted(*insertion_plan_, row_values());
  if (!gives_key_) return;
  if (fetch()) session_.set_last_insert_id(integer(0));
  session_.add_changes(1);
  has_rows_ = false;
}

void OdbcStatement::describe() {
  if (is_described_) return;
  SQLSMALLINT count = 0;
  check(odbc().SQLNumResultCols(handle_.get(), &count));
  types_.clear();
  for (SQLUSMALLINT column = 1; column <= count; ++column) {
    SQLSMALLINT type = 0;
    // The driver wants a place for the name, too.
    std::array<SQLWCHAR, 256> name{};
    check(odbc().SQLDescribeColW(handle_.get(), column, name.data(), name.size(), nullptr, &type,
                                 nullptr, nullptr, nullptr));
    types_.push_back(type_of(type));
  }
  cells_.resize(types_.size());
  is_described_ = true;
}

bool OdbcStatement::fetch() {
  const SQLRETURN result = odbc().SQLFetch(handle_.get());
  for (Cell& cell : cells_) cell.is_read = false;
  if (result == SQL_NO_DATA) return false;
  check(result);
  return true;
}

bool OdbcStatement::step() {
  if (!has_run_) execute();
  if (!has_rows_) return false;
  if (ahead_) {
    has_rows_ = next_ahead_ < ahead_->size();
    if (has_rows_) cells_ = (*ahead_)[next_ahead_++];
    return has_rows_;
  }
  has_rows_ = fetch();
  return has_rows_;
}

std::int64_t OdbcStatement::run() {
  if (!has_run_) execute();
  if (queued_rows_) return *queued_rows_;
  if (gives_key_) return 1;
  if (!types_.empty() || ahead_) {
    while (step()) {
    }
    return 0;
  }
  SQLLEN rows = 0;
  odbc().SQLRowCount(handle_.get(), &rows);
  rows = std::max<SQLLEN>(rows, 0);
  session_.add_changes(rows);
  return rows;
}

void OdbcStatement::reset() {
  session_.require_open();
  odbc().SQLFreeStmt(handle_.get(), SQL_CLOSE);
  has_run_ = has_rows_ = false;
  ahead_.reset();
  queued_rows_.reset();
}

void OdbcStatement::clear() noexcept {
  has_run_ = has_rows_ = false;
  ahead_.reset();
  queued_rows_.reset();
  if (!handle_ || !session_.is_open()) return;
  odbc().SQLFreeStmt(handle_.get(), SQL_CLOSE);
  odbc().SQLSetStmtAttrW(handle_.get(), SQL_ATTR_QUERY_TIMEOUT, as_pointer(0), 0);
  for (Parameter& bound : parameters_) bound.length = SQL_NULL_DATA;
}

// --- Rows ---

const OdbcStatement::Cell& OdbcStatement::cell(int column) const {
  session_.require_open();
  Cell& found = cells_.at(column);
  if (!found.is_read) read(column, found);
  return found;
}

void OdbcStatement::read(int column, Cell& cell) const {
  const auto number = static_cast<SQLUSMALLINT>(column + 1);
  SQLLEN length = 0;
  cell.type = types_[column];
  switch (cell.type) {
    case Type::kInteger:
      check(odbc().SQLGetData(handle_.get(), number, SQL_C_SBIGINT, &cell.integer,
                              sizeof cell.integer, &length));
      cell.real = static_cast<double>(cell.integer);
      break;
    case Type::kReal:
      check(odbc().SQLGetData(handle_.get(), number, SQL_C_DOUBLE, &cell.real, sizeof cell.real,
                              &length));
      break;
    case Type::kBlob:
      read_long(column, SQL_C_BINARY, cell);
      break;
    default:
      read_long(column, SQL_C_WCHAR, cell);
      break;
  }
  if (length == SQL_NULL_DATA) cell.type = Type::kNull;
  cell.is_read = true;
}

void OdbcStatement::read_long(int column, SQLSMALLINT type, Cell& cell) const {
  const auto number = static_cast<SQLUSMALLINT>(column + 1);
  const std::size_t terminator = type == SQL_C_WCHAR ? sizeof(wchar_t) : 0;
  std::array<std::byte, 2048> first;
  std::span<std::byte> part(first);
  cell.blob.clear();
  std::vector<std::byte> more;
  for (;;) {
    SQLLEN length = 0;
    const SQLRETURN result = odbc().SQLGetData(handle_.get(), number, type, part.data(),
                                               static_cast<SQLLEN>(part.size()), &length);
    if (result == SQL_NO_DATA) break;
    check(result);
    if (length == SQL_NULL_DATA) {
      cell.type = Type::kNull;
      break;
    }
    const std::size_t room = part.size() - terminator;
    const bool is_cut = result == SQL_SUCCESS_WITH_INFO &&
                        (length == SQL_NO_TOTAL || static_cast<std::size_t>(length) > room);
    const std::size_t size = is_cut ? room : static_cast<std::size_t>(length);
    cell.blob.insert(cell.blob.end(), part.begin(), part.begin() + static_cast<long long>(size));
    if (!is_cut) break;
    more.resize(length == SQL_NO_TOTAL ? part.size() * 4
                                       : static_cast<std::size_t>(length) - room + terminator);
    part = more;
  }
  if (type != SQL_C_WCHAR) return;
  cell.text.resize(cell.blob.size() / sizeof(wchar_t));
  std::memcpy(cell.text.data(), cell.blob.data(), cell.text.size() * sizeof(wchar_t));
}

ResultRow OdbcStatement::row() const {
  for (std::size_t i = 0; i < cells_.size(); ++i) (void)cell(static_cast<int>(i));
  return cells_;
}

Statement::Type OdbcStatement::type(int column) const { return cell(column).type; }

std::int64_t OdbcStatement::integer(int column) const {
  const Cell& found = cell(column);
  if (found.type == Type::kNull) return 0;
  return found.type == Type::kReal ? static_cast<std::int64_t>(found.real) : found.integer;
}

double OdbcStatement::real(int column) const {
  const Cell& found = cell(column);
  return found.type == Type::kNull ? 0 : found.real;
}

std::wstring_view OdbcStatement::text(int column) const {
  const Cell& found = cell(column);
  return found.type == Type::kText ? std::wstring_view(found.text) : std::wstring_view();
}

std::span<const std::byte> OdbcStatement::blob(int column) const { return cell(column).blob; }

std::vector<ResultColumn> OdbcStatement::describe_columns() const {
  const auto attribute = [&](std::size_t column, SQLUSMALLINT field) {
    std::array<SQLWCHAR, 256> name{};
    SQLSMALLINT bytes = 0;
    odbc().SQLColAttributeW(handle_.get(), static_cast<SQLUSMALLINT>(column + 1), field,
                            name.data(), static_cast<SQLSMALLINT>(name.size() * sizeof(SQLWCHAR)),
                            &bytes, nullptr);
    return std::wstring(name.data());
  };
  const ResultNames names(session_, sql_);
  std::vector<ResultColumn> columns;
  columns.reserve(types_.size());
  for (std::size_t i = 0; i < types_.size(); ++i) {
    const std::wstring label = attribute(i, SQL_DESC_LABEL);
    ResultColumn& column =
        columns.emplace_back(ResultColumn{.name = names.of(static_cast<int>(i), label),
                                          .table = {},
                                          .origin = {},
                                          .declared_type = declared_type(types_[i])});
    // The driver would ask the server for it, several times.
    if (session_.queue().has_column(names.only_table(), label)) {
      column.table = session_.spelled(names.only_table());
      column.origin = session_.spelled(label);
    } else if (names.only_table().empty()) {
      column.table = session_.spelled(attribute(i, SQL_DESC_BASE_TABLE_NAME));
      column.origin = session_.spelled(attribute(i, SQL_DESC_BASE_COLUMN_NAME));
    }
  }
  return columns;
}

}  // namespace modeldb
