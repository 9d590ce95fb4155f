#pragma once

#include <orv_kinds.h>

#include <array>

#include "kinds/properties.h"
#include "records/nodal_load.h"

namespace orv {

/// A temperature applied to a vertex through a stiffness, possibly varying with time.
class CNodalAppliedTemperature
    : public With<COrvelNodalLoadDbRecord<CNodalAppliedTemperature, INodalAppliedTemperature>,
                  Magnitude, Stiffness, Multiplier, ActivationTime> {
 public:
  static constexpr KindNames kNames{L"NodalAppliedTemperature", L"NodalAppliedTemperatures", 29};

  static constexpr auto columns() {
    return std::to_array<Column<CNodalAppliedTemperature>>({
        {L"MultiplierTableID", &CNodalAppliedTemperature::multiplier_table_id_},
        {L"Magnitude", &CNodalAppliedTemperature::magnitude_},
        {L"Stiffness", &CNodalAppliedTemperature::stiffness_},
        {L"Scale", &CNodalAppliedTemperature::scale_},
        {L"ActivationTime", &CNodalAppliedTemperature::activation_time_},
        {L"IsTimeVarying", &CNodalAppliedTemperature::is_time_varying_},
    });
  }

  STDMETHODIMP get_Scale(double* pVal) override { return get(scale_, pVal); }
  STDMETHODIMP put_Scale(double newVal) override { return put(scale_, newVal); }
  STDMETHODIMP get_IsTimeVarying(VARIANT_BOOL* pVal) override {
    return get_normalised(is_time_varying_, pVal);
  }
  STDMETHODIMP put_IsTimeVarying(VARIANT_BOOL newVal) override {
    return put(is_time_varying_, newVal);
  }

 private:
  Real scale_;
  Flag is_time_varying_;
};

}  // namespace orv
