#include "modeldb/odbc/odbc_statement.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "modeldb/base/characters.h"
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
  if (text.find(L'\0') == std::wstring_view::npos && is_of_characters(text)) return;
  fail(kInvalidArgument,
       L"The text " + quoted(text.substr(0, text.find(L'\0'))) +
           L" has a character that the model cannot keep: one of code 0, half of a surrogate pair, "
           L"or U+FFFE or U+FFFF. Take it out.");
}

}  // namespace

OdbcStatement::OdbcStatement(Session& session, std::wstring_view sql, Trust trust)
    : session_(session),
      sql_(sql),
      text_(text_for(sql, trust)),
      gives_key_(trust == Trust::kHost && !first_column(sql).empty()),
      only_reads_(is_query(text_)),
      insertion_(RowInsertion::of(trust == Trust::kHost ? sql_ : text_, trust == Trust::kHost)),
      change_(RowChange::of(text_)),
      handle_(session.allocate(this)) {
  if (auto query = QueryByKey::of(text_)) by_key_.emplace(session_.rows_ahead(), std::move(*query));
  try {
    prepare();
    // The driver puts off what the server has to say until somebody asks.
    if (trust != Trust::kHost) describe();
  } catch (...) {
    session_.release(this);
    throw;
  }
}

OdbcStatement::~OdbcStatement() { session_.release(this); }

void OdbcStatement::abandon() noexcept {
  if (stream_) stream_->abandon();
  stream_.reset();
  result_place_.reset();
  handle_ = {};
}

void OdbcStatement::check(SQLRETURN result) const {
  if (SQL_SUCCEEDED(result)) return;
  session_.fail_with(handle_.get(), expanded_sql(), gives_key_);
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
  has_run_ahead_ = false;
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

/// Where a parameter is.
SQLRETURN OdbcStatement::tell(SQLHANDLE statement, int number, Parameter& bound) {
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
  return odbc().SQLBindParameter(statement, static_cast<SQLUSMALLINT>(number), SQL_PARAM_INPUT,
                                 c_type, sql_type, size, 0, address, 0, &bound.length);
}

void OdbcStatement::limit_time(Seconds limit) {
  session_.require_open();
  limit_ = limit;
}

// --- Running ---

void OdbcStatement::prepare() {
  session_.wait_for_background();
  check(odbc().SQLPrepareW(handle_.get(), characters(text_.c_str()),
                           static_cast<SQLINTEGER>(text_.size())));
  is_described_ = false;
  forget_columns();
}

/// Whether somebody has said that this would be asked for.
bool OdbcStatement::finds_rows_ahead() {
  if (!by_key_ || parameters_.size() != 1 || parameters_.front().type != Type::kInteger) {
    return false;
  }
  auto found = by_key_->find(parameters_.front().integer);
  if (!found.rows) return false;
  take(std::move(found));
  return true;
}

/// Whether it reads the row of a number.
bool OdbcStatement::asks_for_a_row() const {
  return by_key_ && !by_key_->query().table.empty() && parameters_.size() == 1 &&
         parameters_.front().type == Type::kInteger &&
         session_.queue().is_key(by_key_->query().table, by_key_->query().column);
}

/// Whether it reads the row of a number, as a transaction reads one after the other.
bool OdbcStatement::finds_rows_behind() {
  if (!session_.is_in_transaction() || !asks_for_a_row()) return false;
  auto found = by_key_->fetch_on(parameters_.front().integer);
  if (!found.rows) return false;
  take(std::move(found));
  return true;
}

/// Rows of a text that ran by itself have the columns that this statement knows, from the first on:
/// somebody may have taken one away since.
void OdbcStatement::require_columns(const ResultRows& rows, std::size_t first) const {
  for (std::size_t i = 0; i < labels_.size(); ++i) {
    const bool is_there =
        first + i < rows.labels().size() && rows.labels()[first + i] == labels_[i];
    if (is_there) continue;
    fail(kErrorsInCommand, L"The model " + quoted(session_.location()) +
                               L" cannot be read: somebody has changed its tables since it was "
                               L"opened; the column " +
                               session_.spelled(labels_[i]) +
                               L" is not where it was. Close the model and open it again.");
  }
}

void OdbcStatement::take(RowsOfQuery::Found found) {
  if (!found.rows->is_checked()) require_columns(found.rows->rows(), found.rows->first_column());
  found.rows->set_checked();
  ahead_ = std::move(found);
  next_ = ahead_.range.begin;
  has_rows_ = true;
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
    if (change_) change_plan_ = session_.queue().plan(*change_);
    is_planned_ = true;
  }
  if (insertion_plan_ && insertion_plan_->types.size() == parameters_.size()) {
    const auto key = session_.queue().insert(*insertion_plan_, row_values());
    if (!key) return false;
    if (*key != 0) session_.set_last_insert_id(*key);
    // Of the row itself nobody asks until it is sent.
    const std::wstring_view column = insertion_->columns.front();
    session_.rows_ahead().forget_beside(insertion_->table,
                                        *key != 0 ? column : std::wstring_view());
    session_.add_changes(1);
    queued_rows_ = 1;
  } else if (change_plan_) {
    queued_rows_ = session_.queue().change(*change_plan_, row_values());
    if (queued_rows_) {
      session_.rows_ahead().forget_beside(change_->table, change_->key);
      session_.add_changes(*queued_rows_);
    }
  }
  return queued_rows_.has_value();
}

void OdbcStatement::stream(std::vector<RowStream::KeyColumn> keys, std::wstring_view subject) {
  session_.require_alive();
  session_.queue().flush(false);
  session_.prepare_to_run();
  RowStream::Query query{.runner = session_.direct_query(), .text = text_, .limit = limit_};
  int number = 0;
  for (Parameter& bound : parameters_) check(tell(query.runner.handle(), ++number, bound));
  subject_ = subject;
  try {
    stream_ = std::make_unique<RowStream>(session_, std::move(query), std::move(keys));
  } catch (const QueryFailure& failure) {
    fail_with(failure);
  }
  has_run_ = has_run_ahead_ = true;
  read_on();
  require_columns(own_, 0);
}

/// The next rows of the stream.
void OdbcStatement::read_on() {
  own_ = {};
  try {
    own_ = stream_->next();
  } catch (const QueryFailure& failure) {
    fail_with(failure);
  }
  next_ = 0;
  has_rows_ = own_.count() > 0;
}

void OdbcStatement::fail_with(const QueryFailure& failure) {
  try {
    session_.fail_with(failure.diagnosis, expanded_sql());
  } catch (const TextError& error) {
    if (subject_.empty()) throw;
    fail_on_text(subject_, error);
  }
}

/// Records look their sets up time and again while they are saved.
bool OdbcStatement::looks_up_a_set() const {
  return by_key_ && session_.is_in_transaction() && !session_.is_read_only() &&
         parameters_.size() == 1 && parameters_.front().type == Type::kInteger &&
         session_.queue().is_of_sets(by_key_->query().table);
}

/// Nobody may take it away before it is linked.
void OdbcStatement::look_up_a_set() {
  const std::int64_t key = parameters_.front().integer;
  const auto rows =
      std::make_shared<KeyedRows>(key, session_.rows_of(text_.substr(0, text_.rfind(L'?')) +
                                                        std::to_wstring(key) + L" FOR KEY SHARE"));
  if (rows->rows().count() > 0) session_.queue().note_locked(by_key_->query().table, key);
  by_key_->remember(key, rows);
  take({rows, {0, rows->rows().count()}});
}

/// Executes it; what ODBC answers.
SQLRETURN OdbcStatement::send() {
  session_.wait_for_background();
  int number = 0;
  for (Parameter& bound : parameters_) {
    ++number;
    if (!bound.is_told) check(tell(handle_.get(), number, bound));
    bound.is_told = true;
  }
  if (limit_ != limit_told_) {
    odbc().SQLSetStmtAttrW(handle_.get(), SQL_ATTR_QUERY_TIMEOUT,
                           as_pointer(static_cast<SQLULEN>(limit_)), 0);
    limit_told_ = limit_;
  }
  is_executed_ = true;
  const SQLRETURN result = odbc().SQLExecute(handle_.get());
  if (result != SQL_ERROR) return result;
  // Somebody has given a table another column since.
  const auto diagnosis = Diagnosis::of(SQL_HANDLE_STMT, handle_.get());
  if (!diagnosis.is(L"0A000")) return result;
  odbc().SQLFreeStmt(handle_.get(), SQL_CLOSE);
  prepare();
  return odbc().SQLExecute(handle_.get());
}

void OdbcStatement::execute() {
  session_.require_alive();
  has_run_ = true;
  const bool asks_what_waits =
      session_.queue().has_rows() && asks_for_a_row() &&
      session_.queue().is_waiting(by_key_->query().table, parameters_.front().integer);
  if ((!asks_what_waits && finds_rows_ahead()) || is_queued()) return;
  if (!only_reads_) {
    session_.rows_ahead().forget();
    session_.queue().note_change();
  }
  // Who reads one table alone needs only the rows of that, and of a row by its number only that.
  const bool reads_beside =
      by_key_ && !by_key_->query().table.empty() && !asks_what_waits &&
      (asks_for_a_row() || !session_.queue().has_rows_of(by_key_->query().table));
  if (!reads_beside) session_.queue().flush(!only_reads_);
  if (looks_up_a_set()) return look_up_a_set();
  if (reads_beside && finds_rows_behind()) return;
  session_.prepare_to_run();
  const SQLRETURN result = send();
  if (result != SQL_NO_DATA) {
    check(result);
    describe();
    if (!types_.empty()) read_rows();
  }
  if (insertion_ && !has_inserted()) fail_as_not_kept(expanded_sql());
  if (result == SQL_NO_DATA) return;
  if (insertion_plan_) session_.queue().note_inserted(*insertion_plan_, row_values());
  if (!gives_key_) return;
  session_.set_last_insert_id(own_.integer(0, 0));
  session_.add_changes(1);
  has_rows_ = false;
}

/// Its one row.
bool OdbcStatement::has_inserted() const {
  if (gives_key_) return has_rows_;
  SQLLEN rows = 0;
  odbc().SQLRowCount(handle_.get(), &rows);
  return rows == 1;
}

void OdbcStatement::describe() {
  if (is_described_) return;
  session_.wait_for_background();
  result_place_.reset();
  types_.clear();
  labels_.clear();
  SQLRETURN result = SQL_SUCCESS;
  for (auto& column : described_columns(handle_.get(), result)) {
    types_.push_back(column.type);
    labels_.push_back(std::move(column.label));
  }
  check(result);
  is_described_ = true;
}

/// All of them, so that the driver can let go of its own, which take more memory.
void OdbcStatement::read_rows() {
  if (!result_place_) result_place_ = std::make_unique<ResultPlace>(handle_.get(), types_);
  own_.start(types_.size());
  for (;;) {
    const SQLRETURN result = result_place_->fetch(own_);
    if (result == SQL_NO_DATA) break;
    check(result);
  }
  odbc().SQLFreeStmt(handle_.get(), SQL_CLOSE);
  is_executed_ = false;
  next_ = 0;
  has_rows_ = own_.count() > 0;
}

bool OdbcStatement::step() {
  if (!has_run_) execute();
  has_run_ahead_ = false;
  if (stream_ && next_ == 1) stream_->go_on();
  if (stream_ && has_rows_ && next_ == own_.count()) read_on();
  const std::size_t end = ahead_.rows ? ahead_.range.end : own_.count();
  has_rows_ = has_rows_ && next_ < end;
  if (has_rows_) row_ = ahead_.rows ? ahead_.rows->row(next_) : next_;
  ++next_;
  return has_rows_;
}

std::int64_t OdbcStatement::run() {
  if (!has_run_) execute();
  if (queued_rows_) return *queued_rows_;
  if (gives_key_) return 1;
  if (!types_.empty() || ahead_.rows) return 0;
  SQLLEN rows = 0;
  odbc().SQLRowCount(handle_.get(), &rows);
  rows = std::max<SQLLEN>(rows, 0);
  session_.add_changes(rows);
  return rows;
}

void OdbcStatement::forget_rows() noexcept {
  if (is_executed_) {
    session_.wait_for_background();
    odbc().SQLFreeStmt(handle_.get(), SQL_CLOSE);
  }
  stream_.reset();
  is_executed_ = has_run_ = has_rows_ = has_run_ahead_ = false;
  ahead_ = {};
  queued_rows_.reset();
}

void OdbcStatement::reset() {
  session_.require_open();
  if (!std::exchange(has_run_ahead_, false)) forget_rows();
}

void OdbcStatement::clear() noexcept {
  constexpr std::size_t kMostKept = 4096;
  if (own_.memory() > kMostKept) own_ = {};
  if (!handle_ || !session_.is_open()) is_executed_ = false;
  forget_rows();
  limit_ = 0;
  for (Parameter& bound : parameters_) bound.length = SQL_NULL_DATA;
}

// --- Rows ---

std::size_t OdbcStatement::place(int column) const {
  session_.require_open();
  return static_cast<std::size_t>(column) + (ahead_.rows ? ahead_.rows->first_column() : 0);
}

Statement::Type OdbcStatement::type(int column) const { return rows().type(row_, place(column)); }

std::int64_t OdbcStatement::integer(int column) const {
  return rows().integer(row_, place(column));
}

double OdbcStatement::real(int column) const { return rows().real(row_, place(column)); }

std::wstring_view OdbcStatement::text(int column) const { return rows().text(row_, place(column)); }

std::span<const std::byte> OdbcStatement::blob(int column) const {
  return rows().blob(row_, place(column));
}

std::vector<ResultColumn> OdbcStatement::describe_columns() const {
  session_.wait_for_background();
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
    const std::wstring& label = labels_[i];
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
