#pragma once

#include <oaidl.h>

#include <memory>
#include <vector>

#include "com/ptr.h"
#include "com/variant.h"

namespace modeldb {

/// An object that a client left with the model, for use by whatever thread works on the model.
class Listener {
 public:
  explicit Listener(IDispatch* object);
  ~Listener();
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  /// The object as the current thread may call it: itself in the thread that left it, elsewhere
  /// what the platform makes of it. Empty when its apartment is gone.
  [[nodiscard]] com::Ptr<IDispatch> object() const;

 private:
  com::Ptr<IGlobalInterfaceTable> table_;
  IDispatch* object_;  // which the table keeps alive
  DWORD thread_;
  DWORD entry_ = 0;  // in the table
};

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

  std::vector<std::shared_ptr<const Listener>> listeners_;
  int depth_ = 0;
};

}  // namespace modeldb
