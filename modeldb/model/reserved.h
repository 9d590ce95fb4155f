#pragma once

#include <orv_host.h>

// The positions that the contract leaves free and that nothing uses.

#define RESERVED(position) \
  STDMETHODIMP Reserved##position() override { return E_NOTIMPL; }

namespace modeldb {

template <class Base>
class ReservedDatabaseMembers : public Base {
 public:
  using Base::Base;

  RESERVED(1) RESERVED(2) RESERVED(3) RESERVED(4) RESERVED(5) RESERVED(6) RESERVED(9)
};

template <class Base>
class ReservedStoreMembers : public Base {
 public:
  using Base::Base;

  // The formatter takes the list for one growing expression.
  // clang-format off
  RESERVED(1) RESERVED(2) RESERVED(3)
  RESERVED(6) RESERVED(7) RESERVED(8) RESERVED(9) RESERVED(10) RESERVED(11) RESERVED(12)
  RESERVED(13) RESERVED(14) RESERVED(15) RESERVED(16) RESERVED(17) RESERVED(18) RESERVED(19)
  RESERVED(20) RESERVED(21) RESERVED(22) RESERVED(23) RESERVED(24) RESERVED(25) RESERVED(26)
  RESERVED(27) RESERVED(28) RESERVED(29) RESERVED(30)
  // clang-format on
};

}  // namespace modeldb

#undef RESERVED
