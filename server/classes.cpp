#include "collections/collections.h"
#include "com/entry_points.h"

namespace {

// Every kind's record class and its collection class, in the order of the list of kinds.
std::span<com::ClassEntry> classes() {
#define KIND(name, collection, script)                            \
  {__uuidof(name), script, &com::Instance<orv::C##name>::create}, \
      {__uuidof(collection), (script) + 1, &com::Instance<orv::C##collection>::create},
  static com::ClassEntry table[] = {FOR_EACH_KIND(KIND)};
#undef KIND
  return table;
}

}  // namespace

com::ModuleContents com::module_contents() {
  return {.classes = classes(), .library = orv::kLibrary};
}
