// The type library of the built module against the catalogue of what it must say.

#include "tests/frame/catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <orv_node.h>

#include <utility>

#include "com/type_description.h"
#include "tests/frame/type_description.h"

namespace {

using com::TypeAttributes;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::Pair;

class Catalogue : public testing::Test {
 protected:
  com::Ptr<ITypeInfo> type(UINT index) const {
    com::Ptr<ITypeInfo> info;
    com::check(library_->GetTypeInfo(index, info.put()));
    return info;
  }

  com::Ptr<ITypeInfo> type(const std::string& name) const {
    for (UINT index = 0; index < library_->GetTypeInfoCount(); ++index) {
      if (frame::documentation(type(index)).name == name) return type(index);
    }
    ADD_FAILURE() << "the library has no type " << name;
    return nullptr;
  }

  com::Ptr<ITypeLib> library_ = frame::load_library();
};

TEST_F(Catalogue, HeaderNamesTheLibrary) {
  com::Bstr name;
  com::Bstr help;
  com::check(library_->GetDocumentation(MEMBERID_NIL, name.put(), help.put(), nullptr, nullptr));
  EXPECT_EQ(name.view(), L"ORV_NODELib");
  EXPECT_EQ(help.view(), L"Orv_Node 1.0 Type Library");

  TLIBATTR* attributes = nullptr;
  com::check(library_->GetLibAttr(&attributes));
  EXPECT_TRUE(IsEqualGUID(attributes->guid, LIBID_ORV_NODELib));
  EXPECT_EQ(attributes->lcid, 0x409u);
  EXPECT_EQ(attributes->wMajorVerNum, 1);
  EXPECT_EQ(attributes->wMinorVerNum, 0);
  EXPECT_EQ(attributes->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
  library_->ReleaseTLibAttr(attributes);
}

TEST_F(Catalogue, TypesStandInTheirOrderAndThereAreNoOthers) {
  std::vector<std::string> expected;
  for (const ExpectedKind& kind : expected_kinds()) {
    for (const std::string& name : {kind.record, kind.collection}) {
      expected.push_back(name);
      expected.push_back("I" + name);
    }
  }
  std::vector<std::string> found;
  for (UINT index = 0; index < library_->GetTypeInfoCount(); ++index) {
    found.push_back(frame::documentation(type(index)).name);
  }
  // The enumeration may stand anywhere.
  EXPECT_EQ(std::erase(found, "ScalarVector"), 1u);
  EXPECT_THAT(found, ElementsAreArray(expected));
}

TEST_F(Catalogue, EnumerationNamesTheDirections) {
  const auto info = type("ScalarVector");
  const TypeAttributes attributes(info);
  ASSERT_EQ(attributes->typekind, TKIND_ENUM);
  EXPECT_EQ(attributes->cbSizeInstance, 4u);

  std::vector<std::pair<std::string, long>> values;
  for (UINT index = 0; index < attributes->cVars; ++index) {
    VARDESC* value = nullptr;
    com::check(info->GetVarDesc(index, &value));
    values.emplace_back(frame::documentation(info, value->memid).name, value->lpvarValue->lVal);
    info->ReleaseVarDesc(value);
  }
  EXPECT_THAT(values, ElementsAre(Pair("SVE_SCALAR_X", 0), Pair("SVE_SCALAR_Y", 1),
                                  Pair("SVE_SCALAR_Z", 2), Pair("SVE_VECTOR", 3)));
}

/// One kind: the class and the interface of its record, and those of its collection.
class CatalogueOfKind : public Catalogue, public testing::WithParamInterface<ExpectedKind> {
 protected:
  void expect_class(const std::string& name) {
    SCOPED_TRACE(name);
    const auto info = type(name);
    const TypeAttributes attributes(info);
    EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
    EXPECT_EQ(attributes->wTypeFlags, TYPEFLAG_FCANCREATE);
    EXPECT_EQ(frame::documentation(info).help, name + " Class");

    ASSERT_EQ(attributes->cImplTypes, 1);
    int flags = 0;
    com::check(info->GetImplTypeFlags(0, &flags));
    EXPECT_EQ(flags, IMPLTYPEFLAG_FDEFAULT);
    EXPECT_EQ(frame::documentation(frame::implemented_type(info, 0)).name, "I" + name);
  }

  void expect_interface(const std::string& name, const std::vector<std::string>& members) {
    SCOPED_TRACE(name);
    const auto dual = type(name);
    const TypeAttributes attributes(dual);
    EXPECT_EQ(attributes->typekind, TKIND_DISPATCH);
    EXPECT_TRUE(attributes->wTypeFlags & TYPEFLAG_FDUAL);
    EXPECT_EQ(frame::documentation(dual).help, name + " Interface");

    const auto table = frame::virtual_table_side(dual);
    EXPECT_EQ(TypeAttributes(table)->typekind, TKIND_INTERFACE);
    // The side for dispatch never shows the mark for automation.
    EXPECT_EQ(TypeAttributes(table)->wTypeFlags,
              TYPEFLAG_FDUAL | TYPEFLAG_FOLEAUTOMATION | TYPEFLAG_FDISPATCHABLE);
    EXPECT_TRUE(IsEqualIID(TypeAttributes(frame::implemented_type(table, 0))->guid, IID_IDispatch));
    EXPECT_THAT(frame::describe_members(table), ElementsAreArray(members));
  }
};

TEST_P(CatalogueOfKind, IsDescribed) {
  const ExpectedKind& kind = GetParam();
  expect_class(kind.record);
  expect_interface("I" + kind.record, catalogue::record_members(kind));
  expect_class(kind.collection);
  expect_interface("I" + kind.collection, catalogue::collection_members(kind));
}

INSTANTIATE_TEST_SUITE_P(AllKinds, CatalogueOfKind, testing::ValuesIn(expected_kinds()),
                         testing::PrintToStringParamName());

}  // namespace
