#include "modeldb/odbc/session.h"

#include <algorithm>
#include <utility>

#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"
#include "modeldb/engine/engine.h"
#include "modeldb/odbc/connection_failure.h"
#include "modeldb/odbc/odbc_statement.h"
#include "modeldb/odbc/row_stream.h"

namespace modeldb {
namespace {

const DriverManager& odbc() { return DriverManager::instance(); }

/// Seconds for the network's part of logging in.
constexpr SQLULEN kLoginTimeout = 15;

/// Characters of the longest text that the engine asks for itself: keys that are drawn.
constexpr std::size_t kLongestAnswer = 16384;

}  // namespace

std::wstring folded_name(std::wstring_view name) {
  std::wstring result(name);
  std::ranges::transform(result, result.begin(), folded);
  return result;
}

Session::Session(std::wstring_view location) : text_(read_connection_text(location)) {}

Session::~Session() { disconnect(); }

void Session::connect() {
  environment_ = EnvironmentHandle(nullptr);
  odbc().SQLSetEnvAttr(environment_.get(), SQL_ATTR_ODBC_VERSION, as_pointer(SQL_OV_ODBC3), 0);
  connection_ = ConnectionHandle(environment_.get());
  odbc().SQLSetConnectAttrW(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT, as_pointer(kLoginTimeout),
                            0);
  // The completed string, which ODBC would give back, holds the password.
  const SQLRETURN result = odbc().SQLDriverConnectW(
      connection_.get(), nullptr, characters(text_.complete.c_str()),
      static_cast<SQLSMALLINT>(text_.complete.size()), nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  if (!SQL_SUCCEEDED(result)) {
    fail_to_connect(Diagnosis::of(SQL_HANDLE_DBC, connection_.get()), text_, environment_);
  }
  is_open_ = true;
  own_ = StatementHandle(connection_.get());
  // What the engine relies on, whatever the user's or the server's settings are.
  run(L"SET standard_conforming_strings = on; SET client_min_messages = error; "
      L"SET DateStyle = 'ISO'; SET default_transaction_isolation = 'read committed'");
}

void Session::disconnect() noexcept {
  if (!connection_) return;
  wait_for_background();
  stream_ = nullptr;
  if (is_open_ && !is_lost_) odbc().SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_ROLLBACK);
  for (OdbcStatement* const statement : std::exchange(statements_, {})) statement->abandon();
  own_ = {};
  if (is_open_) odbc().SQLDisconnect(connection_.get());
  connection_ = {};
  environment_ = {};
  is_open_ = is_begun_ = false;
}

void Session::require_open() const {
  if (!is_open_ || is_lost_) fail_as_closed_or_lost();
}

void Session::fail_as_closed_or_lost() const {
  if (is_lost_ && is_open_) fail_as_disconnected(location());
  fail_as_closed(location());
}

StatementHandle Session::allocate(OdbcStatement* owner) {
  require_open();
  wait_for_background();
  StatementHandle handle(connection_.get());
  statements_.insert(owner);
  return handle;
}

void Session::release(OdbcStatement* owner) noexcept {
  wait_for_background();
  statements_.erase(owner);
}

DirectQuery Session::direct_query() {
  require_open();
  wait_for_background();
  return DirectQuery(StatementHandle(connection_.get()));
}

ResultRows Session::rows_of(const std::wstring& sql) {
  require_alive();
  prepare_to_run();
  try {
    return direct_query().rows_of(sql);
  } catch (const QueryFailure& failure) {
    fail_with(failure.diagnosis, sql);
  }
}

void Session::require_alive() const {
  require_open();
  if (is_undone_) fail_as_lost(location());
}

void Session::require_reachable() {
  require_alive();
  if (answers()) return;
  is_lost_ = true;
  fail_as_disconnected(location());
}

void Session::run(std::wstring_view sql) {
  require_alive();
  finish_reading();
  queue_.flush(true);
  rows_ahead_.forget();
  prepare_to_run();
  run_alone(sql, sql);
}

void Session::send(std::wstring_view sql, std::wstring_view shown) {
  require_alive();
  finish_reading();
  prepare_to_run();
  try {
    run_alone(sql, shown, true);
  } catch (...) {
    is_undone_ = true;
    throw;
  }
}

std::vector<std::wstring> Session::ask(std::wstring_view sql) noexcept {
  std::vector<std::wstring> texts;
  if (!is_open_ || is_lost_) return texts;
  wait_for_background();
  SQLSMALLINT columns = 0;
  const bool has_row = SQL_SUCCEEDED(odbc().SQLExecDirectW(own_.get(), characters(sql.data()),
                                                           static_cast<SQLINTEGER>(sql.size()))) &&
                       SQL_SUCCEEDED(odbc().SQLNumResultCols(own_.get(), &columns)) &&
                       SQL_SUCCEEDED(odbc().SQLFetch(own_.get()));
  std::wstring text(kLongestAnswer, L'\0');
  for (SQLUSMALLINT column = 1; has_row && column <= columns; ++column) {
    SQLLEN bytes = 0;
    const SQLRETURN result =
        odbc().SQLGetData(own_.get(), column, SQL_C_WCHAR, text.data(),
                          static_cast<SQLLEN>(text.size() * sizeof(wchar_t)), &bytes);
    if (result != SQL_SUCCESS || bytes < 0) break;
    texts.emplace_back(text, 0, static_cast<std::size_t>(bytes) / sizeof(wchar_t));
  }
  odbc().SQLFreeStmt(own_.get(), SQL_CLOSE);
  // A function that was stopped may have been about to let a lock go (key_rules.h).
  if (!has_row) run_quietly(L"SELECT pg_advisory_unlock_all()");
  return texts;
}

void Session::run_alone(std::wstring_view sql, std::wstring_view shown, bool writes_rows) {
  wait_for_background();
  const SQLRETURN result = odbc().SQLExecDirectW(own_.get(), characters(sql.data()),
                                                 static_cast<SQLINTEGER>(sql.size()));
  if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) fail_with(own_.get(), shown, writes_rows);
  odbc().SQLFreeStmt(own_.get(), SQL_CLOSE);
}

void Session::run_quietly(const wchar_t* sql) noexcept {
  if (!is_open_ || is_lost_) return;
  wait_for_background();
  if (is_told_within_) waiting_told_.reset();
  rows_ahead_.forget();
  odbc().SQLExecDirectW(own_.get(), characters(sql), SQL_NTS);
  odbc().SQLFreeStmt(own_.get(), SQL_CLOSE);
}

void Session::set_automatic(bool is_automatic) noexcept {
  wait_for_background();
  odbc().SQLSetConnectAttrW(connection_.get(), SQL_ATTR_AUTOCOMMIT,
                            as_pointer(is_automatic ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF), 0);
}

void Session::begin_reading(RowStream& stream) {
  finish_reading();
  if (stream_) stream_->forget_ahead();  // for it will not hear of changes any more
  stream_ = &stream;
  if (is_begun_) return;
  set_automatic(false);
  is_reading_ = true;
}

void Session::end_reading() noexcept {
  if (!std::exchange(is_reading_, false) || !is_open_ || is_lost_) return;
  background_.start([connection = connection_.get()] {
    odbc().SQLEndTran(SQL_HANDLE_DBC, connection, SQL_COMMIT);
    odbc().SQLSetConnectAttrW(connection, SQL_ATTR_AUTOCOMMIT, as_pointer(SQL_AUTOCOMMIT_ON), 0);
  });
}

void Session::leave(const RowStream& stream) noexcept {
  wait_for_background();
  if (stream_ == &stream) stream_ = nullptr;
}

void Session::finish_reading() noexcept {
  if (stream_) stream_->fetch_rest();
}

void Session::begin() {
  require_open();
  finish_reading();
  has_waited_in_vain_ = false;
  prepare_to_run();
  set_automatic(false);
  queue_.reset();
  rows_ahead_.reset();
  is_undone_ = false;
  is_begun_ = true;
  is_told_within_ = has_failed_ = false;
}

void Session::commit() {
  require_alive();
  finish_reading();
  // Of a transaction that is lost the driver reports success; any statement in it fails.
  if (has_failed_) run(L"SELECT 1");
  try {
    if (!queue_.flush_and_commit()) {
      wait_for_background();
      const SQLRETURN result = odbc().SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_COMMIT);
      if (!SQL_SUCCEEDED(result)) fail_to_commit();
    }
  } catch (const com::Error&) {
    if (is_lost_) fail_as_unknown();
    throw;
  }
  set_automatic(true);
  is_begun_ = false;
  queue_.reset();
  rows_ahead_.forget();
}

void Session::fail_to_commit() {
  const auto diagnosis = Diagnosis::of(SQL_HANDLE_DBC, connection_.get());
  if (diagnosis.state.empty() || is_lost(diagnosis)) is_lost_ = true;
  fail_as_server(diagnosis, location(), L"COMMIT TRANSACTION");
}

void Session::fail_as_unknown() const {
  fail(kInvalidConnection,
       L"The connection to the model " + quoted(location()) +
           L" was lost while a transaction was being committed, so that it is not known whether "
           L"it was. Close the model, open it again, and look.");
}

void Session::rollback() noexcept {
  finish_reading();
  queue_.reset();
  rows_ahead_.forget();
  is_undone_ = false;
  if (is_open_ && !is_lost_) {
    wait_for_background();
    odbc().SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_ROLLBACK);
    set_automatic(true);
  }
  if (is_told_within_) waiting_told_.reset();
  is_begun_ = false;
}

long long Session::milliseconds_to_wait() const {
  constexpr long long kShortest = 10;  // more than the locks around keys take
  constexpr long long kLongest = 2'000'000'000;
  constexpr long long kThousand = 1000;
  // A little less than a client's statement may take in all, so that a lock is what is told of.
  constexpr long long kLess = 100;
  if (is_begun_ && has_waited_in_vain_) return kShortest;
  return waiting_ == 0 ? 0 : std::min(waiting_ * kThousand - kLess, kLongest);
}

void Session::prepare_to_run() {
  const long long limit = milliseconds_to_wait();
  if (waiting_told_ == limit) return;
  waiting_told_ = limit;
  is_told_within_ = is_begun_;
  const std::wstring sql = L"SET lock_timeout = " + std::to_wstring(limit);
  run_alone(sql, sql);
}

void Session::fail_with(SQLHANDLE statement, std::wstring_view sql, bool writes_rows) {
  const auto diagnosis = Diagnosis::of(SQL_HANDLE_STMT, statement);
  odbc().SQLFreeStmt(statement, SQL_CLOSE);
  fail_with(diagnosis, sql, writes_rows);
}

void Session::fail_with(const Diagnosis& diagnosis, std::wstring_view sql, bool writes_rows) {
  if (is_lost(diagnosis)) is_lost_ = true;
  has_failed_ = true;
  if (diagnosis.is(L"55P03") || diagnosis.is(L"40P01")) has_waited_in_vain_ = true;
  if (diagnosis.is(L"25P02")) fail_as_lost(location());
  // A trigger that was stopped may have been about to let a lock go (key_rules.h).
  if (diagnosis.is(L"57014") || diagnosis.is(L"2200H")) {
    run_quietly(L"SELECT pg_advisory_unlock_all()");
  }
  if (is_lost_) fail_as_disconnected(location());
  // Of a table with a rule the server cannot tell what was written.
  if (writes_rows && (diagnosis.is(kNotKeptState) || diagnosis.is(L"0A000"))) fail_as_not_kept(sql);
  const std::wstring missing = writes_rows ? diagnosis.missing_name() : std::wstring();
  if (!missing.empty()) fail_as_reshaped(spelled(missing), location());
  fail_as_server(diagnosis, location(), sql);
}

/// The driver has no state of its own for a connection that it finds closed.
bool Session::is_lost(const Diagnosis& diagnosis) noexcept {
  return diagnosis.is_lost_connection() || (diagnosis.is(L"HY000") && !answers());
}

bool Session::answers() noexcept {
  wait_for_background();
  wchar_t query[] = L"SELECT 1";
  if (SQL_SUCCEEDED(odbc().SQLExecDirectW(own_.get(), characters(query), SQL_NTS))) {
    odbc().SQLFreeStmt(own_.get(), SQL_CLOSE);
    return true;
  }
  // In a transaction that has failed the server says that.
  return Diagnosis::of(SQL_HANDLE_STMT, own_.get()).is(L"25P02");
}

std::wstring Session::spelled(const std::wstring& name) const {
  const auto known = spelling_.find(name);
  return known == spelling_.end() ? name : known->second;
}

void Session::learn(const TableDefinition& table) {
  learn_spelling(table.name);
  if (!table.key.empty()) learn_spelling(table.key);
  for (const Column& column : table.columns) learn_spelling(column.name);
  queue_.learn(table);
}

void Session::learn_spelling(std::wstring_view name) { spelling_.emplace(folded_name(name), name); }

}  // namespace modeldb
