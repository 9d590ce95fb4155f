#include "tools/model/appending.h"

#include <new>
#include <utility>

#include "com/bstr.h"
#include "com/error.h"
#include "com/variant.h"
#include "tools/text/failure.h"
#include "tools/text/utf8.h"

namespace model {
namespace {

constexpr std::size_t kRowsAtOnce = 4096;

/// An array of rows and columns. It stands column by column.
com::Variant array_of(VARTYPE type, std::size_t height, std::size_t width) {
  SAFEARRAYBOUND bounds[] = {{.cElements = static_cast<ULONG>(height), .lLbound = 0},
                             {.cElements = static_cast<ULONG>(width), .lLbound = 0}};
  com::Variant result;
  VARIANT* const array = result.put();
  array->parray = SafeArrayCreate(type, 2, bounds);
  if (!array->parray) throw std::bad_alloc();
  array->vt = static_cast<VARTYPE>(VT_ARRAY | type);
  return result;
}

/// Calls `put` with each place among cells that stand row by row, and its place in the array.
template <class Put>
void each_place(std::size_t height, std::size_t width, Put put) {
  for (std::size_t row = 0; row < height; ++row) {
    for (std::size_t column = 0; column < width; ++column) {
      put(row * width + column, column * height + row);
    }
  }
}

com::Variant array_of(const std::vector<double>& cells, std::size_t width) {
  const std::size_t height = cells.size() / width;
  com::Variant array = array_of(VT_R8, height, width);
  auto* const data = static_cast<double*>(array.get().parray->pvData);
  each_place(height, width,
             [&](std::size_t cell, std::size_t place) { data[place] = cells[cell]; });
  return array;
}

using Texts = std::vector<std::pair<std::size_t, std::wstring>>;

com::Variant array_of(const std::vector<double>& cells, const Texts& texts, std::size_t width) {
  const std::size_t height = cells.size() / width;
  com::Variant array = array_of(VT_VARIANT, height, width);
  auto* const data = static_cast<VARIANT*>(array.get().parray->pvData);
  auto text = texts.begin();
  each_place(height, width, [&](std::size_t cell, std::size_t place) {
    if (text != texts.end() && text->first == cell) {
      data[place] = com::Variant(com::Bstr((text++)->second)).detach();
    } else {
      data[place] = com::Variant(cells[cell]).detach();
    }
  });
  return array;
}

}  // namespace

Appending::Appending(Database& database, std::string table, const std::vector<std::string>& columns)
    : table_(std::move(table)), width_(columns.size()) {
  const com::Ptr<IDispatch> object(database.object());
  model_ = object.query<IModelDatabaseFile>();
  if (!model_) {
    text::fail(text::kInvalidArgument,
               "The model database takes no rows in bulk. Pass an Orv_ModelDb.ModelDatabase.");
  }
  for (const std::string& column : columns) columns_ += (columns_.empty() ? "" : ",") + column;
}

void Appending::add(double number) {
  if (cells_.size() == kRowsAtOnce * width_) finish();
  cells_.push_back(number);
}

void Appending::add(std::string_view text) {
  add(0);  // holds the place
  texts_.emplace_back(cells_.size() - 1, text::to_wide(text));
}

void Appending::finish() {
  if (cells_.empty()) return;
  com::Variant keys;
  com::check(
      model_->AppendRows(
          com::Bstr(text::to_wide(table_)).get(), com::Variant(com::Bstr(text::to_wide(columns_))),
          texts_.empty() ? array_of(cells_, width_) : array_of(cells_, texts_, width_), keys.put()),
      model_);
  cells_.clear();
  texts_.clear();
}

}  // namespace model
