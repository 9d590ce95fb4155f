#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

#include "tests/modeldb/model_test.h"

namespace model_test {

/// Another program, which writes the file of a model without knowing of its history.
class OtherProgram {
 public:
  explicit OtherProgram(const std::wstring& path) {
    EXPECT_EQ(sqlite3_open16(path.c_str(), &handle_), SQLITE_OK);
    sqlite3_busy_timeout(handle_, 5000);
  }
  OtherProgram(const OtherProgram&) = delete;
  ~OtherProgram() { sqlite3_close(handle_); }

  void run(const char* sql) const {
    EXPECT_EQ(sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr), SQLITE_OK)
        << sql << ": " << sqlite3_errmsg(handle_);
  }

  /// Every row of every table of the model, bit by bit, with SQLite's numbers of rows; the history
  /// itself left out.
  [[nodiscard]] std::string all_rows() const {
    std::string rows;
    for (const std::string& table : tables()) {
      const bool is_numbered = table != "OtherWithout";
      rows += dump("SELECT " + std::string(is_numbered ? "rowid, " : "") + "* FROM \"" + table +
                       "\" ORDER BY 1",
                   table + ": ");
    }
    return rows;
  }

 private:
  [[nodiscard]] std::vector<std::string> tables() const {
    std::vector<std::string> names;
    sqlite3_stmt* rows = nullptr;
    sqlite3_prepare_v2(handle_,
                       "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE "
                       "'orv\\_%' ESCAPE '\\' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY "
                       "name",
                       -1, &rows, nullptr);
    while (sqlite3_step(rows) == SQLITE_ROW) {
      names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(rows, 0)));
    }
    sqlite3_finalize(rows);
    return names;
  }

  [[nodiscard]] std::string dump(const std::string& sql, const std::string& begin) const {
    std::string text;
    sqlite3_stmt* rows = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(handle_, sql.c_str(), -1, &rows, nullptr), SQLITE_OK) << sql;
    while (sqlite3_step(rows) == SQLITE_ROW) {
      text += begin;
      for (int i = 0; i < sqlite3_column_count(rows); ++i) append_value(text, rows, i);
      text += '\n';
    }
    sqlite3_finalize(rows);
    return text;
  }

  static void append_value(std::string& text, sqlite3_stmt* rows, int column) {
    const int type = sqlite3_column_type(rows, column);
    text += std::to_string(type) + ':';
    if (type == SQLITE_FLOAT) {
      const double value = sqlite3_column_double(rows, column);
      text += std::string(reinterpret_cast<const char*>(&value), sizeof value);
    } else if (type == SQLITE_INTEGER) {
      text += std::to_string(sqlite3_column_int64(rows, column));
    } else if (type != SQLITE_NULL) {
      const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(rows, column));
      text.append(bytes ? bytes : "", sqlite3_column_bytes(rows, column));
    }
    text += '|';
  }

  sqlite3* handle_ = nullptr;
};

/// A model whose steps are undone and redone.
class HistoryTest : public ModelTest {
 protected:
  com::Ptr<IHistory> history() {
    com::Ptr<IHistory> history;
    EXPECT_EQ(database->get_History(history.put()), S_OK) << last_sentence();
    return history;
  }
  long next_number() {
    long number = 0;
    EXPECT_EQ(history()->get_NextNumber(&number), S_OK) << last_sentence();
    return number;
  }
  long steps() {
    long count = -1;
    history()->get_Count(&count);
    return count;
  }
  com::Ptr<IHistoryStep> step(int index) {
    com::Ptr<IHistoryStep> step;
    EXPECT_EQ(history()->Item(index, step.put()), S_OK);
    return step;
  }
  std::string name_of_step(int index) {
    com::Bstr name;
    step(index)->get_Name(name.put());
    return narrow(name.view());
  }
  std::string note() {
    com::Bstr note;
    history()->get_Note(note.put());
    return narrow(note.view());
  }
  HRESULT undo() { return database->Undo(com::Variant::omitted()); }
  HRESULT undo(long number) { return database->Undo(com::Variant(number)); }
  HRESULT redo() { return database->Redo(com::Variant::omitted()); }
  HRESULT redo(long number) { return database->Redo(com::Variant(number)); }
  std::string all_rows() { return OtherProgram(file.path()).all_rows(); }
};

}  // namespace model_test
