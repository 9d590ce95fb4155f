#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <string_view>

#include "bench/model.h"

namespace bench {

/// SQLite used directly, without any objects, under the settings of the model database.
class RawDatabase {
 public:
  /// Opens the file of a model; throws com::Error when SQLite refuses anything here or below.
  explicit RawDatabase(const ScratchFile& file);

  /// Compiles the text, reads all columns of all its rows, and forgets it again.
  void run(std::string_view sql);

  [[nodiscard]] sqlite3* handle() const { return handle_.get(); }

 private:
  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close(handle); }
  };
  std::unique_ptr<sqlite3, Close> handle_;
};

/// A statement that is compiled once.
class RawStatement {
 public:
  RawStatement(const RawDatabase& database, std::string_view sql);

  /// Runs it with the values as its parameters, reading all columns of all rows.
  template <class... Values>
  void run(const Values&... values) {
    int parameter = 0;
    (bind(++parameter, values), ...);
    run_bound();
  }

 private:
  void bind(int parameter, long value) { sqlite3_bind_int(get(), parameter, value); }
  void bind(int parameter, double value) { sqlite3_bind_double(get(), parameter, value); }
  void bind(int parameter, std::wstring_view value) {
    sqlite3_bind_text16(get(), parameter, value.data(),
                        static_cast<int>(value.size() * sizeof(wchar_t)), SQLITE_STATIC);
  }
  void run_bound();

  [[nodiscard]] sqlite3_stmt* get() const { return statement_.get(); }

  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

}  // namespace bench
