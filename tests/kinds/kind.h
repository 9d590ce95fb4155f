#pragma once

#include <orv_host.h>

#include <ostream>
#include <string>
#include <vector>

#include "com/ptr.h"
#include "tests/kinds/expected.h"

/// A class of the server, as the list of kinds and the interface definitions have it.
struct Class {
  std::string name;
  CLSID clsid;
  IID own_interface;
  bool is_collection;

  friend std::ostream& operator<<(std::ostream& out, const Class& each) { return out << each.name; }
};

/// A kind, for tests that hold for all of them.
struct Kind {
  Class record;
  Class collection;
  ExpectedKind expected;

  friend std::ostream& operator<<(std::ostream& out, const Kind& kind) {
    return out << kind.record;
  }
};

/// Every kind of the list of kinds. Throws for one that nothing is expected of.
std::vector<Kind> all_kinds();

/// Records and collections of all kinds.
std::vector<Class> all_classes();
