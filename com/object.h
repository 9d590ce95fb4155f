#pragma once

#include <unknwn.h>
#include <windows.h>

#include <climits>
#include <memory>

#include "com/boundary.h"
#include "com/module.h"
#include "com/ptr.h"

namespace com {

/// Base of an implementation class: the interfaces it answers, in order, and delegation of IUnknown
/// to the controlling unknown. The class is completed by Instance, which owns identity and count.
///
/// The first interface is the object's identity for IDispatch when it derives from IDispatch.
/// Reference counts are plain numbers: the objects are apartment-threaded. A class whose objects
/// may be released beside the thread that uses them names an atomic ReferenceCount.
template <class First, class... Rest>
class Object : public First, public Rest... {
 public:
  using ReferenceCount = long;

  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** out) final {
    return outer_->QueryInterface(iid, out);
  }
  STDMETHODIMP_(ULONG) AddRef() final { return outer_->AddRef(); }
  STDMETHODIMP_(ULONG) Release() final { return outer_->Release(); }

 protected:
  /// Constructors of derived classes must not hand the object out: it has no identity yet.
  Object() = default;
  virtual ~Object() = default;

  /// Runs once after construction; whatever it throws fails the creation.
  virtual void final_construct() {}
  /// Runs once before destruction, with the object still whole.
  virtual void final_release() {}

  /// Interfaces beyond the table: inherited ones, and those of an aggregated object.
  virtual HRESULT query_other(REFIID, void** out) {
    *out = nullptr;
    return E_NOINTERFACE;
  }

  /// The object's own table of interfaces, without IUnknown; null when it has no such interface.
  IUnknown* find_interface(REFIID iid) {
    IUnknown* found = nullptr;
    auto matches = [&]<class I>(I* candidate) {
      if (IsEqualIID(iid, __uuidof(I))) found = candidate;
      return found != nullptr;
    };
    if constexpr (std::is_base_of_v<IDispatch, First>) {
      if (matches(static_cast<IDispatch*>(static_cast<First*>(this)))) return found;
    }
    (void)(matches(static_cast<First*>(this)) || ... || matches(static_cast<Rest*>(this)));
    return found;
  }

  /// QueryInterface of `identity`, the object's own unknown.
  HRESULT query_own(IUnknown* identity, REFIID iid, void** out) {
    if (!out) return E_POINTER;
    IUnknown* const found = IsEqualIID(iid, __uuidof(IUnknown)) ? identity : find_interface(iid);
    if (!found) return query_other(iid, out);
    found->AddRef();
    *out = found;
    return S_OK;
  }

  /// The unknown that governs identity: the object's own, or that of the object it is part of.
  [[nodiscard]] IUnknown* controlling_unknown() const { return outer_; }

 private:
  template <class T>
  friend class Instance;
  template <class T>
  friend class Part;

  IUnknown* outer_ = nullptr;
};

/// The own IUnknown of a complete object, which derives from it: the non-delegating one.
template <class Whole, class ReferenceCount>
class OwnUnknown : public IUnknown {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) final {
    return whole()->query_own(this, iid, out);
  }
  STDMETHODIMP_(ULONG) AddRef() final { return static_cast<ULONG>(++references); }
  STDMETHODIMP_(ULONG) Release() final {
    const long left = --references;
    if (left == 0) delete whole();
    return static_cast<ULONG>(left);
  }

  ReferenceCount references = 0;

 private:
  Whole* whole() { return static_cast<Whole*>(this); }
};

/// A complete object of the implementation class T: stand-alone, or part of an outer object.
/// Its own IUnknown is the non-delegating one; that of every other interface is the outer's.
template <class T>
class Instance final : public T, private OwnUnknown<Instance<T>, typename T::ReferenceCount> {
 public:
  /// Creates an object and asks it for `iid`. With an outer object `iid` must be IUnknown.
  /// The caller owns the reference in `out`.
  static HRESULT create(IUnknown* outer, REFIID iid, void** out) {
    return boundary([&] {
      *out = nullptr;
      std::unique_ptr<Instance> object = construct(outer);
      const HRESULT result = object->own().QueryInterface(iid, out);
      if (SUCCEEDED(result)) (void)object.release();
      return result;
    });
  }

  /// Creates a stand-alone object for use inside the module; failures are raised.
  template <class... Arguments>
  static Ptr<T> make(Arguments&&... arguments) {
    return Ptr<T>(construct(nullptr, std::forward<Arguments>(arguments)...).release());
  }

  ~Instance() {
    own().references = kDestroying;
    this->final_release();
    Module::instance().unlock();
  }

 private:
  /// References taken and dropped during destruction must not destroy the object again.
  static constexpr long kDestroying = LONG_MIN / 2;

  using Own = OwnUnknown<Instance, typename T::ReferenceCount>;
  friend Own;

  template <class... Arguments>
  explicit Instance(IUnknown* outer, Arguments&&... arguments)
      : T(std::forward<Arguments>(arguments)...) {
    this->outer_ = outer ? outer : &own();
    Module::instance().lock();
  }

  template <class... Arguments>
  static std::unique_ptr<Instance> construct(IUnknown* outer, Arguments&&... arguments) {
    std::unique_ptr<Instance> object(new Instance(outer, std::forward<Arguments>(arguments)...));
    // Final construction may hand the object out and take it back; the extra reference keeps that
    // from destroying it.
    ++object->own().references;
    object->final_construct();
    --object->own().references;
    return object;
  }

  Own& own() { return *this; }
};

/// Creates an object of the implementation class T without a class object; failures are raised.
template <class T, class... Arguments>
Ptr<T> make(Arguments&&... arguments) {
  return Instance<T>::make(std::forward<Arguments>(arguments)...);
}

}  // namespace com
