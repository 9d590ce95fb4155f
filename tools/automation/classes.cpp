#include "com/entry_points.h"
#include "tools/automation/deck.h"
#include "tools/automation/library.h"

com::ModuleContents com::module_contents() {
  // The script's number is that of the resource; the build lists the same numbers.
  static com::ClassEntry table[] = {
      {__uuidof(::Deck), 101, &com::Instance<automation::Deck>::create},
  };
  return {.classes = table, .library = automation::kLibrary};
}
