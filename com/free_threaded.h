#pragma once

#include <atomic>

#include "com/object.h"

namespace com {

/// An object that every apartment of the process calls directly, and that any thread may release:
/// it aggregates the platform's free-threaded marshaler, made when it is first asked for, and its
/// references are counted atomically. What its members need beyond that is theirs.
template <class Base>
class FreeThreaded : public Base {
 public:
  using ReferenceCount = std::atomic<long>;
  using Base::Base;

 protected:
  ~FreeThreaded() override {
    if (IUnknown* const marshaler = marshaler_.load()) marshaler->Release();
  }

  HRESULT query_other(REFIID iid, void** out) override {
    if (!IsEqualIID(iid, IID_IMarshal)) return Base::query_other(iid, out);
    *out = nullptr;
    return boundary([&] { return marshaler()->QueryInterface(iid, out); });
  }

 private:
  IUnknown* marshaler() {
    if (IUnknown* const made = marshaler_.load()) return made;
    Ptr<IUnknown> marshaler;
    check(CoCreateFreeThreadedMarshaler(this->controlling_unknown(), marshaler.put()));
    IUnknown* made = nullptr;
    return marshaler_.compare_exchange_strong(made, marshaler.get()) ? marshaler.detach() : made;
  }

  std::atomic<IUnknown*> marshaler_ = nullptr;
};

}  // namespace com
