#pragma once

#include "modeldb/objects/host_object.h"
#include "modeldb/schema/host_kinds.h"

namespace modeldb {

/// A set that records belong to: a load set, a constraint set or a design scenario. Its description
/// is its name.
template <class Interface, const Kind& (*kind)(), long event>
class Set : public HostObject<Set<Interface, kind, event>, Interface, Identity::kInOneModel> {
 public:
  static constexpr long kEventType = event;

  static const Table& table() {
    static const Table table(kind());
    return table;
  }

  /// The row is the set's own.
  void load_row(IDispatch*, const ColumnReader& row) {
    if (const auto name = row.try_read(L"Description", VT_BSTR)) {
      this->image().store_description(com::Bstr::view(name->get().bstrVal));
    }
  }
};

using LoadSet = Set<ILoadSet, load_set_kind, 2>;
using ConstraintSet = Set<IConstraintSet, constraint_set_kind, 3>;
using DesignScenario = Set<IDesignScenario, design_scenario_kind, 4>;

}  // namespace modeldb
