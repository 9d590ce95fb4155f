#pragma once

#include <orv_host.h>

#include <string>
#include <vector>

#include "modeldb/base/failure.h"
#include "modeldb/objects/set.h"
#include "modeldb/store/record_store.h"

namespace modeldb {

/// The numbers of the sets of that name, in their order. Raises kInvalidArgument for no name or one
/// with a NUL, and kIllegalOperation when there are several, so that nobody takes the wrong one.
std::vector<long> require_one_at_most(Database& database, const Kind& kind, std::wstring_view name);

/// The model's set of that name, or a new one, which is saved: the next call finds it, whoever
/// makes it.
template <class Set>
com::Ptr<Set> named_set(RecordStore& store, IModelDatabase* database, std::wstring_view name) {
  const Kind& kind = Set::table().kind();
  const auto rows = store.model()->database();
  auto set = com::make<Set>();
  const auto require_done = [&](HRESULT result) {
    const com::Ptr<IDispatch> object(set.get());
    if (FAILED(result)) com::raise_from(result, object.get(), kind.object_interface);
  };
  // One that is known takes its values from the model, and has nothing to write.
  const auto take = [&](const std::vector<long>& known) {
    require_done(known.empty() ? set->put_Description(com::Bstr(name).get())
                               : set->put_ID(known.front()));
    require_done(set->Save(database, com::Variant::omitted(), com::Variant::omitted()));
  };
  const auto known = require_one_at_most(*rows, kind, name);
  if (!known.empty()) {
    take(known);
    return set;
  }
  store.change_alone([&] {
    rows->engine().claim(kind.table + L" " + std::wstring(name));
    take(require_one_at_most(*rows, kind, name));
  });
  return set;
}

}  // namespace modeldb
