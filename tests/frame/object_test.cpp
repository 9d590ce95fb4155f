// What every object answers beside its own members: identity, aggregation, class and type
// information, error information, and its use from other apartments.

#include <gtest/gtest.h>
#include <orv_node.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "com/type_description.h"
#include "tests/host/apartment.h"
#include "tests/host/loaded_module.h"
#include "tests/kinds/kind.h"

namespace {

com::Ptr<IUnknown> ask(const com::Ptr<IUnknown>& object, REFIID iid) {
  com::Ptr<IUnknown> answer;
  object->QueryInterface(iid, answer.put_void());
  return answer;
}

/// The pointer by which two pointers to one object are known as such.
IUnknown* identity(const com::Ptr<IUnknown>& object) { return object.query<IUnknown>().get(); }

ULONG references_to(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

class Objects : public testing::TestWithParam<Class> {
 protected:
  ~Objects() override {
    EXPECT_EQ(module_.can_unload_now(), S_OK) << "an object was not destroyed";
  }

  template <class Interface>
  com::Ptr<Interface> create() const {
    auto object = module_.create<Interface>(GetParam().clsid);
    if (!object) throw std::runtime_error("the object could not be created");
    EXPECT_EQ(module_.can_unload_now(), S_FALSE);
    return object;
  }

  const server::Apartment apartment_;
  const server::LoadedModule module_;
};

INSTANTIATE_TEST_SUITE_P(AllClasses, Objects, testing::ValuesIn(all_classes()),
                         [](const auto& info) { return info.param.name; });

// --- Identity ------------------------------------------------------------------------------------

TEST_P(Objects, AnswerTheirInterfacesAndNoOthersWithOneIdentity) {
  const auto object = create<IUnknown>();
  std::vector<IID> answered = {GetParam().own_interface, IID_IDispatch, IID_IProvideClassInfo2,
                               IID_ISupportErrorInfo, IID_IMarshal};
  std::vector<IID> refused = {IID_IProvideClassInfo, IID_IPersist, IID_IConnectionPointContainer,
                              IID_IClassFactory};
  (GetParam().is_collection ? answered : refused).push_back(IID_IEnumVARIANT);

  for (const IID& from : answered) {
    const auto side = ask(object, from);
    ASSERT_TRUE(side);
    EXPECT_EQ(identity(side), object.get());
    for (const IID& to : answered) EXPECT_EQ(ask(side, to).get(), ask(object, to).get());
    for (const IID& other : refused) {
      auto* nothing = reinterpret_cast<void*>(1);
      EXPECT_EQ(side->QueryInterface(other, &nothing), E_NOINTERFACE);
      EXPECT_EQ(nothing, nullptr);
    }
  }
  EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

// --- Aggregation ---------------------------------------------------------------------------------

/// An outer object in whose identity an inner one takes part.
class Outer final : public IUnknown {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (!IsEqualIID(iid, IID_IUnknown)) return inner->QueryInterface(iid, out);
    AddRef();
    *out = static_cast<IUnknown*>(this);
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }

  ULONG references = 1;
  com::Ptr<IUnknown> inner;
};

TEST_P(Objects, CanBePartOfAnOuterObject) {
  Outer outer;
  ASSERT_EQ(module_.class_object(GetParam().clsid)
                ->CreateInstance(&outer, IID_IUnknown, outer.inner.put_void()),
            S_OK);
  // Creation left no reference of the inner object on the outer one: they would never go.
  EXPECT_EQ(outer.references, 1u);
  EXPECT_EQ(references_to(outer.inner.get()), 1u);
  EXPECT_EQ(identity(outer.inner), outer.inner.get());

  for (const IID& iid : {GetParam().own_interface, IID_IDispatch, IID_IProvideClassInfo2,
                         IID_ISupportErrorInfo, IID_IMarshal}) {
    const auto side = ask(outer.inner, iid);
    ASSERT_TRUE(side);
    EXPECT_EQ(outer.references, 2u) << "a reference to the part is one to the whole";
    EXPECT_EQ(references_to(outer.inner.get()), 1u);
    EXPECT_EQ(identity(side), &outer);
    const auto own = ask(side, GetParam().own_interface);
    EXPECT_EQ(outer.references, 3u) << "a query through the part is one to the whole";
  }
  EXPECT_EQ(outer.references, 1u);
}

TEST_P(Objects, TakePartInAnOuterObjectOnlyThroughTheirInnerUnknown) {
  Outer outer;
  for (const IID& iid : {IID_IDispatch, GetParam().own_interface, IID_IMarshal}) {
    auto* nothing = reinterpret_cast<void*>(1);
    EXPECT_EQ(module_.class_object(GetParam().clsid)->CreateInstance(&outer, iid, &nothing),
              CLASS_E_NOAGGREGATION);
    EXPECT_EQ(nothing, nullptr);
  }
}

// --- Class, type and error information -----------------------------------------------------------

TEST_P(Objects, TellTheirClassAndTheirOwnInterfaceAsItsDefaultSource) {
  const auto object = create<IProvideClassInfo2>();
  com::Ptr<ITypeInfo> info;
  ASSERT_EQ(object->GetClassInfo(info.put()), S_OK);
  EXPECT_EQ(com::TypeAttributes(info)->typekind, TKIND_COCLASS);
  EXPECT_TRUE(IsEqualCLSID(com::TypeAttributes(info)->guid, GetParam().clsid));
  EXPECT_EQ(object->GetClassInfo(nullptr), E_POINTER);

  for (const DWORD other_kind : {0, 2}) {
    GUID guid = GetParam().clsid;
    EXPECT_EQ(object->GetGUID(other_kind, &guid), E_INVALIDARG);
    EXPECT_TRUE(IsEqualGUID(guid, GUID_NULL));
  }
  GUID guid = GUID_NULL;
  EXPECT_EQ(object->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &guid), S_OK);
  EXPECT_TRUE(IsEqualGUID(guid, GetParam().own_interface));
  EXPECT_EQ(object->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, nullptr), E_POINTER);
}

TEST_P(Objects, TellTypeAndErrorInformationOfTheirOwnInterfaceOnly) {
  const auto object = create<IDispatch>();
  UINT count = 0;
  EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1u);
  EXPECT_EQ(object->GetTypeInfoCount(nullptr), E_POINTER);

  com::Ptr<ITypeInfo> info;
  ASSERT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()), S_OK);
  EXPECT_TRUE(IsEqualIID(com::TypeAttributes(info)->guid, GetParam().own_interface));
  EXPECT_EQ(object->GetTypeInfo(1, LOCALE_USER_DEFAULT, info.put()), TYPE_E_ELEMENTNOTFOUND);
  EXPECT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr), E_POINTER);

  const auto errors = object.query<ISupportErrorInfo>();
  EXPECT_EQ(errors->InterfaceSupportsErrorInfo(GetParam().own_interface), S_OK);
  for (const IID& other : {IID_IDispatch, IID_IUnknown, IID_IEnumVARIANT, GUID_NULL}) {
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(other), S_FALSE);
  }
}

// --- Dispatch ------------------------------------------------------------------------------------

HRESULT find_member(const com::Ptr<IDispatch>& object, const wchar_t* name, DISPID& id) {
  auto* text = const_cast<LPOLESTR>(name);
  return object->GetIDsOfNames(GUID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
}

TEST_P(Objects, KnowEveryMemberByItsNameInAnyCase) {
  const auto object = create<IDispatch>();
  com::Ptr<ITypeInfo> info;
  ASSERT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()), S_OK);
  const UINT members = com::TypeAttributes(info)->cFuncs;
  ASSERT_GT(members, 0u);
  for (UINT index = 0; index < members; ++index) {
    const DISPID id = com::FunctionDescription(info, index)->memid;
    const std::wstring name(com::name_of(info, id).view());
    std::wstring upper = name;
    std::wstring lower = name;
    CharUpperW(upper.data());
    CharLowerW(lower.data());
    for (const std::wstring& written : {name, upper, lower}) {
      DISPID found = DISPID_UNKNOWN;
      EXPECT_EQ(find_member(object, written.c_str(), found), S_OK);
      EXPECT_EQ(found, id);
    }
  }
}

// --- Other apartments ----------------------------------------------------------------------------

TEST_P(Objects, AreHandedToAnotherApartmentAsDirectPointers) {
  const IID& iid = GetParam().own_interface;
  const auto own = ask(create<IUnknown>(), iid);
  com::Ptr<IStream> stream;
  ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(iid, own.get(), stream.put()), S_OK);
  server::in_other_apartment([&] {
    com::Ptr<IUnknown> received;
    EXPECT_EQ(CoUnmarshalInterface(stream.get(), iid, received.put_void()), S_OK);
    EXPECT_EQ(received.get(), own.get());
  });
}

}  // namespace
