#pragma once

#include <orv_kinds.h>

#include <array>

#include "records/nodal_constraint.h"

namespace orv {

/// Fixity of the six degrees of freedom of a vertex, axis by axis.
class CNodalBoundaryCondition
    : public COrvelNodalConstraintDbRecord<CNodalBoundaryCondition, INodalBoundaryCondition> {
 public:
  static constexpr KindNames kNames{L"NodalBoundaryCondition", L"NodalBoundaryConditions", 14};

  static constexpr auto columns() {
    return std::to_array<Column<CNodalBoundaryCondition>>({
        {L"Tx", &CNodalBoundaryCondition::tx_},
        {L"Ty", &CNodalBoundaryCondition::ty_},
        {L"Tz", &CNodalBoundaryCondition::tz_},
        {L"Rx", &CNodalBoundaryCondition::rx_},
        {L"Ry", &CNodalBoundaryCondition::ry_},
        {L"Rz", &CNodalBoundaryCondition::rz_},
    });
  }

  STDMETHODIMP get_Tx(VARIANT_BOOL* pVal) override { return get_normalised(tx_, pVal); }
  STDMETHODIMP put_Tx(VARIANT_BOOL newVal) override { return put(tx_, newVal); }
  STDMETHODIMP get_Ty(VARIANT_BOOL* pVal) override { return get_normalised(ty_, pVal); }
  STDMETHODIMP put_Ty(VARIANT_BOOL newVal) override { return put(ty_, newVal); }
  STDMETHODIMP get_Tz(VARIANT_BOOL* pVal) override { return get_normalised(tz_, pVal); }
  STDMETHODIMP put_Tz(VARIANT_BOOL newVal) override { return put(tz_, newVal); }
  STDMETHODIMP get_Rx(VARIANT_BOOL* pVal) override { return get_normalised(rx_, pVal); }
  STDMETHODIMP put_Rx(VARIANT_BOOL newVal) override { return put(rx_, newVal); }
  STDMETHODIMP get_Ry(VARIANT_BOOL* pVal) override { return get_normalised(ry_, pVal); }
  STDMETHODIMP put_Ry(VARIANT_BOOL newVal) override { return put(ry_, newVal); }
  STDMETHODIMP get_Rz(VARIANT_BOOL* pVal) override { return get_normalised(rz_, pVal); }
  STDMETHODIMP put_Rz(VARIANT_BOOL newVal) override { return put(rz_, newVal); }

 private:
  Flag tx_;
  Flag ty_;
  Flag tz_;
  Flag rx_;
  Flag ry_;
  Flag rz_;
};

}  // namespace orv
