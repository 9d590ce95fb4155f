#pragma once

#include <ostream>
#include <string>

#include "tests/host/server.h"

/// A kind of record for each of the three memberships; what holds for one holds for all.
struct Membership {
  std::string set;
  std::string object;
  const wchar_t* property;
  CLSID class_id;
  IID interface_id;

  [[nodiscard]] std::string sets() const { return set + "s"; }
  /// The link table.
  [[nodiscard]] std::string links() const { return object + sets(); }
  [[nodiscard]] com::Ptr<IPersistentObject> make() const {
    return server::as_record(server::make(class_id).get(), interface_id);
  }
  friend std::ostream& operator<<(std::ostream& out, const Membership& membership) {
    return out << membership.sets();
  }
};

inline const Membership kMemberships[] = {
    {"LoadSet", "NodalForce", L"LoadSets", __uuidof(NodalForce), __uuidof(INodalForce)},
    {"ConstraintSet", "NodalBoundaryCondition", L"ConstraintSets", __uuidof(NodalBoundaryCondition),
     __uuidof(INodalBoundaryCondition)},
    {"DesignScenario", "NodalProbe", L"DesignScenarios", __uuidof(NodalProbe),
     __uuidof(INodalProbe)},
};

/// Base of tests that run for each membership.
class MembershipTest : public server::Test, public ::testing::WithParamInterface<Membership> {
 protected:
  const Membership& m() const { return GetParam(); }

  /// The collection of sets that a record holds.
  [[nodiscard]] com::Ptr<IDispatch> sets_of(const com::Ptr<IPersistentObject>& record) const {
    return com::Ptr<IDispatch>(server::LateBound(record).get(m().property).get().pdispVal);
  }
};

#define FOR_EACH_MEMBERSHIP(fixture)                                        \
  INSTANTIATE_TEST_SUITE_P(All, fixture, ::testing::ValuesIn(kMemberships), \
                           ::testing::PrintToStringParamName())
