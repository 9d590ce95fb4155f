#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace modeldb {

/// A value of a row that was kept as bytes. Text and blob refer to these bytes; text is UTF-8.
struct RowValue {
  enum class Type : char { kNull, kInteger, kReal, kText, kBlob, kSame };

  Type type = Type::kNull;
  std::int64_t integer = 0;
  double real = 0;
  std::string_view bytes = {};

  [[nodiscard]] bool is_number() const { return type == Type::kInteger || type == Type::kReal; }
};

// Numbers as bytes, in groups of seven bits, the lowest first; the top bit of a byte says that one
// more follows. Those with a sign go alternately: 0, -1, 1, -2, ...
void append_count(std::string& out, std::uint64_t number);
void append_integer(std::string& out, std::int64_t number);
/// A type, and what the type needs: an integer, the eight bytes of a double as this processor has
/// them, or a length and as many bytes.
void append_value(std::string& out, const RowValue& value);

/// Reads them again. Raises kCannotReadFile where the bytes are none that were written so.
class RowBytes {
 public:
  explicit RowBytes(std::string_view bytes) : rest_(bytes) {}

  [[nodiscard]] bool empty() const { return rest_.empty(); }
  char letter();
  std::uint64_t count();
  std::int64_t integer();
  RowValue value();
  std::string_view bytes(std::uint64_t size);

 private:
  std::string_view rest_;
};

}  // namespace modeldb
