#pragma once

#include <memory>
#include <vector>

#include "com/part.h"
#include "modeldb/ado/field.h"
#include "modeldb/ado/unavailable_fields.h"

namespace modeldb {

/// The fields of a recordset. They are parts of the recordset (`owner`), made when first asked for
/// and kept for its life, so that a field that a client holds never dangles and reading one costs
/// nothing but its value.
class AdoFields : public UnavailableFields {
 public:
  AdoFields(IUnknown* owner, const Cursor& cursor) : owner_(owner), cursor_(cursor) {}

  STDMETHODIMP get_Count(LONG* count) override;
  STDMETHODIMP _NewEnum(IUnknown** object) override;
  STDMETHODIMP Refresh() override { return S_OK; }
  /// By number from 0, or by name as Columns::find says. kItemNotFound: there is no such field.
  STDMETHODIMP get_Item(VARIANT index, ::Field** object) override;

  /// The number of the field that `index` names.
  [[nodiscard]] int find(const VARIANT& index) const;
  [[nodiscard]] int count() const { return cursor_.query().columns().size(); }
  [[nodiscard]] ::Field* field(int column);

 private:
  IUnknown* owner_;
  const Cursor& cursor_;
  std::vector<std::unique_ptr<com::Part<AdoField>>> fields_;
};

}  // namespace modeldb
