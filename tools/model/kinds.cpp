#include "tools/model/kinds.h"

#include <orv_node.h>

#include <algorithm>
#include <map>

#include "com/type_description.h"
#include "tools/text/failure.h"
#include "tools/text/utf8.h"

namespace model {
namespace {

using Interfaces = std::map<std::string, com::Ptr<ITypeInfo>>;

com::Ptr<ITypeLib> load_library() {
  com::Ptr<ITypeLib> library;
  constexpr LCID kEnglish = 0x409;  // the one language in which the library is registered
  const HRESULT result = LoadRegTypeLib(LIBID_ORV_NODELib, 1, 0, kEnglish, library.put());
  if (FAILED(result)) {
    text::fail(result,
               "The automation server that knows the kinds of record is not registered on this "
               "machine. Register it with \"regsvr32 orv_node.dll\".");
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

/// The default interfaces of the library's creatable classes. Adds the names of those classes that
/// are collections, which are those of the tables, to `tables`.
Interfaces read_library(std::vector<std::string>& tables) {
  const auto library = load_library();
  Interfaces interfaces;
  for (UINT index = 0; index < library->GetTypeInfoCount(); ++index) {
    com::Ptr<ITypeInfo> info;
    com::check(library->GetTypeInfo(index, info.put()));
    const com::TypeAttributes attributes(info);
    if (attributes->typekind != TKIND_COCLASS) continue;
    if (!(attributes->wTypeFlags & TYPEFLAG_FCANCREATE)) continue;
    const std::string name = text::to_utf8(com::name_of(info).view());
    const auto members = default_interface(info);
    if (com::has_member(members, L"GetIndexById")) tables.push_back(name);
    interfaces.emplace(name, members);
  }
  return interfaces;
}

std::string sets_of(const com::Ptr<ITypeInfo>& members) {
  for (const std::string_view sets : kSetTables) {
    if (com::has_member(members, text::to_wide(sets).c_str())) return std::string(sets);
  }
  return {};
}

Kind kind_of(Database& database, const std::string& table, const Interfaces& interfaces) {
  Kind kind;
  kind.table = table;
  const std::vector<Column> columns =
      database.query("SELECT * FROM " + table + " WHERE 1 = 0").columns();
  // The key is the first column: the name of the object, with ID behind it.
  const std::string& key = columns.front().name;
  kind.object = key.substr(0, key.size() - 2);
  for (const Column& column : columns) {
    if (column.name == key || column.name == "Description" || column.name == "VertexID") continue;
    kind.columns.push_back(column.name);
    kind.is_whole.push_back(column.is_whole);
  }
  const auto members = interfaces.find(kind.object);
  if (members != interfaces.end()) kind.sets = sets_of(members->second);
  return kind;
}

std::string folded(std::string_view name) {
  std::string result(name);
  std::ranges::transform(result, result.begin(), [](char c) {
    return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return result;
}

}  // namespace

std::vector<Kind> kinds_of(Database& database) {
  std::vector<std::string> tables;
  const Interfaces interfaces = read_library(tables);
  std::vector<Kind> kinds;
  for (const std::string& table : tables) kinds.push_back(kind_of(database, table, interfaces));
  return kinds;
}

const Kind& find_kind(const std::vector<Kind>& kinds, std::string_view name) {
  const std::string wanted = folded(name);
  for (const Kind& kind : kinds) {
    for (const std::string& own : {folded(kind.table), folded(kind.object)}) {
      if (wanted == own || "nodal" + wanted == own) return kind;
    }
  }
  std::string names;
  for (const Kind& kind : kinds) names += (names.empty() ? "" : ", ") + kind.table;
  text::fail(text::kInvalidArgument, "There is no kind of record \"" + std::string(name) +
                                         "\". The kinds are " + names + ".");
}

std::string key_of_sets(std::string_view table) {
  return std::string(table.substr(0, table.size() - 1)) + "ID";
}

}  // namespace model
