#pragma once

#include "records/field.h"

// Properties that several kinds have, each written once: the accessors and the field behind them.
// A kind is put together by With<its record template, the properties...>.

namespace orv {

namespace detail {

template <class Record, template <class> class... Properties>
struct Compose {
  using Type = Record;
};
template <class Record, template <class> class First, template <class> class... Rest>
struct Compose<Record, First, Rest...> {
  using Type = typename Compose<First<Record>, Rest...>::Type;
};

}  // namespace detail

template <class Record, template <class> class... Properties>
using With = typename detail::Compose<Record, Properties...>::Type;

/// The size of the load or support, in the unit of its kind.
template <class Record>
class Magnitude : public Record {
 public:
  STDMETHODIMP get_Magnitude(double* pVal) override { return this->get(magnitude_, pVal); }
  STDMETHODIMP put_Magnitude(double newVal) override { return this->put(magnitude_, newVal); }

 protected:
  Real magnitude_;
};

/// The vector along which, or about which, the record acts.
template <class Record>
class Vector : public Record {
 public:
  STDMETHODIMP get_Vx(double* pVal) override { return this->get(vx_, pVal); }
  STDMETHODIMP put_Vx(double newVal) override { return this->put(vx_, newVal); }
  STDMETHODIMP get_Vy(double* pVal) override { return this->get(vy_, pVal); }
  STDMETHODIMP put_Vy(double newVal) override { return this->put(vy_, newVal); }
  STDMETHODIMP get_Vz(double* pVal) override { return this->get(vz_, pVal); }
  STDMETHODIMP put_Vz(double newVal) override { return this->put(vz_, newVal); }

 protected:
  Real vx_;
  Real vy_;
  Real vz_;
};

/// The host's table of factors by which the load is multiplied.
template <class Record>
class Multiplier : public Record {
 public:
  STDMETHODIMP get_MultiplierID(long* pVal) override {
    return this->get(multiplier_table_id_, pVal);
  }
  STDMETHODIMP put_MultiplierID(long newVal) override {
    return this->put(multiplier_table_id_, newVal);
  }

 protected:
  Integer multiplier_table_id_{1};
};

/// The host's coordinate system in which the vector is given; 0 by default.
template <class Record>
class CoordinateSystem : public Record {
 public:
  STDMETHODIMP get_CoordinateSystemID(long* pVal) override {
    return this->get(coordinate_system_id_, pVal);
  }
  STDMETHODIMP put_CoordinateSystemID(long newVal) override {
    return this->put(coordinate_system_id_, newVal);
  }

 protected:
  Integer coordinate_system_id_;
};

/// The stiffness through which a temperature or voltage is applied.
template <class Record>
class Stiffness : public Record {
 public:
  STDMETHODIMP get_Stiffness(double* pVal) override { return this->get(stiffness_, pVal); }
  STDMETHODIMP put_Stiffness(double newVal) override { return this->put(stiffness_, newVal); }

 protected:
  Real stiffness_;
};

/// The stiffness of a support, which is high by default.
template <class Record>
class SupportStiffness : public Stiffness<Record> {
 protected:
  SupportStiffness() { this->stiffness_ = Real(1e10); }
};

/// Whether the record acts on rotations rather than translations; stored in IsRotation.
template <class Record, class FlagField>
class Rotation : public Record {
 public:
  STDMETHODIMP get_IsRotate(VARIANT_BOOL* pVal) override {
    return this->get_normalised(is_rotation_, pVal);
  }
  STDMETHODIMP put_IsRotate(VARIANT_BOOL newVal) override {
    return this->put(is_rotation_, newVal);
  }

 protected:
  FlagField is_rotation_;
};
template <class Record>
using SupportRotation = Rotation<Record, WideFlag>;
template <class Record>
using MotionRotation = Rotation<Record, Flag>;

/// The time at which the load becomes active.
template <class Record>
class ActivationTime : public Record {
 public:
  STDMETHODIMP get_ActivationTime(double* pVal) override {
    return this->get(activation_time_, pVal);
  }
  STDMETHODIMP put_ActivationTime(double newVal) override {
    return this->put(activation_time_, newVal);
  }

 protected:
  Real activation_time_;
};

/// A classification whose numbers the host defines.
template <class Record>
class Type : public Record {
 public:
  STDMETHODIMP get_Type(long* pVal) override { return this->get(type_, pVal); }
  STDMETHODIMP put_Type(long newVal) override { return this->put(type_, newVal); }

 protected:
  Integer type_;
};

}  // namespace orv
