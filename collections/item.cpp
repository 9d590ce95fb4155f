#include "collections/item.h"

#include "kinds/kinds.h"

namespace orv {
namespace {

#define KIND(name, collection, script) &__uuidof(I##name),
const IID* const kRecordInterfaces[] = {FOR_EACH_KIND(KIND)};
#undef KIND

com::Ptr<IPersistentObject> query_record(IUnknown* object, REFIID iid) {
  com::Ptr<IPersistentObject> record;
  object->QueryInterface(iid, record.put_void());
  return record;
}

}  // namespace

com::Ptr<IPersistentObject> as_record(IUnknown* object, REFIID likely) {
  com::Ptr<IPersistentObject> record = query_record(object, likely);
  for (const IID* const iid : kRecordInterfaces) {
    if (record) break;
    record = query_record(object, *iid);
  }
  return record;
}

}  // namespace orv
