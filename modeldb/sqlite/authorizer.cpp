#include "modeldb/sqlite/authorizer.h"

#include <sqlite3.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "modeldb/base/ascii.h"
#include "modeldb/sqlite/utf8.h"

namespace modeldb {
namespace {

/// Functions that compute something from their arguments and do nothing else.
constexpr std::string_view kFunctions =
    " abs acos asin atan atan2 avg ceil ceiling char coalesce cos cosh count cume_dist current_date"
    " current_time current_timestamp date datetime degrees dense_rank exp first_value floor format"
    " glob group_concat hex ifnull iif instr julianday lag last_value lead length like ln log log10"
    " log2 lower ltrim max min mod nth_value ntile nullif percent_rank pi pow power printf quote"
    " radians rank replace round row_number rtrim sign sin sinh sqrt strftime substr substring sum"
    " tan tanh time total trim trunc typeof unicode upper ";

bool is_harmless_function(const char* name) {
  std::string word = " " + std::string(name) + " ";
  std::ranges::transform(word, word.begin(),
                         [](char c) { return static_cast<char>(folded(static_cast<wchar_t>(c))); });
  return kFunctions.find(word) != std::string_view::npos;
}

/// Tables, as against SQLite's own.
bool may_be_read(const std::wstring& table) {
  return !has_prefix(table, L"sqlite_") && !has_prefix(table, L"pragma_");
}

/// Tables of the model, as against the model database's own.
bool is_of_the_model(const std::wstring& table) {
  return may_be_read(table) && !has_prefix(table, L"orv_");
}

std::wstring wide(const char* text) { return from_utf8(text ? text : ""); }

/// What an action does, for the sentence "The statement would ...".
std::wstring description_of(int action, const char* first, const char* second) {
  const bool is_of_table = action == SQLITE_READ || action == SQLITE_INSERT ||
                           action == SQLITE_UPDATE || action == SQLITE_DELETE;
  // A setting that is read as a table, such as pragma_table_info, declares it first.
  if (is_of_table && !may_be_read(wide(first))) return L"use what SQLite keeps for itself";
  switch (action) {
    case SQLITE_READ:
      return L"read the table " + wide(first);
    case SQLITE_INSERT:
      return L"insert into the table " + wide(first);
    case SQLITE_UPDATE:
      return L"update the table " + wide(first);
    case SQLITE_DELETE:
      return L"delete from the table " + wide(first);
    case SQLITE_FUNCTION:
      return L"call the function " + wide(second);
    case SQLITE_RECURSIVE:
      return L"run a recursive query, which might have no end";
    case SQLITE_PRAGMA:
      return L"use the setting " + wide(first);
    case SQLITE_ATTACH:
    case SQLITE_DETACH:
      return L"attach or detach another database";
    case SQLITE_TRANSACTION:
    case SQLITE_SAVEPOINT:
      return L"begin or end a transaction";
    default:
      return L"change the schema";
  }
}

}  // namespace

void Authorizer::install(sqlite3* handle) { sqlite3_set_authorizer(handle, &decide, this); }

int Authorizer::decide(void* self, int action, const char* first, const char* second, const char*,
                       const char* trigger) {
  auto& authorizer = *static_cast<Authorizer*>(self);
  if (authorizer.is_replaying_ && trigger && action == SQLITE_READ) return SQLITE_IGNORE;
  try {
    if (authorizer.allows(action, first, second)) return SQLITE_OK;
    authorizer.refused_ = description_of(action, first, second);
  } catch (...) {
    authorizer.lacked_memory_ = true;
  }
  return SQLITE_DENY;
}

bool Authorizer::allows(int action, const char* first, const char* second) {
  if (trust_ == Trust::kHost) return true;
  switch (action) {
    case SQLITE_SELECT:
      return true;
    case SQLITE_READ:
      return may_be_read(wide(first));
    case SQLITE_FUNCTION:
      return is_harmless_function(second);
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
      return trust_ == Trust::kWrite && is_of_the_model(wide(first));
    default:
      return false;
  }
}

}  // namespace modeldb
