#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace modeldb {

/// A value of a row that was kept as bytes. Text and blob refer to these bytes; text is UTF-8.
struct RowValue {
  enum class Type : char {
    kNull,
    kInteger,
    kReal,
    kText,
    kBlob,
    kSame,  ///< as in another row, which is known
    kKey    ///< the number of the row
  };

  Type type = Type::kNull;
  std::int64_t integer = 0;
  double real = 0;
  std::string_view bytes = {};

  [[nodiscard]] bool is_number() const { return type == Type::kInteger || type == Type::kReal; }
};

/// Writes rows at the end of a string, by way of a buffer: most of what a row has takes a few bytes
/// each.
///
/// Numbers are written in groups of seven bits, the lowest first; the top bit of a byte says that
/// one more follows. Those with a sign go alternately: 0, -1, 1, -2, ... A value is a letter for
/// its type, and what the type needs: an integer, the eight bytes of a double as this processor has
/// them, or a length and as many bytes.
class RowWriter {
 public:
  explicit RowWriter(std::string& out) : out_(out) {}

  void letter(char letter);
  void count(std::uint64_t number);
  void integer(std::int64_t number);
  void value(const RowValue& value);
  /// To be called at the end.
  void flush();

 private:
  void make_room(std::size_t size);
  void put(char letter) { *end_++ = letter; }
  void put_count(std::uint64_t number);
  void put_integer(std::int64_t number);
  void put_real(double real);
  void put_bytes(char letter, std::string_view bytes);

  std::string& out_;
  char buffer_[512];
  char* end_ = buffer_;
};

/// Reads them again, or fails as damaged.
class RowBytes {
 public:
  explicit RowBytes(std::string_view bytes) : rest_(bytes) {}

  [[nodiscard]] bool empty() const { return rest_.empty(); }
  [[nodiscard]] std::string_view rest() const { return rest_; }
  char letter();
  std::uint64_t count();
  std::int64_t integer();
  RowValue value();
  std::string_view bytes(std::uint64_t size);

 private:
  std::string_view rest_;
};

}  // namespace modeldb
