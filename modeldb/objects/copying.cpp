#include "modeldb/objects/copying.h"

#include <string>

#include "com/type_description.h"
#include "com/variant.h"
#include "modeldb/ado/factories.h"
#include "modeldb/schema/definition.h"
#include "modeldb/schema/host_kinds.h"
#include "modeldb/store/record.h"

namespace modeldb {
namespace {

/// A property of an object by its number, as a script reads and puts it.
com::Variant get(IDispatch& object, DISPID member) {
  DISPPARAMS none{};
  com::Variant value;
  com::check(object.Invoke(member, IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYGET, &none,
                           value.put(), nullptr, nullptr));
  return value;
}

void put(IDispatch& object, DISPID member, const com::Variant& value) {
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{com::mutable_address(value), &named, 1, 1};
  com::check(object.Invoke(member, IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYPUT, &parameters,
                           nullptr, nullptr, nullptr));
}

com::Ptr<ITypeInfo> type_info_of(IDispatch& object) {
  com::Ptr<ITypeInfo> info;
  com::check(object.GetTypeInfo(0, LOCALE_NEUTRAL, info.put()));
  return info;
}

/// What a property of that name holds; empty when there is none, or nothing in it.
com::Ptr<IDispatch> object_in(IDispatch& owner, const com::Ptr<ITypeInfo>& info,
                              const std::wstring& property) {
  auto* name = const_cast<LPOLESTR>(property.c_str());
  MEMBERID member = MEMBERID_NIL;
  if (FAILED(info->GetIDsOfNames(&name, 1, &member))) return nullptr;
  DISPPARAMS none{};
  com::Variant value;
  if (FAILED(owner.Invoke(member, IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYGET, &none,
                          value.put(), nullptr, nullptr)) ||
      value.type() != VT_DISPATCH) {
    return nullptr;
  }
  return value.get().pdispVal;
}

template <class Interface>
com::Ptr<Interface> query(const com::Ptr<IDispatch>& object, REFIID iid) {
  com::Ptr<Interface> found;
  if (object) object->QueryInterface(iid, found.put_void());
  return found;
}

/// Every value that can be read and put; not what stands for the row.
void copy_values(IDispatch& from, IDispatch& to, const com::Ptr<ITypeInfo>& info) {
  const com::TypeAttributes attributes(info);
  for (UINT index = 0; index < attributes->cFuncs; ++index) {
    const com::FunctionDescription function(info, index);
    if (function->invkind != INVOKE_PROPERTYPUT || function->cParams != 1) continue;
    if (function->lprgelemdescParam[0].tdesc.vt == VT_PTR) continue;
    const com::Bstr name = com::name_of(info, function->memid);
    if (name.view() == L"ID" || name.view() == L"IsDirty") continue;
    put(to, function->memid, get(from, function->memid));
  }
}

/// Has a vertex stand for the same vertex as another. Its values are left to the model: many a
/// vertex is named by its ID alone. A new one has nothing but its values.
void copy_vertex(const Model& model, IModelDatabase* database, IDispatch& from, IDispatch& to,
                 const com::Ptr<ITypeInfo>& info) {
  const auto original = object_in(from, info, L"Vertex");
  const auto copy =
      query<IPersistentObject>(object_in(to, info, L"Vertex"), vertex_kind().object_interface);
  const auto known = query<IPersistentObject>(original, vertex_kind().object_interface);
  if (!known || !copy) return;
  long id = 0;
  com::check(known->get_ID(&id));
  if (id == 0) return copy_values(*original, *copy, type_info_of(*original));
  const auto row =
      make_recordset(model.database(), L"SELECT * FROM " + vertex_kind().table + L" WHERE " +
                                           vertex_kind().key + L" = " + std::to_wstring(id));
  VARIANT_BOOL is_missing = VARIANT_TRUE;
  com::check(row->get_EOF(&is_missing), row);
  com::check(is_missing ? copy->put_ID(id)
                        : copy->LoadFromCurrentRecordsetPosition(database, row.get(), nullptr));
}

/// Puts a record into the sets of another.
void copy_sets(IDispatch& from, IDispatch& to, const com::Ptr<ITypeInfo>& info, const Kind& sets) {
  const auto original =
      query<IPersistentCollection>(object_in(from, info, sets.table), sets.collection_interface);
  const auto copy =
      query<IPersistentCollection>(object_in(to, info, sets.table), sets.collection_interface);
  if (!original || !copy) return;
  long size = 0;
  com::check(original->get_Count(&size));
  for (long index = 0; index < size; ++index) {
    com::Ptr<IDispatch> set;
    com::check(original->Item(static_cast<int>(index), set.put()));
    com::check(copy->Add(set.get()));
  }
}

}  // namespace

com::Ptr<IDispatch> copy_of(const Model& model, IModelDatabase* database, IDispatch* original) {
  const Kind& kind = RecordFinder(model.catalogue()).find(original).kind();
  const auto info = type_info_of(*original);
  com::Ptr<IDispatch> copy;
  com::check(CoCreateInstance(kind.object_class, nullptr, CLSCTX_INPROC_SERVER,
                              kind.object_interface, copy.put_void()));
  copy_values(*original, *copy, info);
  if (stands_on_vertex(kind)) copy_vertex(model, database, *original, *copy, info);
  if (const Table* const sets = model.catalogue().find(kind.sets)) {
    copy_sets(*original, *copy, info, sets->kind());
  }
  return copy;
}

}  // namespace modeldb
