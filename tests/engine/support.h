#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>

#include "com/bstr.h"
#include "com/error.h"
#include "modeldb/sqlite/sqlite_engine.h"
#include "tests/engine/temporary_file.h"

namespace modeldb {

/// A failure as a script would see it.
struct Failure {
  HRESULT result = S_OK;
  std::wstring sentence;
};

inline std::wstring description_of(const com::Ptr<IErrorInfo>& info) {
  com::Bstr text;
  if (info) info->GetDescription(text.put());
  return std::wstring(text.view());
}

/// How `action` fails; S_OK when it does not.
template <class Action>
Failure failure_of(Action&& action) {
  try {
    action();
    return {};
  } catch (const com::Error& error) {
    return {error.result(), description_of(error.info())};
  }
}

/// The sentence that came with the failing result of an interface member.
inline std::wstring last_sentence() {
  com::Ptr<IErrorInfo> info;
  GetErrorInfo(0, info.put());
  return description_of(info);
}

/// A database with a table of forces, the link table of their load sets, and one of the database's
/// own tables.
class WithDatabase : public testing::Test {
 protected:
  WithDatabase() : database_(open_file(file_.path())) {
    database_->execute(
        L"CREATE TABLE Forces (ForceID INTEGER PRIMARY KEY, Description TEXT, Magnitude REAL)");
    database_->execute(L"CREATE TABLE ForceLoadSets (LoadSetID INTEGER, ForceID INTEGER)");
    database_->execute(L"CREATE TABLE orv_history (Entry TEXT)");
    database_->execute(L"INSERT INTO orv_history VALUES ('secret')");
  }
  ~WithDatabase() override { database_->close(); }

  std::int64_t count(std::wstring_view table) {
    const auto rows = database_->query(L"SELECT count(*) FROM " + std::wstring(table));
    return rows->step() ? rows->integer(0) : -1;
  }

  std::int64_t write(std::wstring_view text) {
    return database_->execute_text(text, Trust::kWrite).changed_rows;
  }

  model_test::TemporaryFile file_;
  std::shared_ptr<Database> database_;
};

}  // namespace modeldb
