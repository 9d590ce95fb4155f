#include "modeldb/ado/execution.h"

#include <string>

#include "modeldb/ado/recordset.h"
#include "modeldb/base/failure.h"
#include "modeldb/engine/tokeniser.h"

namespace modeldb {
namespace {

constexpr LONG kCommandTypes =
    adCmdText | adCmdTable | adCmdStoredProc | adCmdUnknown | adCmdFile | adCmdTableDirect;

bool is_single_name(std::wstring_view text) {
  Tokeniser tokens(text);
  return tokens.next().kind == TokenKind::kName && tokens.next().kind == TokenKind::kEnd;
}

/// "BEGIN" and the like are single names, too.
bool is_transaction(std::wstring_view text) {
  const Token word = Tokeniser(text).next();
  return word.keyword == Keyword::kBegin || word.keyword == Keyword::kCommit ||
         word.keyword == Keyword::kRollback;
}

bool names_table(std::wstring_view text, LONG options) {
  switch (options & kCommandTypes) {
    case adCmdText:
      return false;
    case adCmdTable:
    case adCmdTableDirect:
      return true;
    case 0:
    case adCmdUnknown:
      return is_single_name(text) && !is_transaction(text);
    default:
      fail(kFeatureNotAvailable, L"The options " + std::to_wstring(options) +
                                     L" are not available in a model database. Execute the text "
                                     L"of a statement (adCmdText, 1).");
  }
}

std::wstring select_from(std::wstring_view table) {
  std::wstring text = L"SELECT * FROM \"";
  for (const wchar_t letter : table) text.append(letter == L'"' ? 2 : 1, letter);
  return text += L'"';
}

}  // namespace

TextResult run_text(Database& database, std::wstring_view text, LONG options, Seconds time_limit) {
  if (options == adOptionUnspecified) options = adCmdUnknown;
  if (options & ~(kCommandTypes | adExecuteNoRecords)) {
    fail(kFeatureNotAvailable,
         L"Asynchronous work and streams are not available in a model "
         L"database. Leave the options out.");
  }
  if (names_table(text, options)) {
    return database.texts().execute(select_from(text), Trust::kWrite, time_limit);
  }
  return database.texts().execute(text, Trust::kWrite, time_limit);
}

void execute(Database& database, std::wstring_view text, VARIANT* affected, LONG options,
             Seconds time_limit, _Recordset** out) {
  if (out) *out = nullptr;
  TextResult result = run_text(database, text, options, time_limit);
  if (affected) {
    VariantClear(affected);
    affected->vt = VT_I4;
    affected->lVal = static_cast<LONG>(result.changed_rows);
  }
  const bool wants_records = options == adOptionUnspecified || !(options & adExecuteNoRecords);
  if (out && wants_records) {
    *out = make_recordset(database, std::move(result.query), text).detach();
  }
}

Seconds time_limit(LONG seconds) {
  if (seconds >= 0) return seconds;
  fail(kInvalidArgument, L"CommandTimeout cannot be " + std::to_wstring(seconds) +
                             L". Give it a number of seconds, or 0 for no limit.");
}

}  // namespace modeldb
