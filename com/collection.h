#pragma once

#include <oaidl.h>

#include <vector>

#include "com/automation.h"
#include "com/sequence.h"
#include "com/variant.h"

namespace com {

/// An ordered collection object: it holds what it is given and is its own enumerator. Saving and
/// deleting are the derived class's.
///
/// Interface is the collection's in `library`, ItemInterface that of its items. What is kept of an
/// item is an Entry, which is constructed from an ItemInterface*, may refuse it by raising, and
/// tells
///     long id() const;               the item's identifier now, 0 when it has none
///     IDispatch* object() const;     the item as it was added, borrowed
///
/// Base is the object that it is otherwise, with IEnumVARIANT beside Interface.
///
/// One cursor serves enumeration, Remove, and whoever walks entries(): each moves it for the
/// others.
template <class Interface, class ItemInterface, const TypeLibrary& library, class Entry,
          class Base = AutomationObject<Interface, library, IEnumVARIANT>>
class Collection : public Base {
 public:
  /// E_INVALIDARG: no such index. Else the result of asking the item for ItemInterface.
  STDMETHODIMP Item(int Index, ItemInterface** pVal) override {
    return boundary([&] {
      if (pVal) *pVal = nullptr;
      if (!holds(Index)) throw Error(E_INVALIDARG);
      require(pVal);
      const Ptr<IDispatch> object(entries_[static_cast<std::size_t>(Index)].object());
      check(object->QueryInterface(__uuidof(ItemInterface), reinterpret_cast<void**>(pVal)));
    });
  }

  /// Appends an object. E_POINTER: there is none.
  STDMETHODIMP Add(ItemInterface* pNewVal) override {
    return boundary([&] {
      Entry entry(require(pNewVal));
      const long id = entry.id();
      entries_.append(std::move(entry), id);
    });
  }

  STDMETHODIMP get_Count(long* pVal) override {
    if (!pVal) return E_POINTER;
    *pVal = static_cast<long>(entries_.size());
    return S_OK;
  }

  /// Takes an item out of the collection, not out of the database. E_INVALIDARG: no such index.
  STDMETHODIMP Remove(int Index) override {
    return boundary([&] {
      if (!holds(Index)) {
        entries_.seek_end();
        throw Error(E_INVALIDARG);
      }
      const Entry removed = entries_.take(static_cast<std::size_t>(Index));
      entries_.forget(removed.id());
    });
  }

  /// The collection itself, which is its own enumerator, from the first item on.
  STDMETHODIMP get__NewEnum(IUnknown** pVal) override {
    entries_.rewind();
    return this->QueryInterface(__uuidof(IEnumVARIANT), reinterpret_cast<void**>(pVal));
  }

  /// The position that the item had when it was added, or -1.
  STDMETHODIMP GetIndexById(long lId, long* plIndex) override {
    if (!plIndex) return E_POINTER;
    *plIndex = entries_.position_of(lId);
    return S_OK;
  }

  STDMETHODIMP Clear() override {
    for (std::size_t left = entries_.size(); left > 0; --left) Remove(0);
    return S_OK;
  }

  // IEnumVARIANT

  /// Serves one element at most, also when none is asked for. E_INVALIDARG: more are asked for.
  STDMETHODIMP Next(ULONG celt, VARIANT* rgVar, ULONG* pCeltFetched) override {
    return boundary([&] {
      if (pCeltFetched) *pCeltFetched = 0;
      if (celt > 1) throw Error(E_INVALIDARG);
      VariantInit(require(rgVar));
      const Entry* const entry = entries_.next();
      if (!entry) return S_FALSE;
      *rgVar = Variant(entry->object()).detach();
      if (pCeltFetched) *pCeltFetched = 1;
      return S_OK;
    });
  }

  /// Moves on by one, whatever `celt` is. E_INVALIDARG: the end is reached, or was reached before.
  STDMETHODIMP Skip(ULONG) override {
    return boundary([&] {
      entries_.next();
      if (entries_.at_end()) throw Error(E_INVALIDARG);
    });
  }

  STDMETHODIMP Reset() override {
    entries_.rewind();
    return S_OK;
  }

  STDMETHODIMP Clone(IEnumVARIANT** ppEnum) override {
    if (ppEnum) *ppEnum = nullptr;
    return boundary([] { throw Error(E_NOTIMPL); });
  }

 protected:
  [[nodiscard]] Sequence<Entry>& entries() { return entries_; }

  /// Visits every entry in order, by way of the cursor. The visit gets a copy: it may take the item
  /// out of the collection.
  template <class Visit>
  void for_each_entry(Visit&& visit) {
    entries_.rewind();
    while (const Entry* const next = entries_.next()) {
      const Entry entry = *next;
      visit(entry);
    }
  }

  /// The identifiers of the items as they are now, in order: an array of 32-bit integers.
  [[nodiscard]] Variant ids() const {
    std::vector<long> numbers;
    numbers.reserve(entries_.size());
    for (std::size_t position = 0; position < entries_.size(); ++position) {
      numbers.push_back(entries_[position].id());
    }
    return Variant::array(numbers);
  }

 private:
  [[nodiscard]] bool holds(int index) const {
    return index >= 0 && static_cast<std::size_t>(index) < entries_.size();
  }

  Sequence<Entry> entries_;
};

}  // namespace com
