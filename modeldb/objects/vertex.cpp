#include "modeldb/objects/vertex.h"

#include <array>
#include <string_view>

namespace modeldb {

const Table& Vertex::table() {
  static const Table table(vertex_kind());
  return table;
}

void Vertex::load_row(IDispatch* model_database, const ColumnReader& row) {
  static constexpr std::array<std::wstring_view, 3> kCoordinates = {L"X", L"Y", L"Z"};
  if (complete(model_database) || !row.has_one_of(kCoordinates)) return;
  std::size_t coordinate = 0;
  for (const auto column : kCoordinates) {
    if (const auto value = row.try_read(column, VT_R8)) {
      image().store_number(coordinate, value->get().dblVal);
    }
    ++coordinate;
  }
}

}  // namespace modeldb
