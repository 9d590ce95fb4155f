// What every object answers beside its own members: identity, aggregation, class and type
// information, error information, and its use from other apartments.

#include <gtest/gtest.h>
#include <orv_node.h>

#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "com/type_description.h"
#include "kinds/kinds.h"
#include "tests/frame/late_binding.h"
#include "tests/frame/loaded_module.h"
#include "tests/frame/module_file.h"

namespace {

struct Class {
  const char* name;
  CLSID clsid;
  IID own_interface;
  bool is_collection;

  friend std::ostream& operator<<(std::ostream& out, const Class& each) { return out << each.name; }
};

std::vector<Class> all_classes() {
#define KIND(name, collection, script)               \
  {#name, __uuidof(name), __uuidof(I##name), false}, \
      {#collection, __uuidof(collection), __uuidof(I##collection), true},
  return {FOR_EACH_KIND(KIND)};
#undef KIND
}

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
  Objects() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~Objects() override {
    EXPECT_EQ(module_.can_unload_now(), S_OK) << "an object was not destroyed";
    CoUninitialize();
  }

  template <class Interface>
  com::Ptr<Interface> create() const {
    auto object = module_.create<Interface>(GetParam().clsid);
    if (!object) throw std::runtime_error("the object could not be created");
    return object;
  }

  const frame::LoadedModule module_{frame::module_file(L"orv_node.dll")};
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

TEST_P(Objects, TellTheirClass) {
  const auto object = create<IProvideClassInfo2>();
  com::Ptr<ITypeInfo> info;
  ASSERT_EQ(object->GetClassInfo(info.put()), S_OK);
  EXPECT_EQ(com::TypeAttributes(info)->typekind, TKIND_COCLASS);
  EXPECT_TRUE(IsEqualCLSID(com::TypeAttributes(info)->guid, GetParam().clsid));
  EXPECT_EQ(object->GetClassInfo(nullptr), E_POINTER);
}

TEST_P(Objects, NameTheirOwnInterfaceAsDefaultSource) {
  const auto object = create<IProvideClassInfo2>();
  GUID guid = GetParam().clsid;
  EXPECT_EQ(object->GetGUID(0, &guid), E_INVALIDARG);
  EXPECT_TRUE(IsEqualGUID(guid, GUID_NULL));
  EXPECT_EQ(object->GetGUID(2, &guid), E_INVALIDARG);
  EXPECT_EQ(object->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &guid), S_OK);
  EXPECT_TRUE(IsEqualGUID(guid, GetParam().own_interface));
  EXPECT_EQ(object->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, nullptr), E_POINTER);
}

TEST_P(Objects, TellOneTypeInformation) {
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
}

TEST_P(Objects, PromiseErrorInformationForTheirOwnInterfaceOnly) {
  const auto object = create<ISupportErrorInfo>();
  EXPECT_EQ(object->InterfaceSupportsErrorInfo(GetParam().own_interface), S_OK);
  for (const IID& other : {IID_IDispatch, IID_IUnknown, IID_IEnumVARIANT, GUID_NULL}) {
    EXPECT_EQ(object->InterfaceSupportsErrorInfo(other), S_FALSE);
  }
}

// --- Dispatch ------------------------------------------------------------------------------------

TEST_P(Objects, RefuseWhatTheirInterfaceDoesNotHave) {
  const auto object = create<IDispatch>();
  auto* name = const_cast<LPOLESTR>(L"NoSuchMember");
  DISPID id = 0;
  EXPECT_EQ(object->GetIDsOfNames(GUID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id),
            DISP_E_UNKNOWNNAME);
  EXPECT_EQ(id, DISPID_UNKNOWN);

  constexpr DISPID kOfNoRecordOrCollection = 14;
  DISPPARAMS none{};
  const auto invoke = [&](DISPID member, DISPPARAMS* parameters) {
    return object->Invoke(member, GUID_NULL, LOCALE_USER_DEFAULT,
                          DISPATCH_METHOD | DISPATCH_PROPERTYGET, parameters, nullptr, nullptr,
                          nullptr);
  };
  EXPECT_EQ(invoke(kOfNoRecordOrCollection, &none), DISP_E_MEMBERNOTFOUND);
  const DISPID save = frame::id_of(object, L"Save");
  EXPECT_EQ(invoke(save, &none), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(invoke(save, nullptr), E_INVALIDARG);
}

TEST_P(Objects, KnowEveryMemberByItsNameInAnyCase) {
  const auto object = create<IDispatch>();
  com::Ptr<ITypeInfo> info;
  ASSERT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()), S_OK);
  const UINT members = com::TypeAttributes(info)->cFuncs;
  ASSERT_GT(members, 0u);
  for (UINT index = 0; index < members; ++index) {
    const DISPID id = com::FunctionDescription(info, index)->memid;
    std::wstring name(com::name_of(info, id).view());
    EXPECT_EQ(frame::id_of(object, name.c_str()), id);
    EXPECT_EQ(frame::id_of(object, CharUpperW(name.data())), id);
    EXPECT_EQ(frame::id_of(object, CharLowerW(name.data())), id);
  }
}

// --- Other apartments ----------------------------------------------------------------------------

/// What another apartment gets when it is handed an object.
struct Handover {
  com::Ptr<IStream> stream;
  IID iid;
  void* received = nullptr;
};

DWORD WINAPI receive(void* parameter) {
  Handover& handover = *static_cast<Handover*>(parameter);
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  com::Ptr<IUnknown> object;
  if (SUCCEEDED(CoUnmarshalInterface(handover.stream.get(), handover.iid, object.put_void()))) {
    handover.received = object.get();
  }
  object.reset();
  CoUninitialize();
  return 0;
}

TEST_P(Objects, AreHandedToAnotherApartmentAsDirectPointers) {
  const auto object = create<IUnknown>();
  const auto own = ask(object, GetParam().own_interface);
  Handover handover;
  handover.iid = GetParam().own_interface;
  ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, handover.stream.put()), S_OK);
  ASSERT_EQ(CoMarshalInterface(handover.stream.get(), handover.iid, own.get(), MSHCTX_INPROC,
                               nullptr, MSHLFLAGS_NORMAL),
            S_OK);
  ASSERT_EQ(handover.stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);

  const HANDLE thread = CreateThread(nullptr, 0, &receive, &handover, 0, nullptr);
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
  EXPECT_EQ(handover.received, own.get());
}

}  // namespace
