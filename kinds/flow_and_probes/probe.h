#pragma once

#include <orv_kinds.h>

#include <array>

#include "kinds/properties.h"
#include "records/db_record.h"

namespace orv {

/// Marks a vertex as a point whose results are watched. A probe belongs to design scenarios; it
/// writes them but never reads them back: a load leaves the collection that it holds.
class CNodalProbe
    : public With<COrvelDbRecord<CNodalProbe, INodalProbe, DesignScenarioTraits>, Type> {
 public:
  static constexpr KindNames kNames{L"NodalProbe", L"NodalProbes", 37};

  static constexpr auto columns() {
    return std::to_array<Column<CNodalProbe>>({
        {L"Type", &CNodalProbe::type_},
        {L"SeparateWindow", &CNodalProbe::separate_window_},
    });
  }

  /// The low 16 bits of what was put, with their sign.
  STDMETHODIMP get_UseSeparateWindow(long* pVal) override { return get(separate_window_, pVal); }
  STDMETHODIMP put_UseSeparateWindow(long newVal) override { return put(separate_window_, newVal); }

  /// E_POINTER: the record holds no collection.
  STDMETHODIMP get_DesignScenarios(IDispatch** pVal) override { return get_sets(pVal); }
  /// E_POINTER: `newVal` is null; the record is left without a collection.
  STDMETHODIMP putref_DesignScenarios(IDispatch* newVal) override { return put_sets(newVal); }

 private:
  void load_rest(IDispatch* database, IDispatch* recordset, const RowReader& row,
                 com::Outcome& outcome) override {
    load_kind_columns(row, outcome);
    load_vertex(database, recordset, outcome);
    mark_clean();
  }

  Flag separate_window_;
};

}  // namespace orv
