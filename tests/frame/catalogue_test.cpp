// The type library of the built module against the catalogue of what it must say.

#include "tests/frame/catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "com/bstr.h"
#include "com/type_description.h"
#include "kinds/kinds.h"
#include "tests/frame/type_description.h"

namespace {

using catalogue::Kind;
using com::TypeAttributes;
using testing::ElementsAreArray;

class Catalogue : public testing::Test {
 protected:
  com::Ptr<ITypeInfo> type(UINT index) const {
    com::Ptr<ITypeInfo> info;
    com::check(library_->GetTypeInfo(index, info.put()));
    return info;
  }

  com::Ptr<ITypeInfo> type(std::wstring_view name) const {
    for (UINT index = 0; index < library_->GetTypeInfoCount(); ++index) {
      if (frame::documentation(type(index)).name == name) return type(index);
    }
    ADD_FAILURE() << "the library has no type " << testing::PrintToString(std::wstring(name));
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
  std::vector<std::wstring> expected;
  for (const Kind& kind : catalogue::kinds()) {
    for (const std::wstring_view name : {kind.record, kind.collection}) {
      expected.emplace_back(name);
      expected.push_back(L"I" + std::wstring(name));
    }
  }
  std::vector<std::wstring> found;
  std::size_t enumerations = 0;
  for (UINT index = 0; index < library_->GetTypeInfoCount(); ++index) {
    const std::wstring name = frame::documentation(type(index)).name;
    if (name == L"ScalarVector") {
      ++enumerations;
    } else {
      found.push_back(name);
    }
  }
  EXPECT_THAT(found, ElementsAreArray(expected));
  EXPECT_EQ(enumerations, 1u);
}

TEST_F(Catalogue, EnumerationNamesTheDirections) {
  const auto info = type(L"ScalarVector");
  const TypeAttributes attributes(info);
  ASSERT_EQ(attributes->typekind, TKIND_ENUM);
  EXPECT_EQ(attributes->cbSizeInstance, 4u);

  std::vector<std::pair<std::wstring, long>> values;
  for (UINT index = 0; index < attributes->cVars; ++index) {
    VARDESC* value = nullptr;
    com::check(info->GetVarDesc(index, &value));
    values.emplace_back(frame::documentation(info, value->memid).name, value->lpvarValue->lVal);
    info->ReleaseVarDesc(value);
  }
  const std::vector<std::pair<std::wstring, long>> expected = {
      {L"SVE_SCALAR_X", 0}, {L"SVE_SCALAR_Y", 1}, {L"SVE_SCALAR_Z", 2}, {L"SVE_VECTOR", 3}};
  EXPECT_EQ(values, expected);
}

/// One kind: the class and the interface of its record, and those of its collection.
class CatalogueOfKind : public Catalogue, public testing::WithParamInterface<Kind> {
 protected:
  void expect_class(std::wstring_view name) {
    SCOPED_TRACE(testing::PrintToString(std::wstring(name)));
    const auto info = type(name);
    const TypeAttributes attributes(info);
    EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
    EXPECT_EQ(attributes->wTypeFlags, TYPEFLAG_FCANCREATE);
    EXPECT_EQ(frame::documentation(info).help, std::wstring(name) + L" Class");

    ASSERT_EQ(attributes->cImplTypes, 1);
    int flags = 0;
    com::check(info->GetImplTypeFlags(0, &flags));
    EXPECT_EQ(flags, IMPLTYPEFLAG_FDEFAULT);
    EXPECT_EQ(frame::documentation(frame::implemented_type(info, 0)).name,
              L"I" + std::wstring(name));
  }

  void expect_interface(std::wstring_view class_name, const std::vector<std::wstring>& members) {
    const std::wstring name = L"I" + std::wstring(class_name);
    SCOPED_TRACE(testing::PrintToString(name));
    const auto dual = type(name);
    const TypeAttributes attributes(dual);
    EXPECT_EQ(attributes->typekind, TKIND_DISPATCH);
    EXPECT_TRUE(attributes->wTypeFlags & TYPEFLAG_FDUAL);
    EXPECT_EQ(frame::documentation(dual).help, name + L" Interface");

    const auto table = frame::virtual_table_side(dual);
    EXPECT_EQ(TypeAttributes(table)->typekind, TKIND_INTERFACE);
    // The side for dispatch never shows the mark for automation.
    EXPECT_EQ(TypeAttributes(table)->wTypeFlags,
              TYPEFLAG_FDUAL | TYPEFLAG_FOLEAUTOMATION | TYPEFLAG_FDISPATCHABLE);
    EXPECT_TRUE(IsEqualIID(TypeAttributes(frame::implemented_type(table, 0))->guid, IID_IDispatch));
    EXPECT_THAT(frame::describe_members(table), ElementsAreArray(members));
    EXPECT_THAT(frame::table_offsets(table), ElementsAreArray(offsets_after_dispatch(members)));
  }

 private:
  static std::vector<int> offsets_after_dispatch(const std::vector<std::wstring>& members) {
    constexpr int kMembersOfDispatch = 7;
    std::vector<int> offsets;
    for (std::size_t index = 0; index < members.size(); ++index) {
      offsets.push_back(static_cast<int>((kMembersOfDispatch + index) * sizeof(void*)));
    }
    return offsets;
  }
};

TEST_P(CatalogueOfKind, RecordIsDescribed) {
  expect_class(GetParam().record);
  expect_interface(GetParam().record, catalogue::record_members(GetParam()));
}

TEST_P(CatalogueOfKind, CollectionIsDescribed) {
  expect_class(GetParam().collection);
  expect_interface(GetParam().collection, catalogue::collection_members(GetParam()));
}

std::string narrow_name(const testing::TestParamInfo<Kind>& info) {
  return std::string(info.param.record.begin(), info.param.record.end());
}

INSTANTIATE_TEST_SUITE_P(AllKinds, CatalogueOfKind, testing::ValuesIn(catalogue::kinds()),
                         narrow_name);

// --- Columns against properties ------------------------------------------------------------------

/// A kind's columns as the record class declares them: the property that must reach each, and the
/// types that this property may have.
struct DeclaredColumns {
  std::wstring_view kind;
  std::vector<std::pair<std::wstring_view, std::vector<std::wstring_view>>> columns;
};

std::wstring_view property_of_column(std::wstring_view column) {
  if (column == L"MultiplierTableID") return L"MultiplierID";
  if (column == L"IsRotation") return L"IsRotate";
  if (column == L"SeparateWindow") return L"UseSeparateWindow";
  return column;
}

template <class Record>
std::vector<std::wstring_view> types_of_field(const orv::Column<Record>& column) {
  using Member = typename orv::Column<Record>::Member;
  if (std::holds_alternative<orv::Real Record::*>(column.member)) return {L"double"};
  // The one number of 16 bits that is no truth value to clients.
  if (column.name == L"SeparateWindow") return {L"long"};
  if (column.member.index() == Member(static_cast<orv::Flag Record::*>(nullptr)).index()) {
    return {L"VARIANT_BOOL"};
  }
  return {L"long", L"VARIANT_BOOL", L"ScalarVector"};
}

template <class Record>
DeclaredColumns declared_columns() {
  DeclaredColumns result{Record::kNames.object, {}};
  for (const orv::Column<Record>& column : Record::columns()) {
    result.columns.emplace_back(property_of_column(column.name), types_of_field(column));
  }
  return result;
}

std::vector<DeclaredColumns> all_declared_columns() {
#define KIND(name, collection, script) declared_columns<orv::C##name>(),
  return {FOR_EACH_KIND(KIND)};
#undef KIND
}

TEST(Columns, EveryColumnHasItsPropertyAndEveryPropertyItsColumn) {
  for (const DeclaredColumns& declared : all_declared_columns()) {
    SCOPED_TRACE(testing::PrintToString(std::wstring(declared.kind)));
    const auto kind = std::ranges::find(catalogue::kinds(), declared.kind, &Kind::record);
    ASSERT_NE(kind, catalogue::kinds().end());

    std::vector<std::wstring_view> stored;
    for (const auto& [name, types] : declared.columns) {
      stored.push_back(name);
      EXPECT_THAT(types, testing::Contains(catalogue::property(name).type))
          << testing::PrintToString(std::wstring(name));
    }
    std::vector<std::wstring_view> values;
    std::ranges::copy_if(kind->properties, std::back_inserter(values), [](std::wstring_view name) {
      return !catalogue::property(name).is_reference();
    });
    EXPECT_THAT(stored, testing::UnorderedElementsAreArray(values));
  }
}

}  // namespace
