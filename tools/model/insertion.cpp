#include "tools/model/insertion.h"

#include <charconv>
#include <cmath>

#include "tools/text/failure.h"

namespace model {
namespace {

template <class Number>
std::string digits_of(Number number) {
  char digits[32];
  return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

}  // namespace

std::string literal(double number) {
  if (!std::isfinite(number)) {
    text::fail(text::kInvalidArgument,
               "A model holds finite numbers only; one that was to be written is not. Correct it "
               "where it comes from.");
  }
  return digits_of(number);
}

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
  sql_ += digits_of(number);
}

void Insertion::add(double number) {
  separate();
  sql_ += literal(number);
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
