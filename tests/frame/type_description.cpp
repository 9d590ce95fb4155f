#include "tests/frame/type_description.h"

#include <string_view>
#include <utility>

#include "com/bstr.h"
#include "com/type_description.h"
#include "tests/frame/module_file.h"

namespace frame {
namespace {

std::wstring type_name(const com::Ptr<ITypeInfo>& info, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_I4:
      return L"long";
    case VT_INT:
      return L"int";
    case VT_R8:
      return L"double";
    case VT_BOOL:
      return L"VARIANT_BOOL";
    case VT_BSTR:
      return L"BSTR";
    case VT_VARIANT:
      return L"VARIANT";
    case VT_DISPATCH:
      return L"IDispatch*";
    case VT_UNKNOWN:
      return L"IUnknown*";
    case VT_HRESULT:
      return L"HRESULT";
    case VT_PTR:
      return type_name(info, *type.lptdesc) + L"*";
    case VT_USERDEFINED: {
      com::Ptr<ITypeInfo> referred;
      com::check(info->GetRefTypeInfo(type.hreftype, referred.put()));
      return documentation(referred).name;
    }
    default:
      return L"VARTYPE " + std::to_wstring(type.vt);
  }
}

std::wstring invoke_kind(INVOKEKIND kind) {
  switch (kind) {
    case INVOKE_FUNC:
      return L"method";
    case INVOKE_PROPERTYGET:
      return L"get";
    case INVOKE_PROPERTYPUT:
      return L"put";
    case INVOKE_PROPERTYPUTREF:
      return L"putref";
  }
  return L"?";
}

/// The names of the flags that are set, and what is left of them as a number.
template <std::size_t size>
std::wstring flag_names(unsigned flags, const std::pair<unsigned, std::wstring_view> (&names)[size],
                        std::wstring_view separator) {
  std::wstring result;
  const auto append = [&](std::wstring_view name) {
    if (!result.empty()) result += separator;
    result += name;
  };
  for (const auto& [flag, name] : names) {
    if (flags & flag) append(name);
    flags &= ~flag;
  }
  if (flags) append(std::to_wstring(flags));
  return result;
}

std::wstring argument_flags(USHORT flags) {
  static constexpr std::pair<unsigned, std::wstring_view> kNames[] = {
      {PARAMFLAG_FIN, L"in"},
      {PARAMFLAG_FOUT, L"out"},
      {PARAMFLAG_FRETVAL, L"retval"},
      {PARAMFLAG_FOPT, L"opt"},
  };
  return flag_names(flags, kNames, L",");
}

std::wstring member_flags(WORD flags) {
  static constexpr std::pair<unsigned, std::wstring_view> kNames[] = {
      {FUNCFLAG_FHIDDEN, L"hidden"},
      {FUNCFLAG_FRESTRICTED, L"restricted"},
  };
  return flag_names(flags, kNames, L" ");
}

/// Names of the member and of its arguments.
std::vector<std::wstring> names_of(const com::Ptr<ITypeInfo>& info,
                                   const com::FunctionDescription& function) {
  std::vector<BSTR> raw(static_cast<std::size_t>(function->cParams) + 1);
  UINT count = 0;
  com::check(info->GetNames(function->memid, raw.data(), static_cast<UINT>(raw.size()), &count));
  std::vector<std::wstring> names;
  for (const BSTR name : raw) names.emplace_back(com::Bstr::adopt(name).view());
  return names;
}

/// The names of a property's members are those of its first, so that the value of a put has none.
bool is_put(const com::FunctionDescription& function) {
  return function->invkind == INVOKE_PROPERTYPUT || function->invkind == INVOKE_PROPERTYPUTREF;
}

std::wstring describe(const com::Ptr<ITypeInfo>& info, const com::FunctionDescription& function) {
  const std::vector<std::wstring> names = names_of(info, function);
  std::wstring line = std::to_wstring(function->memid) + L" " + invoke_kind(function->invkind) +
                      L" " + names[0] + L"(";
  for (int index = 0; index < function->cParams; ++index) {
    const ELEMDESC& argument = function->lprgelemdescParam[index];
    if (index > 0) line += L", ";
    line += L"[" + argument_flags(argument.paramdesc.wParamFlags) + L"] " +
            type_name(info, argument.tdesc);
    if (!is_put(function)) line += L" " + names[static_cast<std::size_t>(index) + 1];
  }
  line += L")";
  const std::wstring returned = type_name(info, function->elemdescFunc.tdesc);
  if (returned != L"HRESULT") line += L" returns " + returned;
  const std::wstring flags = member_flags(function->wFuncFlags);
  if (!flags.empty()) line += L" " + flags;
  return line;
}

}  // namespace

Documentation documentation(const com::Ptr<ITypeInfo>& info, MEMBERID member) {
  com::Bstr name;
  com::Bstr help;
  com::check(info->GetDocumentation(member, name.put(), help.put(), nullptr, nullptr));
  return {std::wstring(name.view()), std::wstring(help.view())};
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

std::vector<std::wstring> describe_members(const com::Ptr<ITypeInfo>& vtable_side) {
  std::vector<std::wstring> lines;
  const UINT count = com::TypeAttributes(vtable_side)->cFuncs;
  for (UINT index = 0; index < count; ++index) {
    const com::FunctionDescription function(vtable_side, index);
    lines.push_back(describe(vtable_side, function) + L": " +
                    documentation(vtable_side, function->memid).help);
  }
  return lines;
}

std::vector<int> table_offsets(const com::Ptr<ITypeInfo>& vtable_side) {
  std::vector<int> offsets;
  const UINT count = com::TypeAttributes(vtable_side)->cFuncs;
  for (UINT index = 0; index < count; ++index) {
    offsets.push_back(com::FunctionDescription(vtable_side, index)->oVft);
  }
  return offsets;
}

com::Ptr<ITypeLib> load_library() {
  com::Ptr<ITypeLib> library;
  com::check(LoadTypeLibEx(module_file(L"orv_node.dll").c_str(), REGKIND_NONE, library.put()));
  return library;
}

}  // namespace frame
