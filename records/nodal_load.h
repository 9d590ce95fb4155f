#pragma once

#include "records/db_record.h"

namespace orv {

/// A load: a record that belongs to load sets.
template <class Self, class Interface>
class COrvelNodalLoadDbRecord : public COrvelDbRecord<Self, Interface, LoadSetTraits> {
 public:
  /// E_POINTER: the record holds no collection.
  STDMETHODIMP get_LoadSets(IDispatch** pVal) override { return this->get_sets(pVal); }
  /// E_POINTER: `newVal` is null; the record is left without a collection.
  STDMETHODIMP putref_LoadSets(IDispatch* newVal) override { return this->put_sets(newVal); }
};

}  // namespace orv
