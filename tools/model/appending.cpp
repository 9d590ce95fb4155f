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

/// Rows by columns, of cells that stand row by row.
com::Variant array_of(const std::vector<double>& cells, std::size_t width) {
  const std::size_t height = cells.size() / width;
  SAFEARRAYBOUND bounds[] = {{.cElements = static_cast<ULONG>(height), .lLbound = 0},
                             {.cElements = static_cast<ULONG>(width), .lLbound = 0}};
  com::Variant result;
  VARIANT* const array = result.put();
  array->parray = SafeArrayCreate(VT_R8, 2, bounds);
  if (!array->parray) throw std::bad_alloc();
  array->vt = VT_ARRAY | VT_R8;
  // The array stands column by column.
  auto* const data = static_cast<double*>(array->parray->pvData);
  for (std::size_t row = 0; row < height; ++row) {
    for (std::size_t column = 0; column < width; ++column) {
      data[column * height + row] = cells[row * width + column];
    }
  }
  return result;
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

void Appending::finish() {
  if (cells_.empty()) return;
  com::Variant keys;
  com::check(model_->AppendRows(com::Bstr(text::to_wide(table_)).get(),
                                com::Variant(com::Bstr(text::to_wide(columns_))),
                                array_of(cells_, width_), keys.put()),
             model_);
  cells_.clear();
}

}  // namespace model
