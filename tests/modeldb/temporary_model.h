#pragma once

#include <string>

#include "tests/engine/temporary_file.h"

namespace model_test {

/// Where a test has a model of its own: in a temporary file or, with ORV_TEST_SERVER in the
/// environment (tests/odbc/with_postgres), in a new database on that server.
class TemporaryModel : public TemporaryFile {
 public:
  TemporaryModel();

  /// What ModelDatabase.Open is given.
  [[nodiscard]] std::wstring path() const {
    return on_server_.empty() ? TemporaryFile::path() : on_server_;
  }

 private:
  std::wstring on_server_;
};

}  // namespace model_test
