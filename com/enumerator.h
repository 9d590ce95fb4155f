#pragma once

#include <oaidl.h>

#include <utility>
#include <vector>

#include "com/object.h"
#include "com/variant.h"

namespace com {

/// Walks objects that stood in a collection when the walk began. Every walk has a place of its own.
class Enumerator : public Object<IEnumVARIANT> {
 public:
  explicit Enumerator(std::vector<Ptr<IDispatch>> objects) : objects_(std::move(objects)) {}

  STDMETHODIMP Next(ULONG celt, VARIANT* rgVar, ULONG* pCeltFetched) override {
    if (pCeltFetched) *pCeltFetched = 0;
    if (!rgVar || (!pCeltFetched && celt != 1)) return E_POINTER;
    ULONG served = 0;
    for (; served < celt && place_ < objects_.size(); ++served) {
      rgVar[served] = Variant(objects_[place_++].get()).detach();
    }
    if (pCeltFetched) *pCeltFetched = served;
    return served == celt ? S_OK : S_FALSE;
  }

  STDMETHODIMP Skip(ULONG celt) override {
    const std::size_t left = objects_.size() - place_;
    place_ += celt < left ? celt : left;
    return celt <= left ? S_OK : S_FALSE;
  }

  STDMETHODIMP Reset() override {
    place_ = 0;
    return S_OK;
  }

  STDMETHODIMP Clone(IEnumVARIANT** ppEnum) override {
    if (!ppEnum) return E_POINTER;
    *ppEnum = nullptr;
    return boundary([&] {
      const auto clone = make<Enumerator>(objects_);
      clone->place_ = place_;
      *ppEnum = Ptr<IEnumVARIANT>(clone.get()).detach();
    });
  }

 private:
  std::vector<Ptr<IDispatch>> objects_;
  std::size_t place_ = 0;
};

}  // namespace com
