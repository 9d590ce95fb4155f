#pragma once

#include "records/db_record.h"

namespace orv {

/// A constraint: a record that belongs to constraint sets.
template <class Self, class Interface>
class COrvelNodalConstraintDbRecord : public COrvelDbRecord<Self, Interface, ConstraintSetTraits> {
 public:
  /// E_POINTER: the record holds no collection.
  STDMETHODIMP get_ConstraintSets(IDispatch** pVal) override { return this->get_sets(pVal); }
  /// E_POINTER: `newVal` is null; the record is left without a collection.
  STDMETHODIMP putref_ConstraintSets(IDispatch* newVal) override { return this->put_sets(newVal); }
};

}  // namespace orv
