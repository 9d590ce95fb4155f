#pragma once

#include <fstream>
#include <string>
#include <vector>

namespace orv {

/// Reads comma-separated values row by row, as RFC 4180 has them and as spreadsheets write them:
/// semicolons in the place of the commas when the first row has them, any line ends, a mark of
/// UTF-8 at the beginning.
class CsvReader {
 public:
  /// Raises, with a sentence, when the file cannot be read.
  explicit CsvReader(const std::string& path);

  /// The fields of the next row that is not blank; false at the end of the file. Raises, with a
  /// sentence, a quotation mark that is not closed, and a text that is not in UTF-8.
  bool next(std::vector<std::string>& fields);
  /// The number of that row, from 1, as a spreadsheet counts.
  [[nodiscard]] long row() const { return row_; }
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  [[nodiscard]] int peek() { return buffer_->sgetc(); }
  int get() { return buffer_->sbumpc(); }
  void skip_mark();
  void choose_separator();
  std::string quoted_field();
  std::string plain_field();
  bool ends_row();
  /// Raises, with a sentence, when the last of the fields is no text in UTF-8.
  void require_utf8(const std::vector<std::string>& fields) const;

  std::string path_;
  std::ifstream stream_;
  std::streambuf* buffer_;
  char separator_ = ',';
  long row_ = 0;
};

}  // namespace orv
