#pragma once

#include <oaidl.h>

#include <string>
#include <vector>

#include "com/ptr.h"

// A type library in words, read through the interfaces with which any client reads it.

namespace frame {

/// Name and help string of a type, or of a member of it.
struct Documentation {
  std::string name;
  std::string help;
};
Documentation documentation(const com::Ptr<ITypeInfo>& info, MEMBERID member = MEMBERID_NIL);

/// The type that the description `info` refers to at `index` among those it implements.
com::Ptr<ITypeInfo> implemented_type(const com::Ptr<ITypeInfo>& info, UINT index);

/// The side of a dual interface that lists the members of the virtual table itself.
com::Ptr<ITypeInfo> virtual_table_side(const com::Ptr<ITypeInfo>& dual);

/// Members in the order in which they stand in the virtual table, one line each, in the form that
/// the catalogue uses. A line of its own tells of a member that stands elsewhere.
std::vector<std::string> describe_members(const com::Ptr<ITypeInfo>& vtable_side);

/// The library that the built module carries. Throws com::Error.
com::Ptr<ITypeLib> load_library();

}  // namespace frame
