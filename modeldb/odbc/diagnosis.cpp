#include "modeldb/odbc/diagnosis.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <new>

#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"
#include "modeldb/engine/table_definition.h"
#include "modeldb/engine/tokeniser.h"

namespace modeldb {
namespace {

constexpr std::wstring_view kNoTableState = L"42P01";
constexpr std::wstring_view kNoColumnState = L"42703";

enum class Subject { kModel, kStatement };

/// What is said of a state, or of all states that begin so: of the model or the statement.
struct Answer {
  std::wstring_view state;
  HRESULT result;
  Subject subject;
  std::wstring_view clause;
};

constexpr std::wstring_view kInUse =
    L" is in use: another program or person is changing the same rows. Try again when they are "
    L"done, or wait longer by the CommandTimeout of the connection (in seconds; 0 for no limit).";
constexpr std::wstring_view kNoRights =
    L" was refused: the user of the connection has no right to that. Ask the owner of the model "
    L"for "
    L"it.";

/// The first that fits counts. The states are those of PostgreSQL's manual, appendix A, and of
/// ODBC's.
constexpr Answer kAnswers[] = {
    {L"23505", kIntegrityViolation, Subject::kStatement,
     L" was not run, because a row of that key is there already. Change the key."},
    {L"23503", kIntegrityViolation, Subject::kStatement,
     L" was not run: it would link to a row that the model does not have, or leave such a link "
     L"behind. Save what is linked to first."},
    {L"23", kIntegrityViolation, Subject::kStatement,
     L" was not run, because its values break a rule of the table. Change the values."},
    {L"2200H", kIntegrityViolation, Subject::kStatement,
     L" was not run: the table has no keys left for new rows, because the greatest, 2147483647, "
     L"was "
     L"given. Put a free ID on what it is for, a record, its vertex or a set."},
    {L"22012", kErrorsInCommand, Subject::kStatement,
     L" cannot be run, because it divides by zero. Leave such rows out, or use NULLIF."},
    {L"22003", kErrorsInCommand, Subject::kStatement,
     L" cannot be run: a number in it is too large for its column. Whole numbers go up to "
     L"2147483647."},
    {L"22", kErrorsInCommand, Subject::kStatement,
     L" cannot be run: a value in it does not fit its column. Correct it."},
    {L"25006", kCannotWriteFile, Subject::kModel,
     L" cannot be written: the server lets it be read alone. Open it on the server that is "
     L"written."},
    {L"42501", kPermissionDenied, Subject::kStatement, kNoRights},
    {L"42702", kErrorsInCommand, Subject::kStatement,
     L" cannot be run: a column in it may be that of several tables. Write the name of the table "
     L"in "
     L"front of it."},
    {L"42883", kErrorsInCommand, Subject::kStatement,
     L" cannot be run: it compares or computes with values of types that do not go together, or "
     L"calls a function that there is not. Correct it."},
    {L"42804", kErrorsInCommand, Subject::kStatement,
     L" cannot be run: a value in it is of another type than its place asks for; a condition must "
     L"be "
     L"a comparison. Correct it."},
    {L"42803", kErrorsInCommand, Subject::kStatement,
     L" cannot be run: it asks for a column beside sums over rows that does not stand in GROUP BY. "
     L"Correct it."},
    {L"42P10", kErrorsInCommand, Subject::kStatement,
     L" cannot be run: a number alone in an order stands for the column of that place, and there "
     L"is "
     L"none. Name the column."},
    {L"42704", kErrorsInCommand, Subject::kStatement,
     L" cannot be run: it names a collation or type that the server does not have. Correct it."},
    {L"42", kErrorsInCommand, Subject::kStatement, L" cannot be run as it is. Correct it."},
    {L"07006", kCannotOpenFile, Subject::kModel,
     L" cannot be used with an ODBC driver that knows no Unicode. Give \"PostgreSQL Unicode\" as "
     L"Driver, or to the data source."},
    {L"0A000", kErrorsInCommand, Subject::kStatement,
     L" cannot be run: the server does not offer what it asks for. Write it in another way."},
    {L"54", kErrorsInCommand, Subject::kStatement,
     L" cannot be run: it is too long or too involved. Divide it."},
    {L"55P03", kLocked, Subject::kModel, kInUse},
    {L"40P01", kLocked, Subject::kModel,
     L" is in use: another program or person is changing the same rows, and waits for rows that "
     L"this one has changed. Try again when they are done."},
    {L"40", kLocked, Subject::kModel, kInUse},
    {L"57014", kTimeout, Subject::kStatement,
     L" was ended, because it took longer than it may. Narrow it down, or give it more time by the "
     L"CommandTimeout of the connection or command (in seconds; 0 for no limit), if the server "
     L"does "
     L"not allow less itself (its statement_timeout)."},
    {L"53100", kCannotWriteFile, Subject::kModel,
     L" cannot grow: the server's disk is full. Have room made there and try again."},
    {L"53", kCannotReadFile, Subject::kModel,
     L" cannot be used: its server has too much to do, or too many connections. Try again later."},
};
constexpr std::wstring_view kOther =
    L" could not be run; the server answers with the state % of its error codes.";

/// What stands between the first pair of quotation marks, as the server names a column in English.
std::wstring first_quoted(std::wstring_view message) {
  const auto begin = message.find(L'"');
  if (begin == std::wstring_view::npos) return {};
  const auto end = message.find(L'"', begin + 1);
  if (end == std::wstring_view::npos) return {};
  return std::wstring(message.substr(begin + 1, end - begin - 1));
}

/// A name that the server gives in small letters, as the statement spells it.
std::wstring spelled(std::wstring_view sql, const std::wstring& folded) {
  Tokeniser tokens(sql);
  for (Token token = tokens.next(); token.kind != TokenKind::kEnd; token = tokens.next()) {
    if (token.kind == TokenKind::kName && same_name(token.text, folded)) {
      return std::wstring(token.text);
    }
  }
  return folded;
}

/// The name behind which the server looked in vain for a column, as the statement spells it: for
/// "magnitud" Magnitud or F.Magnitud, and for a table "vertex" that is none Vertex.ID.
std::wstring missing_column(std::wstring_view sql, std::wstring_view folded, bool is_table) {
  Tokeniser tokens(sql);
  Token before;
  Token last;
  for (Token token = tokens.next(); token.kind != TokenKind::kEnd; token = tokens.next()) {
    const bool is_path = last.is_operator(L'.');
    const Token& wanted = is_table ? before : token;
    const std::wstring_view name = wanted.kind == TokenKind::kQuotedName
                                       ? wanted.text.substr(1, wanted.text.size() - 2)
                                       : wanted.text;
    if ((!is_table || is_path) && same_name(name, folded)) {
      return is_path ? std::wstring(before.text.data(), token.end()) : std::wstring(token.text);
    }
    before = last;
    last = token;
  }
  return {};
}

/// What the server names in its words: between quotation marks or, of a column, behind the last
/// point of the word that has one.
std::wstring named_column(std::wstring_view message) {
  const std::wstring quoted_name = first_quoted(message);
  if (!quoted_name.empty()) return quoted_name;
  auto point = message.find(L'.');
  if (point == std::wstring_view::npos) return {};
  const auto end = std::min(message.find(L' ', point), message.size());
  point = message.rfind(L'.', end);
  return std::wstring(message.substr(point + 1, end - point - 1));
}

[[noreturn]] void fail_on_missing(std::wstring_view subject, std::wstring_view what,
                                  const std::wstring& name, TextFault fault) {
  fail_on_text(kErrorsInCommand, subject,
               L" cannot be run: no such " + std::wstring(what) + L": " + name + L". Correct it.",
               std::move(fault));
}

/// The names and words that the server did not understand.
void fail_on_words(const Diagnosis& diagnosis, std::wstring_view subject, std::wstring_view sql) {
  const std::wstring name = diagnosis.missing_name();
  if (!name.empty()) {
    const bool is_table = diagnosis.is(kNoTableState);
    const std::wstring column = missing_column(sql, name, is_table);
    if (!column.empty()) {
      fail_on_missing(subject, L"column", column, {.missing_column = column, .last_word = {}});
    }
    if (is_table) fail_on_missing(subject, L"table", spelled(sql, name), {});
  }
  if (diagnosis.is(L"42601")) {
    const std::wstring word = first_quoted(diagnosis.message);
    fail_on_text(kErrorsInCommand, subject,
                 word.empty() ? L" cannot be run: incomplete input. Correct it."
                              : L" cannot be run: \"" + word + L"\": syntax error. Correct it.",
                 {.missing_column = {}, .last_word = word});
  }
}

}  // namespace

Diagnosis Diagnosis::of(SQLSMALLINT handle_type, SQLHANDLE handle) {
  std::array<SQLWCHAR, 6> state{};
  std::array<SQLWCHAR, 1024> message{};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  const SQLRETURN result = DriverManager::instance().SQLGetDiagRecW(
      handle_type, handle, 1, state.data(), &native, message.data(),
      static_cast<SQLSMALLINT>(message.size()), &length);
  if (!SQL_SUCCEEDED(result)) return {};
  return {.state = state.data(), .message = message.data()};
}

std::wstring Diagnosis::missing_name() const {
  if (is(kNoTableState)) return first_quoted(message);
  return is(kNoColumnState) ? named_column(message) : std::wstring();
}

bool Diagnosis::is_lost_connection() const {
  return is_of_class(L"08") || is(L"57P01") || is(L"57P02") || is(L"57P03") || is(L"57P05") ||
         is(L"25P03") || is(L"HYT01");
}

void fail_as_server(const Diagnosis& diagnosis, std::wstring_view location, std::wstring_view sql) {
  if (diagnosis.is(L"53200") || diagnosis.is(L"HY001")) throw std::bad_alloc();
  if (diagnosis.is_lost_connection()) fail_as_disconnected(location);
  const std::wstring subject = L"The statement " + quoted(sql);
  if (diagnosis.is(kOccupiedState)) {
    fail_on_text(kIntegrityViolation, subject,
                 L" was not run: " + std::wstring(RowGuard::kRefusal) + L".");
  }
  if (diagnosis.is(kTakenAwayState)) {
    fail_on_text(kIntegrityViolation, subject,
                 L" was not run: a vertex that it puts records on has just been deleted or "
                 L"renumbered by somebody else. Put them on another vertex, or save that one anew "
                 L"with its coordinates first.");
  }
  fail_on_words(diagnosis, subject, sql);
  const auto* const answer = std::ranges::find_if(
      kAnswers, [&](const Answer& known) { return diagnosis.is_of_class(known.state); });
  if (answer == std::end(kAnswers)) {
    std::wstring clause(kOther);
    clause.replace(clause.find(L'%'), 1, diagnosis.state);
    fail_on_text(kErrorsInCommand, subject, std::move(clause));
  }
  if (answer->subject == Subject::kModel) {
    fail(answer->result, L"The model " + quoted(location) + std::wstring(answer->clause));
  }
  fail_on_text(answer->result, subject, std::wstring(answer->clause));
}

void fail_as_not_kept(std::wstring_view sql) {
  fail(
      kIntegrityViolation,
      L"The statement " + quoted(sql) +
          L" was not carried out by the server as it stands: a rule or trigger that was added to a "
          L"table leaves rows out. Have the owner of the model take it away.");
}

std::wstring kept_whole(std::wstring_view change, std::size_t rows) {
  std::wstring text = L"WITH orv_kept AS (";
  text.append(change).append(L" RETURNING 1) SELECT ln((count(*) = ");
  return text.append(std::to_wstring(rows)).append(L")::integer) FROM orv_kept; ");
}

void fail_as_reshaped(const std::wstring& name, std::wstring_view location) {
  fail(kCannotOpenFile, L"The model " + quoted(location) +
                            L" was given another shape by another program: it has no " + name +
                            L". Give it back the shape that it has in a new model.");
}

void fail_as_disconnected(std::wstring_view location) {
  fail(kInvalidConnection,
       L"The connection to the model " + quoted(location) +
           L" was lost. What was not committed is undone. Close the model and open it again.");
}

}  // namespace modeldb
