#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

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
 public:
  explicit RowImage(const Table& table) : table_(table) {}

  [[nodiscard]] const std::wstring& description() const { return description_.current; }
  void put_description(std::wstring_view text) { description_.put(std::wstring(text)); }
  [[nodiscard]] const std::wstring& stored_description() const { return description_.saved; }
  [[nodiscard]] double number(std::size_t index) const { return numbers_[index].current; }
  void put_number(std::size_t index, double value) { numbers_[index].put(value); }

  // Values read from a stored row.
  void store_description(std::wstring_view text) { description_.store(std::wstring(text)); }
  void store_number(std::size_t index, double value) { numbers_[index].store(value); }

  /// Nothing is known of the row any more.
  void forget() {
    description_ = {};
    numbers_ = {};
  }

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
  /// What was stored since `before` is not: the values stay, but those that were put count as put
  /// again.
  void take_back(const RowImage& before);

  /// What SqlString answers.
  [[nodiscard]] com::Bstr text(long code) const;

 private:
  template <class T>
  struct Value {
    enum class Origin { kNone, kStored, kPut };

    T current{};
    T saved{};
    Origin origin = Origin::kNone;

    void put(T value) {
      current = std::move(value);
      origin = Origin::kPut;
    }
    void store(T value) {
      saved = current = std::move(value);
      origin = Origin::kStored;
    }
    void change_row(bool is_new);
    bool complete(T stored);
    void take_back(const Value& before);
  };

  /// The numbers that the table has columns for.
  template <class Self>
  static auto numbers(Self& self) {
    return std::span(self.numbers_).first(self.table_.kind().columns.size() - 1);
  }

  template <class Pick>
  [[nodiscard]] std::wstring values(Pick pick) const;
  template <class Pick>
  [[nodiscard]] std::wstring assignments(Pick pick) const;

  const Table& table_;
  Value<std::wstring> description_;
  std::array<Value<double>, 3> numbers_;
};

}  // namespace modeldb
