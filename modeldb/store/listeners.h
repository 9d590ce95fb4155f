#pragma once

#include <oaidl.h>

#include <vector>

#include "com/ptr.h"
#include "com/variant.h"

namespace modeldb {

/// The scripts' objects that want to know what is saved and deleted. They are called by name; one
/// that lacks a method is passed over, and one that fails concerns nobody else.
class Listeners {
 public:
  [[nodiscard]] bool empty() const { return listeners_.empty(); }

  /// Adds an object, once however often it is passed.
  void add(IDispatch* listener);
  /// False when the object is none of them.
  bool remove(IDispatch* listener);

  /// Calls method(object_type, subject) of each.
  void notify(const wchar_t* method, long object_type, const com::Variant& subject) const;

 private:
  std::vector<com::Ptr<IDispatch>> listeners_;
};

}  // namespace modeldb
