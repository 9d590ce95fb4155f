#include "modeldb/sqlite/row_bytes.h"

#include <bit>
#include <cmath>
#include <cstring>

#include "modeldb/base/failure.h"

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
  kSame = 's'
};

[[noreturn]] void fail_as_damaged() {
  fail(kCannotReadFile,
       L"The history of the model is damaged. Clear it (History.Clear) to go on without what can "
       L"be undone, or take a copy of the file that was saved earlier.");
}

std::uint64_t folded_sign(std::int64_t number) {
  return (static_cast<std::uint64_t>(number) << 1) ^ static_cast<std::uint64_t>(number >> 63);
}

std::int64_t unfolded_sign(std::uint64_t number) {
  return static_cast<std::int64_t>(number >> 1) ^ -static_cast<std::int64_t>(number & 1);
}

/// Whether it is a small whole number, and not the negative zero.
bool is_whole(double real) {
  constexpr double kLargest = 1e6;
  return std::abs(real) <= kLargest && real == std::trunc(real) &&
         !(real == 0 && std::signbit(real));
}

void append(std::string& out, Tag tag) { out += static_cast<char>(tag); }

void append_real(std::string& out, double real) {
  if (is_whole(real)) {
    append(out, Tag::kWholeReal);
    return append_integer(out, static_cast<std::int64_t>(real));
  }
  append(out, Tag::kReal);
  char bytes[sizeof real];
  std::memcpy(bytes, &real, sizeof real);
  out.append(bytes, sizeof bytes);
}

void append_bytes(std::string& out, Tag tag, std::string_view bytes) {
  append(out, tag);
  append_count(out, bytes.size());
  out += bytes;
}

}  // namespace

void append_count(std::string& out, std::uint64_t number) {
  for (; number >= kMore; number >>= kGroup) {
    out += static_cast<char>(number % kMore | kMore);
  }
  out += static_cast<char>(number);
}

void append_integer(std::string& out, std::int64_t number) {
  append_count(out, folded_sign(number));
}

void append_value(std::string& out, const RowValue& value) {
  switch (value.type) {
    case RowValue::Type::kNull:
      return append(out, Tag::kNull);
    case RowValue::Type::kInteger:
      append(out, Tag::kInteger);
      return append_integer(out, value.integer);
    case RowValue::Type::kReal:
      return append_real(out, value.real);
    case RowValue::Type::kText:
      return append_bytes(out, Tag::kText, value.bytes);
    case RowValue::Type::kBlob:
      return append_bytes(out, Tag::kBlob, value.bytes);
    case RowValue::Type::kSame:
      return append(out, Tag::kSame);
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
  fail_as_damaged();
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
  }
  fail_as_damaged();
}

std::string_view RowBytes::bytes(std::uint64_t size) {
  if (size > rest_.size()) fail_as_damaged();
  const auto result = rest_.substr(0, static_cast<std::size_t>(size));
  rest_.remove_prefix(static_cast<std::size_t>(size));
  return result;
}

}  // namespace modeldb
