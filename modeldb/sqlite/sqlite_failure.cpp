#include "modeldb/sqlite/sqlite_failure.h"

#include <sqlite3.h>

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

#include "modeldb/base/failure.h"

namespace modeldb {
namespace {

enum class Subject { kFile, kStatement };

/// What is said of a result of SQLite: of the file or the statement, with SQLite's reason in the
/// place of the percent sign.
struct Answer {
  int sqlite;
  HRESULT result;
  Subject subject;
  std::wstring_view clause;
};

constexpr std::wstring_view kWriteProtected =
    L" cannot be written: the file or its folder is write-protected. Take the protection off, and "
    L"open the model again.";

constexpr Answer kAnswers[] = {
    {SQLITE_READONLY_ROLLBACK, kCannotOpenFile, Subject::kFile,
     L" was left in the middle of a change, which cannot be undone, since the file is "
     L"write-protected. Take the protection off, and open the model again."},
    {SQLITE_READONLY, kCannotWriteFile, Subject::kFile, kWriteProtected},
    {SQLITE_PERM, kCannotWriteFile, Subject::kFile, kWriteProtected},
    // Of a file that is open, it is the journal beside it that cannot be opened.
    {SQLITE_CANTOPEN, kCannotWriteFile, Subject::kFile, kWriteProtected},
    {SQLITE_BUSY, kLocked, Subject::kFile,
     L" is in use, by another program or by this one. End the transaction or close the recordset "
     L"there, or try again later."},
    {SQLITE_LOCKED, kLocked, Subject::kFile,
     L" is in use, by another program or by this one. End the transaction or close the recordset "
     L"there, or try again later."},
    {SQLITE_CORRUPT, kCannotReadFile, Subject::kFile,
     L" is damaged (%). Take a copy of the file that was saved earlier."},
    {SQLITE_FULL, kCannotWriteFile, Subject::kFile,
     L" cannot grow: the disk is full. Make room and try again."},
    {SQLITE_IOERR, kCannotReadFile, Subject::kFile,
     L" could not be read or written (%). Check the disk, and the connection to it."},
    {SQLITE_AUTH, kPermissionDenied, Subject::kStatement,
     L" was refused: it would %. Only the rows of the model's tables can be read, and through the "
     L"connection changed."},
    {SQLITE_CONSTRAINT_TRIGGER, kIntegrityViolation, Subject::kStatement, L" was not run: %."},
    {SQLITE_CONSTRAINT_FOREIGNKEY, kIntegrityViolation, Subject::kStatement,
     L" was not run: it would link to a row that the model does not have, or leave such a link "
     L"behind. Save what is linked to first."},
    {SQLITE_CONSTRAINT, kIntegrityViolation, Subject::kStatement,
     L" was not run, because its values break a rule of the table: %. Change the values."},
    {SQLITE_INTERRUPT, kTimeout, Subject::kStatement,
     L" was ended, because it took longer than it may. Narrow it down, or give it more time by the "
     L"CommandTimeout of the connection or command (in seconds; 0 for no limit)."},
    {SQLITE_ABORT, kIllegalOperation, Subject::kStatement,
     L" has lost its rows, because the transaction was rolled back. Open the recordset again."},
};
constexpr Answer kOther = {SQLITE_ERROR, kErrorsInCommand, Subject::kStatement,
                           L" cannot be run: %. Correct it."};

const Answer& answer_to(int result) {
  for (const int code : {result, result & 0xFF}) {
    const auto* const found = std::ranges::find(kAnswers, code, &Answer::sqlite);
    if (found != std::end(kAnswers)) return *found;
  }
  return kOther;
}

std::wstring with_reason(std::wstring_view clause, std::wstring_view reason) {
  std::wstring text(clause);
  const auto place = text.find(L'%');
  return place == std::wstring::npos ? text : text.replace(place, 1, reason);
}

/// By the words of SQLite's parser.
TextFault fault_in(std::wstring_view reason) {
  constexpr std::wstring_view kColumn = L"no such column: ";
  constexpr std::wstring_view kNear = L"near \"";
  TextFault fault;
  if (reason.starts_with(kColumn)) fault.missing_column = reason.substr(kColumn.size());
  if (reason.starts_with(kNear)) {
    reason.remove_prefix(kNear.size());
    fault.last_word = reason.substr(0, reason.find(L'"'));
  }
  return fault;
}

}  // namespace

void fail_as_sqlite(const SqliteFailure& failure) {
  if ((failure.result & 0xFF) == SQLITE_NOMEM) throw std::bad_alloc();
  const Answer& answer = answer_to(failure.result);
  std::wstring clause = with_reason(answer.clause, failure.reason);
  if (answer.subject == Subject::kFile) {
    fail(answer.result, L"The model database " + quoted(failure.path) + clause);
  }
  fail_on_text(answer.result, L"The statement " + quoted(failure.sql), std::move(clause),
               fault_in(failure.reason));
}

}  // namespace modeldb
