#include "modeldb/schema/host_kinds.h"

#include <orv_modeldb.h>

namespace modeldb {
namespace {

template <class Class, class Interface, class Collection, class CollectionInterface>
Kind set_kind(std::wstring object) {
  return {.object = object,
          .table = object + L"s",
          .key = object + L"ID",
          .columns = {{L"Description", ColumnType::kText}},
          .sets = L"",
          .object_interface = __uuidof(Interface),
          .object_class = __uuidof(Class),
          .collection_class = __uuidof(Collection),
          .collection_interface = __uuidof(CollectionInterface)};
}

Column coordinate(const wchar_t* name) {
  return {.name = name, .type = ColumnType::kReal, .may_be_unknown = true};
}

}  // namespace

const Kind& vertex_kind() {
  static const Kind kind{.object = L"Vertex",
                         .table = L"Vertices",
                         .key = L"VertexID",
                         .columns = {{L"Description", ColumnType::kText},
                                     coordinate(L"X"),
                                     coordinate(L"Y"),
                                     coordinate(L"Z")},
                         .sets = L"",
                         .object_interface = __uuidof(IVertex),
                         .object_class = __uuidof(Vertex),
                         .collection_class = __uuidof(Vertices),
                         .collection_interface = __uuidof(IVertices)};
  return kind;
}

const Kind& load_set_kind() {
  static const Kind kind = set_kind<LoadSet, ILoadSet, LoadSets, ILoadSets>(L"LoadSet");
  return kind;
}

const Kind& constraint_set_kind() {
  static const Kind kind =
      set_kind<ConstraintSet, IConstraintSet, ConstraintSets, IConstraintSets>(L"ConstraintSet");
  return kind;
}

const Kind& design_scenario_kind() {
  static const Kind kind =
      set_kind<DesignScenario, IDesignScenario, DesignScenarios, IDesignScenarios>(
          L"DesignScenario");
  return kind;
}

}  // namespace modeldb
