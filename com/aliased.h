#pragma once

#include "com/object.h"

namespace com {

/// Base, whose interface Interface is answered under further identifiers: those for which one of
/// Names, a type with `static bool has(REFIID)`, says so. They are of interfaces from which
/// Interface derives, whose members are its first ones; of other versions of it; and of the class
/// itself, by which its module knows its own objects (own_object).
template <class Base, class Interface, class... Names>
class Aliased : public Base {
 public:
  using Base::Base;
  using AliasedInterface = Interface;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
    return (Names::has(iid) || ...) ? S_OK : Base::InterfaceSupportsErrorInfo(iid);
  }

 protected:
  HRESULT query_other(REFIID iid, void** out) override {
    if (!(Names::has(iid) || ...)) return Base::query_other(iid, out);
    *out = Ptr<Interface>(static_cast<Interface*>(this)).detach();
    return S_OK;
  }
};

/// The identifiers of interfaces.
template <class... Interfaces>
struct NamesOf {
  static bool has(REFIID iid) { return (IsEqualIID(iid, __uuidof(Interfaces)) || ...); }
};

/// An identifier that one class alone answers. Nothing marshals it, so that proxies do not.
template <const IID& id>
struct OwnName {
  static bool has(REFIID iid) { return IsEqualIID(iid, id); }
};

/// `object` as one of the class T, which is Aliased by OwnName<id>; empty when it is another's, or
/// a proxy.
template <class T, const IID& id>
Ptr<T> own_object(IUnknown* object) {
  Ptr<typename T::AliasedInterface> found;
  if (!object || FAILED(object->QueryInterface(id, found.put_void()))) return nullptr;
  Ptr<T> own;
  *own.put() = static_cast<T*>(found.detach());
  return own;
}

}  // namespace com
