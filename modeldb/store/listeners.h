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
  /// Lets all of them go, also while they are being called.
  void clear() { listeners_.clear(); }

  /// Adds an object, once however often it is passed.
  void add(IDispatch* listener);
  /// False when the object is none of them.
  bool remove(IDispatch* listener);

  /// Calls method(object_type, subject) of each. What they change is notified in turn, up to
  /// kMaximumDepth calls within each other.
  void notify(const wchar_t* method, long object_type, const com::Variant& subject);

 private:
  /// A listener may change something whenever it is called, and so be called again without end:
  /// its process would die of a full stack.
  static constexpr int kMaximumDepth = 16;

  std::vector<com::Ptr<IDispatch>> listeners_;
  int depth_ = 0;
};

}  // namespace modeldb
