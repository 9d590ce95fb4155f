#pragma once

#include "com/object.h"

namespace com {

/// An object of the implementation class T that is a member of another object, its owner: it has an
/// identity of its own, but the owner's count and life. So a client may keep either of them, and
/// neither is allocated or counted for the other's sake.
template <class T>
class Part final : public T {
 public:
  /// `owner` is any interface of the object that this is a member of; it is not counted.
  template <class... Arguments>
  explicit Part(IUnknown* owner, Arguments&&... arguments)
      : T(std::forward<Arguments>(arguments)...), identity_(this, owner) {
    this->outer_ = &identity_;
  }

 private:
  struct Identity final : IUnknown {
    Identity(Part* object, IUnknown* counted) : part(object), owner(counted) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
      return part->query_own(this, iid, out);
    }
    STDMETHODIMP_(ULONG) AddRef() override { return owner->AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return owner->Release(); }

    Part* part;
    IUnknown* owner;
  };

  Identity identity_;
};

}  // namespace com
