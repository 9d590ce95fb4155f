#include "tools/orv/new_record.h"

#include <algorithm>
#include <new>

#include "com/bstr.h"
#include "com/error.h"
#include "tools/text/utf8.h"

namespace orv {
namespace {

/// An array of one row with one cell, which is empty.
com::Variant one_blank_cell() {
  SAFEARRAYBOUND bounds[2] = {{.cElements = 1, .lLbound = 0}, {.cElements = 1, .lLbound = 0}};
  SAFEARRAY* const array = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (!array) throw std::bad_alloc();
  com::Variant rows;
  VARIANT* const value = rows.put();
  value->vt = VT_ARRAY | VT_VARIANT;
  value->parray = array;
  return rows;
}

}  // namespace

std::vector<double> values_of_new_record(const ModelFile& file, const model::Kind& kind) {
  model::Database database = file.database();
  // The model tells by making one, which is taken back.
  const model::Transaction taken_back(database);
  const com::Variant column(com::Bstr(L"Description"));
  com::Variant keys;
  com::check(file.object()->AppendRows(com::Bstr(text::to_wide(kind.table)).get(), column,
                                       one_blank_cell(), keys.put()),
             file.object());
  model::Rows rows =
      database.query("SELECT * FROM " + kind.table + " ORDER BY " + kind.key() + " DESC LIMIT 1");
  rows.next();
  const std::vector<model::Column> columns = rows.columns();
  std::vector<double> values;
  for (const std::string& name : kind.columns) {
    const auto found = std::ranges::find(columns, name, &model::Column::name);
    values.push_back(rows.real(static_cast<std::size_t>(found - columns.begin())));
  }
  return values;
}

}  // namespace orv
