#pragma once

#include "com/aliased.h"
#include "modeldb/objects/host_object.h"
#include "modeldb/schema/host_kinds.h"

namespace modeldb {

/// A node of the model, with its coordinates in the model's unit of length.
///
/// A load or constraint names its node by the ID alone as often as not: coordinates that a script
/// did not put are never written over those that the model has.
///
/// Node 12 of one model is node 12 of the next, wherever it lies there.
class Vertex : public com::Aliased<HostObject<Vertex, ICoordinateVertex, Identity::kByNumber>,
                                   ICoordinateVertex, com::NamesOf<IVertex>> {
 public:
  static constexpr long kEventType = 1;
  static const Table& table();

  STDMETHODIMP get_X(double* pVal) override { return get(0, pVal); }
  STDMETHODIMP put_X(double newVal) override { return put(0, newVal); }
  STDMETHODIMP get_Y(double* pVal) override { return get(1, pVal); }
  STDMETHODIMP put_Y(double newVal) override { return put(1, newVal); }
  STDMETHODIMP get_Z(double* pVal) override { return get(2, pVal); }
  STDMETHODIMP put_Z(double newVal) override { return put(2, newVal); }

  /// The row is that of a load or constraint, which has the vertex's ID: everything else comes from
  /// the model's own table, or else from coordinates that the row may have by a join.
  void load_row(IDispatch* model_database, const ColumnReader& row);

 private:
  HRESULT get(std::size_t coordinate, double* value) {
    *value = image().number(coordinate);
    return S_OK;
  }
  HRESULT put(std::size_t coordinate, double value) {
    image().put_number(coordinate, value);
    touch();
    return S_OK;
  }
};

}  // namespace modeldb
