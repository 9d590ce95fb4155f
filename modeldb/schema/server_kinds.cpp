#include "modeldb/schema/server_kinds.h"

#include <orv_host.h>
#include <orv_node.h>

#include <map>
#include <ranges>
#include <string_view>

#include "com/type_description.h"
#include "host/protocol.h"
#include "modeldb/base/failure.h"
#include "modeldb/schema/host_kinds.h"

namespace modeldb {
namespace {

/// A creatable class of the library and its default interface.
struct Class {
  CLSID id;
  com::Ptr<ITypeInfo> interface_info;
};
using Classes = std::map<std::wstring, Class, std::less<>>;

com::Ptr<ITypeLib> load_library() {
  com::Ptr<ITypeLib> library;
  constexpr LCID kEnglish = 0x409;  // the one language in which the library is registered
  const HRESULT result = LoadRegTypeLib(LIBID_ORV_NODELib, 1, 0, kEnglish, library.put());
  if (FAILED(result)) {
    fail(result,
         L"The automation server that knows the kinds of record is not registered on this "
         L"machine. Register it with \"regsvr32 orv_node.dll\" and open the model again.");
  }
  return library;
}

com::Ptr<ITypeInfo> default_interface(const com::Ptr<ITypeInfo>& class_info) {
  HREFTYPE reference = 0;
  com::check(class_info->GetRefTypeOfImplType(0, &reference));
  com::Ptr<ITypeInfo> info;
  com::check(class_info->GetRefTypeInfo(reference, info.put()));
  return info;
}

Classes creatable_classes(const com::Ptr<ITypeLib>& library) {
  Classes classes;
  for (UINT index = 0; index < library->GetTypeInfoCount(); ++index) {
    com::Ptr<ITypeInfo> info;
    com::check(library->GetTypeInfo(index, info.put()));
    const com::TypeAttributes attributes(info);
    if (attributes->typekind != TKIND_COCLASS) continue;
    if (!(attributes->wTypeFlags & TYPEFLAG_FCANCREATE)) continue;
    classes.emplace(com::name_of(info).view(), Class{attributes->guid, default_interface(info)});
  }
  return classes;
}

bool is_record(const Class& candidate) {
  return com::has_member(candidate.interface_info, L"SqlString") &&
         com::has_member(candidate.interface_info, L"FileOpHelper");
}

/// A record to ask about its kind. Every record interface begins with IPersistentObject's members.
com::Ptr<IPersistentObject> make_sample(const std::wstring& name, const Class& record_class) {
  const com::TypeAttributes attributes(record_class.interface_info);
  com::Ptr<IPersistentObject> record;
  const HRESULT result = CoCreateInstance(record_class.id, nullptr, CLSCTX_INPROC_SERVER,
                                          attributes->guid, record.put_void());
  if (FAILED(result)) {
    fail(result, L"The automation server cannot create a " + name +
                     L". Register it anew with \"regsvr32 orv_node.dll\".");
  }
  return record;
}

std::wstring piece(const com::Ptr<IPersistentObject>& record, host::SqlPiece code) {
  com::Bstr text;
  com::check(record->get_SqlString(static_cast<long>(code), text.put()));
  return std::wstring(text.view());
}

/// The types of the record's properties. Their columns bear the same names.
std::map<std::wstring, VARTYPE, std::less<>> property_types(const com::Ptr<ITypeInfo>& info) {
  std::map<std::wstring, VARTYPE, std::less<>> types;
  const com::TypeAttributes attributes(info);
  for (UINT index = 0; index < attributes->cFuncs; ++index) {
    const com::FunctionDescription function(info, index);
    if (function->invkind != INVOKE_PROPERTYPUT || function->cParams != 1) continue;
    types.emplace(com::name_of(info, function->memid).view(),
                  function->lprgelemdescParam[0].tdesc.vt);
  }
  return types;
}

Column number_column(const std::wstring& name, VARTYPE property) {
  if (property == VT_R8) return {name, ColumnType::kReal};
  return {name, ColumnType::kInteger, property == VT_BOOL ? INT16_MAX : INT32_MAX};
}

/// A record's columns: the description first, then numbers.
std::vector<Column> columns_of(const com::Ptr<IPersistentObject>& record,
                               const com::Ptr<ITypeInfo>& info) {
  const auto types = property_types(info);
  const std::wstring names = piece(record, host::SqlPiece::kColumns);
  std::vector<Column> columns;
  for (const auto part : std::views::split(names, std::wstring_view(L", "))) {
    const std::wstring name(part.begin(), part.end());
    const auto type = types.find(name);
    const VARTYPE property = type == types.end() ? static_cast<VARTYPE>(VT_I4) : type->second;
    columns.push_back(columns.empty() ? Column{name, ColumnType::kText}
                                      : number_column(name, property));
  }
  return columns;
}

/// The table of the sets that such a record belongs to.
std::wstring sets_of(const com::Ptr<ITypeInfo>& info) {
  for (const Kind* const sets :
       {&load_set_kind(), &constraint_set_kind(), &design_scenario_kind()}) {
    if (com::has_member(info, sets->table.c_str())) return sets->table;
  }
  return {};
}

Kind kind_of(const std::wstring& name, const Class& record_class, const Classes& classes) {
  const auto& info = record_class.interface_info;
  const auto record = make_sample(name, record_class);

  Kind kind{};
  kind.table = piece(record, host::SqlPiece::kTable);
  kind.key = piece(record, host::SqlPiece::kKeyColumn);
  // The key column is the object name followed by ID.
  kind.object = kind.key.substr(0, kind.key.size() - 2);
  kind.columns = columns_of(record, info);
  kind.sets = sets_of(info);
  kind.object_interface = com::TypeAttributes(info)->guid;
  kind.object_class = record_class.id;
  // A collection's class bears the name of the table.
  const auto collection = classes.find(kind.table);
  if (collection == classes.end()) {
    fail(E_UNEXPECTED, L"The automation server has no collection class " + kind.table + L".");
  }
  kind.collection_class = collection->second.id;
  kind.collection_interface = com::TypeAttributes(collection->second.interface_info)->guid;
  return kind;
}

}  // namespace

std::vector<Kind> server_kinds() {
  const Classes classes = creatable_classes(load_library());
  std::vector<Kind> kinds;
  for (const auto& [name, candidate] : classes) {
    if (is_record(candidate)) kinds.push_back(kind_of(name, candidate, classes));
  }
  return kinds;
}

}  // namespace modeldb
