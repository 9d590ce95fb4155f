#include "server/classes.h"

#include <orv_node.h>

#include "collections/collections.h"
#include "records/library.h"

namespace orv {

const com::TypeLibrary kLibrary{LIBID_ORV_NODELib, 1, 0, 0x409};

namespace {

// Every kind's record class and its collection class, in the order of the list of kinds.
std::span<com::ClassEntry> classes() {
#define KIND(name, collection, script)                       \
  {__uuidof(name), script, &com::Instance<C##name>::create}, \
      {__uuidof(collection), (script) + 1, &com::Instance<C##collection>::create},
  static com::ClassEntry table[] = {FOR_EACH_KIND(KIND)};
#undef KIND
  return table;
}

}  // namespace

com::ModuleContents module_contents() { return {.classes = classes(), .library = kLibrary}; }

}  // namespace orv
