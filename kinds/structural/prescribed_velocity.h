#pragma once

#include <orv_kinds.h>

#include <array>

#include "records/nodal_load.h"

namespace orv {

/// A velocity that a vertex is made to have, along the axes that are used.
class CNodalPrescribedVelocity
    : public COrvelNodalLoadDbRecord<CNodalPrescribedVelocity, INodalPrescribedVelocity> {
 public:
  static constexpr KindNames kNames{L"NodalPrescribedVelocity", L"NodalPrescribedVelocities", 26};

  static constexpr auto columns() {
    return std::to_array<Column<CNodalPrescribedVelocity>>({
        {L"MagnitudeX", &CNodalPrescribedVelocity::magnitude_x_},
        {L"MagnitudeY", &CNodalPrescribedVelocity::magnitude_y_},
        {L"MagnitudeZ", &CNodalPrescribedVelocity::magnitude_z_},
        {L"UseX", &CNodalPrescribedVelocity::use_x_},
        {L"UseY", &CNodalPrescribedVelocity::use_y_},
        {L"UseZ", &CNodalPrescribedVelocity::use_z_},
    });
  }

  STDMETHODIMP get_MagnitudeX(double* pVal) override { return get(magnitude_x_, pVal); }
  STDMETHODIMP put_MagnitudeX(double newVal) override { return put(magnitude_x_, newVal); }
  STDMETHODIMP get_MagnitudeY(double* pVal) override { return get(magnitude_y_, pVal); }
  STDMETHODIMP put_MagnitudeY(double newVal) override { return put(magnitude_y_, newVal); }
  STDMETHODIMP get_MagnitudeZ(double* pVal) override { return get(magnitude_z_, pVal); }
  STDMETHODIMP put_MagnitudeZ(double newVal) override { return put(magnitude_z_, newVal); }

  // These flags come back as the numbers that they hold, unlike all others.
  STDMETHODIMP get_UseX(VARIANT_BOOL* pVal) override { return get(use_x_, pVal); }
  STDMETHODIMP put_UseX(VARIANT_BOOL newVal) override { return put(use_x_, newVal); }
  STDMETHODIMP get_UseY(VARIANT_BOOL* pVal) override { return get(use_y_, pVal); }
  STDMETHODIMP put_UseY(VARIANT_BOOL newVal) override { return put(use_y_, newVal); }
  STDMETHODIMP get_UseZ(VARIANT_BOOL* pVal) override { return get(use_z_, pVal); }
  STDMETHODIMP put_UseZ(VARIANT_BOOL newVal) override { return put(use_z_, newVal); }

 private:
  Real magnitude_x_;
  Real magnitude_y_;
  Real magnitude_z_;
  Flag use_x_;
  Flag use_y_;
  Flag use_z_;
};

}  // namespace orv
