#pragma once

#include <guiddef.h>

#include <ostream>
#include <string>
#include <vector>

/// A kind as its own declaration has it, for tests that hold for all kinds.
struct Kind {
  std::string name;
  CLSID record_class;
  IID record_interface;
  CLSID collection_class;
  IID collection_interface;
  std::vector<std::wstring> columns;

  friend std::ostream& operator<<(std::ostream& out, const Kind& kind) { return out << kind.name; }
};

/// Every kind of the list of kinds.
std::vector<Kind> all_kinds();
