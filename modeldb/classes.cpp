#include "modeldb/classes.h"

#include <msado15_backcompat.h>

#include "com/entry_points.h"
#include "modeldb/ado/factories.h"
#include "modeldb/library.h"
#include "modeldb/objects/host_collection.h"
#include "modeldb/objects/model_database.h"
#include "modeldb/objects/vertex.h"

namespace modeldb {
namespace {

// The script's number is that of the resource; the build lists the same numbers.
template <class Object, class Class>
com::ClassEntry entry(UINT script) {
  return {__uuidof(Class), script, &com::Instance<Object>::create};
}

}  // namespace

std::span<com::ClassEntry> classes() {
  static com::ClassEntry table[] = {
      entry<ModelDatabase, ::ModelDatabase>(101),
      entry<Vertex, ::Vertex>(102),
      entry<LoadSet, ::LoadSet>(103),
      entry<LoadSets, ::LoadSets>(104),
      entry<ConstraintSet, ::ConstraintSet>(105),
      entry<ConstraintSets, ::ConstraintSets>(106),
      entry<DesignScenario, ::DesignScenario>(107),
      entry<DesignScenarios, ::DesignScenarios>(108),
      entry<Vertices, ::Vertices>(109),
  };
  return table;
}

std::span<com::ClassEntry> ado_classes() {
  constexpr UINT kNoScript = 0;
  static com::ClassEntry table[] = {{CLSID_Recordset, kNoScript, &create_recordset}};
  return table;
}

}  // namespace modeldb

com::ModuleContents com::module_contents() {
  return {.classes = modeldb::classes(),
          .private_classes = modeldb::ado_classes(),
          .library = modeldb::kLibrary};
}
