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

inline const Membership kLoad{"LoadSet", "NodalForce", L"LoadSets", __uuidof(NodalForce),
                              __uuidof(INodalForce)};
inline const Membership kConstraint{"ConstraintSet", "NodalBoundaryCondition", L"ConstraintSets",
                                    __uuidof(NodalBoundaryCondition),
                                    __uuidof(INodalBoundaryCondition)};
inline const Membership kProbe{"DesignScenario", "NodalProbe", L"DesignScenarios",
                               __uuidof(NodalProbe), __uuidof(INodalProbe)};

class MembershipTest : public server::Test, public ::testing::WithParamInterface<Membership> {
 protected:
  const Membership& m() const { return GetParam(); }
};
