#include "modeldb/classes.h"

#include <atomic>
#include <concepts>

#include "modeldb/ado/record_load.h"
#include "modeldb/base/library.h"
#include "modeldb/objects/host_collection.h"
#include "modeldb/objects/model_database.h"
#include "modeldb/objects/vertex.h"

namespace modeldb {
namespace {

template <class Object, class Class>
com::ClassEntry entry(UINT script,
                      com::ClassEntry::Creator create = &com::Instance<Object>::create) {
  static_assert(std::same_as<typename Object::ReferenceCount, std::atomic<long>>);
  return {__uuidof(Class), script, create};
}

/// A collection of sets: a record that is being loaded creates it ahead of its recordset.
template <class Sets, class Class>
com::ClassEntry entry_of_sets(UINT script) {
  return entry<Sets, Class>(script, [](IUnknown* outer, REFIID iid, void** out) {
    RecordLoad::sets_created();
    return com::Instance<Sets>::create(outer, iid, out);
  });
}

std::span<com::ClassEntry> classes() {
#define CLASS(name, script) entry<modeldb::name, ::name>(script),
#define SETS(name, script) entry_of_sets<modeldb::name, ::name>(script),
  static com::ClassEntry table[] = {FOR_EACH_CLASS(CLASS, SETS)};
#undef CLASS
#undef SETS
  return table;
}

}  // namespace

com::ModuleContents module_contents() { return {.classes = classes(), .library = kLibrary}; }

}  // namespace modeldb
