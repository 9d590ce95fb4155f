#include "tools/automation/classes.h"

#include "tools/automation/check.h"
#include "tools/automation/deck.h"
#include "tools/automation/library.h"
#include "tools/automation/picture.h"
#include "tools/automation/report.h"

namespace automation {

com::ModuleContents module_contents() {
  // The script's number is that of the resource; the build lists the same numbers.
  static com::ClassEntry table[] = {
      {__uuidof(::Deck), 101, &com::Instance<Deck>::create},
      {__uuidof(::Check), 102, &com::Instance<Check>::create},
      {__uuidof(::Picture), 103, &com::Instance<Picture>::create},
      {__uuidof(::Report), 104, &com::Instance<Report>::create},
  };
  return {.classes = table, .library = kLibrary};
}

}  // namespace automation
