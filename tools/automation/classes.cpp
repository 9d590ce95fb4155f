#include "tools/automation/classes.h"

#include "tools/automation/check.h"
#include "tools/automation/deck.h"
#include "tools/automation/library.h"
#include "tools/automation/picture.h"
#include "tools/automation/report.h"

namespace automation {

com::ModuleContents module_contents() {
#define CLASS(name, script) {__uuidof(::name), script, &com::Instance<name>::create},
  static com::ClassEntry table[] = {FOR_EACH_CLASS(CLASS)};
#undef CLASS
  return {.classes = table, .library = kLibrary};
}

}  // namespace automation
