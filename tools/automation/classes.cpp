#include "tools/automation/classes.h"

#include "tools/automation/check.h"
#include "tools/automation/deck.h"
#include "tools/automation/library.h"

namespace automation {

com::ModuleContents module_contents() {
  // The script's number is that of the resource; the build lists the same numbers.
  static com::ClassEntry table[] = {
      {__uuidof(::Deck), 101, &com::Instance<Deck>::create},
      {__uuidof(::Check), 102, &com::Instance<Check>::create},
  };
  return {.classes = table, .library = kLibrary};
}

}  // namespace automation
