#include "modeldb/store/script_array.h"

#include <new>

namespace modeldb {

com::Variant script_array(std::span<const long> numbers) {
  com::Variant result;
  VARIANT* const array = result.put();
  array->parray = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(numbers.size()));
  if (!array->parray) throw std::bad_alloc();
  array->vt = VT_ARRAY | VT_VARIANT;
  auto* element = static_cast<VARIANT*>(array->parray->pvData);
  for (const long number : numbers) {
    element->vt = VT_I4;
    (element++)->lVal = number;
  }
  return result;
}

}  // namespace modeldb
