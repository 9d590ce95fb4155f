// The type library of the built module in words, against catalogue.txt: the contract with every
// script and program that was ever written against it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "com/type_description.h"
#include "tests/host/journal.h"
#include "tests/host/loaded_module.h"

namespace {

using Info = com::Ptr<ITypeInfo>;
using Lines = std::vector<std::string>;

std::string identifier(REFGUID guid) {
  wchar_t text[39];
  StringFromGUID2(guid, text, 39);
  return fake::narrow(text);
}

std::string name(const Info& info, MEMBERID member = MEMBERID_NIL) {
  return fake::narrow(com::name_of(info, member).view());
}

std::string help(const Info& info, MEMBERID member = MEMBERID_NIL) {
  com::Bstr text;
  com::check(info->GetDocumentation(member, nullptr, text.put(), nullptr, nullptr));
  return fake::narrow(text.view());
}

std::string type_name(const Info& info, const TYPEDESC& type) {
  static const std::map<VARTYPE, std::string> names = {
      {VT_I4, "long"},       {VT_INT, "int"},           {VT_R8, "double"},
      {VT_BSTR, "BSTR"},     {VT_BOOL, "VARIANT_BOOL"}, {VT_DISPATCH, "IDispatch*"},
      {VT_HRESULT, "error"}, {VT_VARIANT, "VARIANT"},   {VT_UNKNOWN, "IUnknown*"}};
  if (type.vt == VT_PTR) return type_name(info, *type.lptdesc) + "*";
  if (type.vt != VT_USERDEFINED) return names.at(type.vt);
  Info referred;
  com::check(info->GetRefTypeInfo(type.hreftype, referred.put()));
  return name(referred);
}

/// One member: number, sort of call (get 2, put 4, put by reference 8), name, arguments with their
/// flags (in 1, out 2, returned 8, optional 16), flags (restricted 1, hidden 64), and what it is
/// for.
std::string describe(const Info& info, const com::FunctionDescription& function) {
  const auto parameters = static_cast<std::size_t>(function->cParams);
  std::vector<BSTR> names(parameters + 1);
  UINT named = 0;
  com::check(
      info->GetNames(function->memid, names.data(), static_cast<UINT>(names.size()), &named));
  std::string line = std::to_string(function->memid) + " " + std::to_string(function->invkind) +
                     " " + fake::narrow(com::Bstr::adopt(names[0]).view()) + "(";
  for (std::size_t index = 0; index < parameters; ++index) {
    const ELEMDESC& argument = function->lprgelemdescParam[index];
    const com::Bstr argument_name = com::Bstr::adopt(names[index + 1]);
    line += std::to_string(argument.paramdesc.wParamFlags) + " " + type_name(info, argument.tdesc) +
            " " + fake::narrow(argument_name.view()) + ",";
  }
  return line + ") " + type_name(info, function->elemdescFunc.tdesc) + " " +
         std::to_string(function->wFuncFlags) + ": " + help(info, function->memid);
}

Info implemented(const Info& info, UINT index) {
  HREFTYPE reference = 0;
  com::check(info->GetRefTypeOfImplType(index, &reference));
  Info result;
  com::check(info->GetRefTypeInfo(reference, result.put()));
  return result;
}

/// The side of a dual interface that lists the members of the virtual table, in its order. What a
/// member is stands in the list of all members.
std::string describe_table(const Info& info, std::set<std::string>& members) {
  std::string line;
  for (UINT index = 0; index < com::TypeAttributes(info)->cFuncs; ++index) {
    const com::FunctionDescription function(info, index);
    members.insert(describe(info, function));
    line += " " + std::to_string(static_cast<std::size_t>(function->oVft) / sizeof(void*)) + ":" +
            std::to_string(function->memid) + "/" + std::to_string(function->invkind);
  }
  return line;
}

/// One type: its identifier, kind, flags and help string, and what it holds.
std::string describe_type(const Info& info, std::set<std::string>& members) {
  const com::TypeAttributes attributes(info);
  std::string line = name(info) + " " + identifier(attributes->guid) + " " +
                     std::to_string(attributes->typekind) + " " +
                     std::to_string(attributes->wTypeFlags) + " " + help(info);
  for (UINT index = 0; index < attributes->cVars; ++index) {
    VARDESC* value = nullptr;
    com::check(info->GetVarDesc(index, &value));
    line += " " + name(info, value->memid) + "=" + std::to_string(value->lpvarValue->lVal);
    info->ReleaseVarDesc(value);
  }
  if (attributes->typekind == TKIND_COCLASS) line += " of " + name(implemented(info, 0));
  if (attributes->typekind != TKIND_DISPATCH) return line;
  constexpr UINT kOtherSide = static_cast<UINT>(-1);
  const Info table = implemented(info, kOtherSide);
  return line + " " + std::to_string(com::TypeAttributes(table)->wTypeFlags) + " from " +
         name(implemented(table, 0)) + describe_table(table, members);
}

Lines describe_library(const com::Ptr<ITypeLib>& library) {
  com::Bstr title;
  com::Bstr words;
  com::check(library->GetDocumentation(-1, title.put(), words.put(), nullptr, nullptr));
  TLIBATTR* attributes = nullptr;
  com::check(library->GetLibAttr(&attributes));
  Lines lines = {fake::narrow(title.view()) + " " + identifier(attributes->guid) + " " +
                 std::to_string(attributes->wMajorVerNum) + "." +
                 std::to_string(attributes->wMinorVerNum) + " " + std::to_string(attributes->lcid) +
                 " " + fake::narrow(words.view())};
  library->ReleaseTLibAttr(attributes);
  std::set<std::string> members;
  for (UINT index = 0; index < library->GetTypeInfoCount(); ++index) {
    Info info;
    com::check(library->GetTypeInfo(index, info.put()));
    lines.push_back(describe_type(info, members));
  }
  lines.insert(lines.end(), members.begin(), members.end());
  return lines;
}

TEST(Catalogue, IsWhatClientsWereBuiltAgainst) {
  const std::filesystem::path checkout = server::environment(L"ORV_SOURCE_DIR");
  std::ifstream file(checkout / "tests/frame/catalogue.txt");
  Lines expected;
  for (std::string line; std::getline(file, line);) expected.push_back(line);

  com::Ptr<ITypeLib> library;
  com::check(
      LoadTypeLibEx(server::built_file(L"orv_node.dll").c_str(), REGKIND_NONE, library.put()));
  const Lines found = describe_library(library);
  EXPECT_THAT(found, testing::ElementsAreArray(expected));
  if (!HasFailure()) return;
  for (const std::string& line : found) std::printf("%s\n", line.c_str());
}

}  // namespace
