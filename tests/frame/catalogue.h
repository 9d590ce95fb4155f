#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

// What the type library must say: the contract with every script and program that was ever written
// against it. Stated here apart from the interface definitions, so that a slip in those shows.

namespace catalogue {

/// A property of a record as the library describes it. References are put by reference.
struct Property {
  long dispid;
  std::wstring_view name;
  std::wstring_view type;
  std::wstring_view help;

  [[nodiscard]] bool is_reference() const { return type == L"IDispatch*"; }
};

/// One kind: the names of its two classes and the properties that its record has after the head
/// common to all records, in order.
struct Kind {
  std::wstring_view record;
  std::wstring_view collection;
  std::vector<std::wstring_view> properties;
};

/// Names the kind in the messages of tests.
inline std::ostream& operator<<(std::ostream& out, const Kind& kind) {
  return out << std::string(kind.record.begin(), kind.record.end());
}

/// The eighteen kinds in the library's order.
const std::vector<Kind>& kinds();

/// The property that a name means in a record's own part, whichever record has it.
const Property& property(std::wstring_view name);

/// Members in the order of the virtual table, each as one line such as
/// `1 get ID([out,retval] long* pVal) hidden: Internal record number.`
std::vector<std::wstring> record_members(const Kind& kind);
std::vector<std::wstring> collection_members(const Kind& kind);

}  // namespace catalogue
