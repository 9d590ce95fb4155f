#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "com/bstr.h"
#include "modeldb/schema/table.h"

namespace modeldb {

/// The row of one of the model's own objects: its description and, for a vertex, its coordinates,
/// each as it is now and as it was last stored.
///
/// It knows of every value where it came from. A client often names an object by its ID alone, such
/// as the vertex of a load; saving that must not overwrite what is stored with values that nobody
/// gave. So before the row is written, each value that was not put is taken from the stored row.
class RowImage {
  // A model has as many of these as it has records: an empty text takes no memory, and where the
  // values came from stands apart from them, in a byte each.
  class Text {
   public:
    Text() = default;
    explicit Text(std::wstring_view text) : text_(text.empty() ? com::Bstr() : com::Bstr(text)) {}

    [[nodiscard]] std::wstring_view view() const { return text_.view(); }
    operator std::wstring_view() const { return view(); }
    bool operator==(const Text& other) const { return view() == other.view(); }
    bool operator==(std::wstring_view other) const { return view() == other; }

   private:
    com::Bstr text_;
  };

  enum class Origin : std::uint8_t { kNone, kStored, kPut };

  static constexpr std::size_t kMostNumbers = 3;

 public:
  explicit RowImage(const Table& table) : table_(table) {}

  [[nodiscard]] std::wstring_view description() const { return description_.current.view(); }
  void put_description(std::wstring_view text) { put(description_, 0, Text(text)); }
  [[nodiscard]] std::wstring_view stored_description() const { return description_.saved.view(); }
  [[nodiscard]] double number(std::size_t index) const { return numbers_[index].current; }
  void put_number(std::size_t index, double value) { put(numbers_[index], index + 1, value); }

  // Values read from a stored row.
  void store_description(std::wstring_view text) { store(description_, 0, Text(text)); }
  void store_number(std::size_t index, double value) { store(numbers_[index], index + 1, value); }

  /// Nothing is known of the row any more.
  void forget();

  /// The object now stands for another row, or for a new one (`is_new`): a new row begins with the
  /// values of the old, another row has values of its own.
  void change_row(bool is_new);

  /// Takes the values that were not put from the stored row. Returns whether the row then says all
  /// that the object does, so that there is nothing to write.
  bool complete(const Statement& row);
  /// Whether the row says what was last stored.
  [[nodiscard]] bool was_stored_as(const Statement& row) const;
  /// Everything is stored as it is now.
  void commit();

  /// What commit() and complete() change of it.
  class Before {
    friend RowImage;
    Text description_;
    std::array<double, kMostNumbers> numbers_{};
    std::array<Origin, 1 + kMostNumbers> origins_{};
  };
  [[nodiscard]] Before before() const;
  /// What was stored since `before` is not: the values stay, but those that were put count as put
  /// again.
  void take_back(const Before& before);

  /// A value for each column, in their order. Texts are valid until the next change. Throws
  /// NoNumber of a number that is not finite.
  void append_values(std::vector<Literal>& out) const;

  /// What SqlString answers.
  [[nodiscard]] com::Bstr text(long code) const;

 private:
  template <class T>
  struct Value {
    T current{};
    T saved{};
  };

  template <class T>
  void put(Value<T>& value, std::size_t column, T put) {
    value.current = std::move(put);
    origins_[column] = Origin::kPut;
  }
  template <class T>
  void store(Value<T>& value, std::size_t column, T stored) {
    value.saved = value.current = std::move(stored);
    origins_[column] = Origin::kStored;
  }
  template <class T, class Stored>
  bool complete(Value<T>& value, std::size_t column, Stored stored);
  /// As the others, of a column that holds NULL.
  bool complete_unknown(std::size_t column);

  /// Whether anything was put or stored in the numbers: the coordinates of a vertex that is named
  /// by its ID alone are not known, those of one with a single coordinate are, the others being 0.
  [[nodiscard]] bool has_numbers() const;

  // What the row says of a value in its column.
  static std::wstring_view stored(const Statement& row, const Value<Text>& value,
                                  std::size_t column);
  static double stored(const Statement& row, const Value<double>& value, std::size_t column);

  /// Calls `visit` with every value and its column, the description's 0.
  template <class Self, class Visit>
  static void for_each(Self& self, Visit visit) {
    visit(self.description_, std::size_t{0});
    for (std::size_t column = 1; column < self.table_.kind().columns.size(); ++column) {
      visit(self.numbers_[column - 1], column);
    }
  }

  template <class Pick>
  [[nodiscard]] std::wstring values(Pick pick) const;
  template <class Pick>
  [[nodiscard]] std::wstring assignments(Pick pick) const;

  const Table& table_;
  Value<Text> description_;
  std::array<Value<double>, kMostNumbers> numbers_;
  std::array<Origin, 1 + kMostNumbers> origins_{};
};

}  // namespace modeldb
