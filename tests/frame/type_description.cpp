#include "tests/frame/type_description.h"

#include <initializer_list>
#include <map>
#include <utility>

#include "com/bstr.h"
#include "com/type_description.h"
#include "tests/host/journal.h"
#include "tests/host/loaded_module.h"

namespace frame {
namespace {

std::string type_name(const com::Ptr<ITypeInfo>& info, const TYPEDESC& type) {
  static const std::map<VARTYPE, std::string> names = {{VT_I4, "long"},
                                                       {VT_INT, "int"},
                                                       {VT_R8, "double"},
                                                       {VT_BOOL, "VARIANT_BOOL"},
                                                       {VT_BSTR, "BSTR"},
                                                       {VT_VARIANT, "VARIANT"},
                                                       {VT_DISPATCH, "IDispatch*"},
                                                       {VT_UNKNOWN, "IUnknown*"},
                                                       {VT_HRESULT, "HRESULT"}};
  if (type.vt == VT_PTR) return type_name(info, *type.lptdesc) + "*";
  if (type.vt == VT_USERDEFINED) {
    com::Ptr<ITypeInfo> referred;
    com::check(info->GetRefTypeInfo(type.hreftype, referred.put()));
    return documentation(referred).name;
  }
  const auto known = names.find(type.vt);
  return known != names.end() ? known->second : "VARTYPE " + std::to_string(type.vt);
}

std::string invoke_kind(INVOKEKIND kind) {
  static const std::map<INVOKEKIND, std::string> names = {{INVOKE_FUNC, "method"},
                                                          {INVOKE_PROPERTYGET, "get"},
                                                          {INVOKE_PROPERTYPUT, "put"},
                                                          {INVOKE_PROPERTYPUTREF, "putref"}};
  return names.at(kind);
}

using FlagNames = std::initializer_list<std::pair<unsigned, const char*>>;

/// The names of the flags that are set, and what is left of them as a number.
std::string flag_names(unsigned flags, const FlagNames& names) {
  std::string result;
  for (const auto& [flag, name] : names) {
    if (flags & flag) result += result.empty() ? name : std::string(",") + name;
    flags &= ~flag;
  }
  return flags ? result + " and " + std::to_string(flags) : result;
}

const FlagNames kArgumentFlags = {{PARAMFLAG_FIN, "in"},
                                  {PARAMFLAG_FOUT, "out"},
                                  {PARAMFLAG_FRETVAL, "retval"},
                                  {PARAMFLAG_FOPT, "opt"}};
const FlagNames kMemberFlags = {{FUNCFLAG_FHIDDEN, "hidden"}, {FUNCFLAG_FRESTRICTED, "restricted"}};

/// Names of the member and of its arguments.
std::vector<std::string> names_of(const com::Ptr<ITypeInfo>& info,
                                  const com::FunctionDescription& function) {
  std::vector<BSTR> raw(static_cast<std::size_t>(function->cParams) + 1);
  UINT count = 0;
  com::check(info->GetNames(function->memid, raw.data(), static_cast<UINT>(raw.size()), &count));
  std::vector<std::string> names;
  for (const BSTR name : raw) names.push_back(fake::narrow(com::Bstr::adopt(name).view()));
  return names;
}

/// The names of a property's members are those of its first, so that the value of a put has none.
bool is_put(const com::FunctionDescription& function) {
  return function->invkind == INVOKE_PROPERTYPUT || function->invkind == INVOKE_PROPERTYPUTREF;
}

std::string describe(const com::Ptr<ITypeInfo>& info, const com::FunctionDescription& function) {
  const std::vector<std::string> names = names_of(info, function);
  std::string line =
      std::to_string(function->memid) + " " + invoke_kind(function->invkind) + " " + names[0] + "(";
  for (int index = 0; index < function->cParams; ++index) {
    const ELEMDESC& argument = function->lprgelemdescParam[index];
    if (index > 0) line += ", ";
    line += "[" + flag_names(argument.paramdesc.wParamFlags, kArgumentFlags) + "] " +
            type_name(info, argument.tdesc);
    if (!is_put(function)) line += " " + names[static_cast<std::size_t>(index) + 1];
  }
  line += ")";
  const std::string returned = type_name(info, function->elemdescFunc.tdesc);
  if (returned != "HRESULT") line += " returns " + returned;
  const std::string flags = flag_names(function->wFuncFlags, kMemberFlags);
  if (!flags.empty()) line += " " + flags;
  return line;
}

}  // namespace

Documentation documentation(const com::Ptr<ITypeInfo>& info, MEMBERID member) {
  com::Bstr name;
  com::Bstr help;
  com::check(info->GetDocumentation(member, name.put(), help.put(), nullptr, nullptr));
  return {fake::narrow(name.view()), fake::narrow(help.view())};
}

com::Ptr<ITypeInfo> implemented_type(const com::Ptr<ITypeInfo>& info, UINT index) {
  HREFTYPE reference = 0;
  com::check(info->GetRefTypeOfImplType(index, &reference));
  com::Ptr<ITypeInfo> result;
  com::check(info->GetRefTypeInfo(reference, result.put()));
  return result;
}

com::Ptr<ITypeInfo> virtual_table_side(const com::Ptr<ITypeInfo>& dual) {
  constexpr UINT kOtherSide = static_cast<UINT>(-1);
  return implemented_type(dual, kOtherSide);
}

std::vector<std::string> describe_members(const com::Ptr<ITypeInfo>& vtable_side) {
  constexpr UINT kMembersOfDispatch = 7;
  std::vector<std::string> lines;
  const UINT count = com::TypeAttributes(vtable_side)->cFuncs;
  for (UINT index = 0; index < count; ++index) {
    const com::FunctionDescription function(vtable_side, index);
    if (function->oVft != static_cast<int>((kMembersOfDispatch + index) * sizeof(void*))) {
      lines.push_back("The next one stands at " + std::to_string(function->oVft));
    }
    lines.push_back(describe(vtable_side, function) + ": " +
                    documentation(vtable_side, function->memid).help);
  }
  return lines;
}

com::Ptr<ITypeLib> load_library() {
  com::Ptr<ITypeLib> library;
  com::check(
      LoadTypeLibEx(server::built_file(L"orv_node.dll").c_str(), REGKIND_NONE, library.put()));
  return library;
}

}  // namespace frame
