#include "modeldb/objects/vertex.h"

namespace modeldb {

const Table& Vertex::table() {
  static const Table table(vertex_kind());
  return table;
}

void Vertex::load_row(IDispatch* model_database, const ColumnReader& row) {
  if (complete(model_database)) return;
  std::size_t coordinate = 0;
  for (const wchar_t* const column : {L"X", L"Y", L"Z"}) {
    if (const auto value = row.try_read(column, VT_R8)) {
      image().store_number(coordinate, value->get().dblVal);
    }
    ++coordinate;
  }
}

}  // namespace modeldb
