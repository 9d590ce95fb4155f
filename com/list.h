#pragma once

#include <oaidl.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "com/automation.h"
#include "com/variant.h"

namespace com {

/// What a List and its enumerators share.
using ListItems = std::shared_ptr<const std::vector<Ptr<IDispatch>>>;

/// Walks the items of a list, each enumerator on its own.
class ListEnumerator : public Object<IEnumVARIANT> {
 public:
  explicit ListEnumerator(ListItems items, std::size_t position = 0)
      : items_(std::move(items)), position_(position) {}

  STDMETHODIMP Next(ULONG celt, VARIANT* rgVar, ULONG* pCeltFetched) override {
    return boundary([&] {
      const std::size_t count = std::min<std::size_t>(celt, items_->size() - position_);
      for (std::size_t i = 0; i < count; ++i) {
        rgVar[i] = Variant((*items_)[position_ + i].get()).detach();
      }
      position_ += count;
      if (pCeltFetched) *pCeltFetched = static_cast<ULONG>(count);
      return count == celt ? S_OK : S_FALSE;
    });
  }

  STDMETHODIMP Skip(ULONG celt) override {
    const std::size_t left = items_->size() - position_;
    position_ += std::min<std::size_t>(celt, left);
    return celt <= left ? S_OK : S_FALSE;
  }

  STDMETHODIMP Reset() override {
    position_ = 0;
    return S_OK;
  }

  STDMETHODIMP Clone(IEnumVARIANT** ppEnum) override {
    return boundary([&] {
      *ppEnum = nullptr;
      *ppEnum = make<ListEnumerator>(items_, position_).detach();
    });
  }

 private:
  ListItems items_;
  std::size_t position_;
};

/// An ordered collection that does not change: Item by index from 0, Count, For Each. Interface is
/// the collection's in `library`, ItemInterface that of its items.
template <class Interface, class ItemInterface, const TypeLibrary& library>
class List : public AutomationObject<Interface, library> {
 public:
  /// Every object answers ItemInterface.
  explicit List(std::vector<Ptr<IDispatch>> items)
      : items_(std::make_shared<const std::vector<Ptr<IDispatch>>>(std::move(items))) {}

  /// E_INVALIDARG: no such index.
  STDMETHODIMP Item(long Index, ItemInterface** pVal) override {
    return boundary([&] {
      *pVal = nullptr;
      if (Index < 0 || static_cast<std::size_t>(Index) >= items_->size()) {
        throw Error(E_INVALIDARG);
      }
      const Ptr<IDispatch>& item = (*items_)[static_cast<std::size_t>(Index)];
      check(item->QueryInterface(__uuidof(ItemInterface), reinterpret_cast<void**>(pVal)));
    });
  }

  STDMETHODIMP get_Count(long* pVal) override {
    *pVal = static_cast<long>(items_->size());
    return S_OK;
  }

  STDMETHODIMP get__NewEnum(IUnknown** pVal) override {
    return boundary([&] {
      *pVal = nullptr;
      *pVal = make<ListEnumerator>(items_).detach();
    });
  }

 private:
  ListItems items_;
};

}  // namespace com
