#include "tools/orv/csv_reader.h"

#include <algorithm>

#include "tools/content/file_trouble.h"
#include "tools/content/utf8.h"
#include "tools/text/failure.h"
#include "tools/text/file.h"

namespace orv {
namespace {

constexpr int kEnd = std::char_traits<char>::eof();

}  // namespace

CsvReader::CsvReader(const std::string& path)
    : path_(path), stream_(text::path_of(path), std::ios::binary), buffer_(stream_.rdbuf()) {
  if (!stream_) {
    text::fail(text::kCannotReadFile, content::why_not_read(text::path_of(path)));
  }
  skip_mark();
  choose_separator();
}

void CsvReader::skip_mark() {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  for (const char byte : kMark) {
    if (peek() != std::char_traits<char>::to_int_type(byte)) {
      buffer_->pubseekpos(0);
      return;
    }
    get();
  }
}

void CsvReader::choose_separator() {
  const auto start = buffer_->pubseekoff(0, std::ios::cur);
  std::string header;
  std::getline(stream_, header);
  stream_.clear();
  buffer_->pubseekpos(start);
  if (std::ranges::count(header, ';') > std::ranges::count(header, ',')) separator_ = ';';
}

std::string CsvReader::quoted_field() {
  std::string field;
  for (get();;) {
    const int c = get();
    if (c == kEnd) {
      text::fail(text::kInvalidArgument,
                 path_ + ", row " + std::to_string(row_) + ": a quotation mark is not closed.");
    }
    if (c == '"') {
      if (peek() != '"') return field;
      get();
    }
    field += static_cast<char>(c);
  }
}

std::string CsvReader::plain_field() {
  std::string field;
  for (int c = peek(); c != kEnd && c != separator_ && c != '\n' && c != '\r'; c = peek()) {
    field += static_cast<char>(get());
  }
  return field;
}

/// Passes over what stands behind a field.
bool CsvReader::ends_row() {
  const int c = get();
  if (c == '\r' && peek() == '\n') get();
  return c == '\n' || c == '\r' || c == kEnd;
}

void CsvReader::require_utf8(const std::vector<std::string>& fields) const {
  if (content::is_utf8(fields.back())) return;
  text::fail(text::kInvalidArgument,
             path_ + ", row " + std::to_string(row_) + ", field " + std::to_string(fields.size()) +
                 ": the text is not in UTF-8. Save the file as UTF-8 (in a spreadsheet: \"CSV "
                 "UTF-8\").");
}

bool CsvReader::next(std::vector<std::string>& fields) {
  while (peek() != kEnd) {
    fields.clear();
    ++row_;
    do {
      std::string field = peek() == '"' ? quoted_field() : std::string();
      field += plain_field();
      fields.push_back(std::move(field));
      require_utf8(fields);
    } while (!ends_row());
    if (std::ranges::any_of(fields, [](const std::string& field) { return !field.empty(); })) {
      return true;
    }
  }
  return false;
}

}  // namespace orv
