#include "modeldb/classes.h"

#include <atomic>
#include <concepts>

#include "modeldb/ado/record_load.h"
#include "modeldb/library.h"
#include "modeldb/objects/model_database.h"
#include "modeldb/objects/set_collection.h"
#include "modeldb/objects/vertex.h"

namespace modeldb {
namespace {

// The script's number is that of the resource; the build lists the same numbers.
template <class Object, class Class>
com::ClassEntry entry(UINT script,
                      com::ClassEntry::Creator create = &com::Instance<Object>::create) {
  static_assert(std::same_as<typename Object::ReferenceCount, std::atomic<long>>);
  return {__uuidof(Class), script, create};
}

template <class Sets, class Class>
com::ClassEntry entry_of_sets(UINT script) {
  return entry<Sets, Class>(script, [](IUnknown* outer, REFIID iid, void** out) {
    RecordLoad::sets_created();
    return com::Instance<Sets>::create(outer, iid, out);
  });
}

}  // namespace

std::span<com::ClassEntry> classes() {
  static com::ClassEntry table[] = {
      entry<ModelDatabase, ::ModelDatabase>(101),
      entry<Vertex, ::Vertex>(102),
      entry<LoadSet, ::LoadSet>(103),
      entry_of_sets<LoadSets, ::LoadSets>(104),
      entry<ConstraintSet, ::ConstraintSet>(105),
      entry_of_sets<ConstraintSets, ::ConstraintSets>(106),
      entry<DesignScenario, ::DesignScenario>(107),
      entry_of_sets<DesignScenarios, ::DesignScenarios>(108),
  };
  return table;
}

com::ModuleContents module_contents() { return {.classes = classes(), .library = kLibrary}; }

}  // namespace modeldb
