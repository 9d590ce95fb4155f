#pragma once

#include <orv_kinds.h>

#include <array>

#include "records/nodal_load.h"

namespace orv {

/// A mass at a vertex: the weights in the three directions and the mass moments of inertia about
/// them.
class CNodalLumpedMass : public COrvelNodalLoadDbRecord<CNodalLumpedMass, INodalLumpedMass> {
 public:
  static constexpr KindNames kNames{L"NodalLumpedMass", L"NodalLumpedMasses", 22};

  static constexpr auto columns() {
    return std::to_array<Column<CNodalLumpedMass>>({
        {L"Wx", &CNodalLumpedMass::wx_},
        {L"Wy", &CNodalLumpedMass::wy_},
        {L"Wz", &CNodalLumpedMass::wz_},
        {L"Mx", &CNodalLumpedMass::mx_},
        {L"My", &CNodalLumpedMass::my_},
        {L"Mz", &CNodalLumpedMass::mz_},
        {L"UseMassUnits", &CNodalLumpedMass::use_mass_units_},
    });
  }

  STDMETHODIMP get_Wx(double* pVal) override { return get(wx_, pVal); }
  STDMETHODIMP put_Wx(double newVal) override { return put(wx_, newVal); }
  STDMETHODIMP get_Wy(double* pVal) override { return get(wy_, pVal); }
  STDMETHODIMP put_Wy(double newVal) override { return put(wy_, newVal); }
  STDMETHODIMP get_Wz(double* pVal) override { return get(wz_, pVal); }
  STDMETHODIMP put_Wz(double newVal) override { return put(wz_, newVal); }
  STDMETHODIMP get_Mx(double* pVal) override { return get(mx_, pVal); }
  STDMETHODIMP put_Mx(double newVal) override { return put(mx_, newVal); }
  STDMETHODIMP get_My(double* pVal) override { return get(my_, pVal); }
  STDMETHODIMP put_My(double newVal) override { return put(my_, newVal); }
  STDMETHODIMP get_Mz(double* pVal) override { return get(mz_, pVal); }
  STDMETHODIMP put_Mz(double newVal) override { return put(mz_, newVal); }

  /// True when the values were entered as mass, false for weight.
  STDMETHODIMP get_UseMassUnits(VARIANT_BOOL* pVal) override {
    return get_normalised(use_mass_units_, pVal);
  }
  STDMETHODIMP put_UseMassUnits(VARIANT_BOOL newVal) override {
    return put(use_mass_units_, newVal);
  }

 private:
  Real wx_;
  Real wy_;
  Real wz_;
  Real mx_;
  Real my_;
  Real mz_;
  Flag use_mass_units_;
};

}  // namespace orv
