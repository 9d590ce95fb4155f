#include "tools/model/insertion.h"

#include <charconv>
#include <cmath>

#include "tools/text/failure.h"

namespace model {
namespace {

template <class Number>
void append(std::string& sql, Number number) {
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  sql.append(digits, end);
}

}  // namespace

Insertion::Insertion(Database& database, std::string_view table, std::string_view columns)
    : database_(database),
      head_("INSERT INTO " + std::string(table) + " (" + std::string(columns) + ") VALUES ") {}

bool Insertion::is_full() const {
  // Enough to make a statement's own cost count for little.
  constexpr int kRowsAtOnce = 250;
  return rows_ == kRowsAtOnce;
}

void Insertion::begin_row() {
  if (is_full()) finish();
  if (rows_ == 0) {
    sql_ = head_ + "(";
  } else {
    sql_ += "), (";
  }
  ++rows_;
  at_row_start_ = true;
}

void Insertion::separate() {
  if (!at_row_start_) sql_ += ", ";
  at_row_start_ = false;
}

void Insertion::add(long number) {
  separate();
  append(sql_, number);
}

void Insertion::add(double number) {
  separate();
  if (!std::isfinite(number)) {
    text::fail(text::kInvalidArgument, "A model holds finite numbers only; one of " +
                                           head_.substr(12, 24) +
                                           "... is not. Correct it where it comes from.");
  }
  append(sql_, number);
  // An integer would lose the sign of zero.
  if (number == 0 && std::signbit(number)) sql_ += ".0";
}

void Insertion::add(std::string_view text) {
  separate();
  sql_ += '\'';
  for (const char c : text) {
    if (c == '\'') sql_ += '\'';
    sql_ += c;
  }
  sql_ += '\'';
}

void Insertion::finish() {
  if (rows_ == 0) return;
  sql_ += ')';
  database_.execute(sql_);
  rows_ = 0;
}

}  // namespace model
