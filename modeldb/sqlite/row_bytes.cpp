#include "modeldb/sqlite/row_bytes.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

#include "modeldb/engine/engine.h"

namespace modeldb {
namespace {

constexpr unsigned kGroup = 7;
constexpr std::uint64_t kMore = 1U << kGroup;

/// Types as they are written. A whole number in a column of real ones takes few bytes so.
enum class Tag : char {
  kNull = 'n',
  kInteger = 'i',
  kReal = 'r',
  kWholeReal = 'w',
  kText = 't',
  kBlob = 'b',
  kSame = 's',
  kKey = 'k'
};

/// The most bytes of a letter and a number.
constexpr std::size_t kLongest = 11;

std::uint64_t folded_sign(std::int64_t number) {
  return (static_cast<std::uint64_t>(number) << 1) ^ static_cast<std::uint64_t>(number >> 63);
}

std::int64_t unfolded_sign(std::uint64_t number) {
  return static_cast<std::int64_t>(number >> 1) ^ -static_cast<std::int64_t>(number & 1);
}

/// Whether it is a small whole number, and not the negative zero.
bool is_whole(double real) {
  constexpr double kLargest = 1e6;
  return std::abs(real) <= kLargest &&
         real == static_cast<double>(static_cast<std::int64_t>(real)) &&
         !(real == 0 && std::signbit(real));
}

}  // namespace

void RowWriter::make_room(std::size_t size) {
  if (static_cast<std::size_t>(std::end(buffer_) - end_) < size) flush();
}

void RowWriter::flush() {
  out_.append(buffer_, end_);
  end_ = buffer_;
}

void RowWriter::put_count(std::uint64_t number) {
  for (; number >= kMore; number >>= kGroup) put(static_cast<char>(number % kMore | kMore));
  put(static_cast<char>(number));
}

void RowWriter::put_integer(std::int64_t number) { put_count(folded_sign(number)); }

void RowWriter::put_real(double real) {
  if (is_whole(real)) {
    put(static_cast<char>(Tag::kWholeReal));
    return put_integer(static_cast<std::int64_t>(real));
  }
  put(static_cast<char>(Tag::kReal));
  std::memcpy(end_, &real, sizeof real);
  end_ += sizeof real;
}

void RowWriter::put_bytes(char letter, std::string_view bytes) {
  put(letter);
  put_count(bytes.size());
  make_room(bytes.size());
  if (bytes.size() > sizeof buffer_) {
    out_ += bytes;
  } else {
    end_ = std::ranges::copy(bytes, end_).out;
  }
}

void RowWriter::letter(char letter) {
  make_room(kLongest);
  put(letter);
}

void RowWriter::count(std::uint64_t number) {
  make_room(kLongest);
  put_count(number);
}

void RowWriter::integer(std::int64_t number) {
  make_room(kLongest);
  put_integer(number);
}

void RowWriter::value(const RowValue& value) {
  make_room(kLongest);
  switch (value.type) {
    case RowValue::Type::kNull:
      return put(static_cast<char>(Tag::kNull));
    case RowValue::Type::kInteger:
      put(static_cast<char>(Tag::kInteger));
      return put_integer(value.integer);
    case RowValue::Type::kReal:
      return put_real(value.real);
    case RowValue::Type::kText:
      return put_bytes(static_cast<char>(Tag::kText), value.bytes);
    case RowValue::Type::kBlob:
      return put_bytes(static_cast<char>(Tag::kBlob), value.bytes);
    case RowValue::Type::kSame:
      return put(static_cast<char>(Tag::kSame));
    case RowValue::Type::kKey:
      return put(static_cast<char>(Tag::kKey));
  }
}

char RowBytes::letter() { return bytes(1).front(); }

std::uint64_t RowBytes::count() {
  std::uint64_t number = 0;
  for (unsigned shift = 0; shift < 64; shift += kGroup) {
    const auto group = static_cast<unsigned char>(letter());
    number |= (group % kMore) << shift;
    if (group < kMore) return number;
  }
  fail_as_damaged_history();
}

std::int64_t RowBytes::integer() { return unfolded_sign(count()); }

RowValue RowBytes::value() {
  using enum RowValue::Type;
  switch (static_cast<Tag>(letter())) {
    case Tag::kNull:
      return {.type = kNull};
    case Tag::kInteger:
      return {.type = kInteger, .integer = integer()};
    case Tag::kWholeReal:
      return {.type = kReal, .real = static_cast<double>(integer())};
    case Tag::kReal: {
      RowValue value{.type = kReal};
      std::memcpy(&value.real, bytes(sizeof value.real).data(), sizeof value.real);
      return value;
    }
    case Tag::kText:
      return {.type = kText, .bytes = bytes(count())};
    case Tag::kBlob:
      return {.type = kBlob, .bytes = bytes(count())};
    case Tag::kSame:
      return {.type = kSame};
    case Tag::kKey:
      return {.type = kKey};
  }
  fail_as_damaged_history();
}

std::string_view RowBytes::bytes(std::uint64_t size) {
  if (size > rest_.size()) fail_as_damaged_history();
  const auto result = rest_.substr(0, static_cast<std::size_t>(size));
  rest_.remove_prefix(static_cast<std::size_t>(size));
  return result;
}

}  // namespace modeldb
