// Use without registration: a program whose manifest names the module's assembly. Runs in a Wine
// prefix of its own, in which no module is registered.

#include <gtest/gtest.h>
#include <orv_node.h>

#include <string>

#include "com/type_description.h"
#include "tests/frame/copied_program.h"
#include "tests/host/apartment.h"
#include "tests/host/late_bound.h"
#include "tests/kinds/kind.h"

namespace {

using frame::Activated;

class RegistrationFree : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(program_.context(), INVALID_HANDLE_VALUE) << GetLastError(); }

  static com::Ptr<IDispatch> create(REFCLSID clsid) {
    com::Ptr<IDispatch> object;
    com::check(
        CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.put_void()));
    return object;
  }
  static com::Ptr<IDispatch> create(const std::wstring& progid) {
    CLSID clsid;
    com::check(CLSIDFromProgID(progid.c_str(), &clsid));
    return create(clsid);
  }

  const frame::CopiedProgram program_{L"orv program", {L"orv_node"}};
  // Left first, which unloads the module, so that its file can be deleted.
  const server::Apartment apartment_;
};

TEST_F(RegistrationFree, NothingIsThereWithoutTheManifest) {
  CLSID clsid;
  EXPECT_EQ(CLSIDFromProgID(L"Orv_Node.NodalForce", &clsid), CO_E_CLASSSTRING);
  EXPECT_THROW(create(__uuidof(NodalForce)), com::Error);
}

TEST_F(RegistrationFree, ARecordAndACollectionAreUsedByName) {
  const Activated activated(program_.context());
  const auto force = create(L"Orv_Node.NodalForce");
  const server::LateBound script(force);
  EXPECT_EQ(script.put(L"Magnitude", com::Variant(12.5)), S_OK);
  EXPECT_EQ(script.get(L"Magnitude").get().dblVal, 12.5);

  const server::LateBound forces(create(L"Orv_Node.NodalForces.1"));
  EXPECT_EQ(forces.call(L"Add", {com::Variant(force.get())}).result, S_OK);
  EXPECT_EQ(forces.get(L"Count").get().lVal, 1);
  EXPECT_EQ(forces.call(L"Item", {com::Variant(0)}).value.get().pdispVal, force.get());
}

TEST_F(RegistrationFree, EveryClassIsFoundByItsIdentifierAndBothItsNames) {
  const Activated activated(program_.context());
  for (const Class& each : all_classes()) {
    SCOPED_TRACE(each);
    const std::wstring progid = L"Orv_Node." + std::wstring(each.name.begin(), each.name.end());
    for (const auto& object : {create(each.clsid), create(progid), create(progid + L".1")}) {
      com::Ptr<ITypeInfo> info;
      com::check(object.query<IProvideClassInfo2>()->GetClassInfo(info.put()));
      EXPECT_TRUE(IsEqualCLSID(com::TypeAttributes(info)->guid, each.clsid));
    }
  }
}

TEST_F(RegistrationFree, TheLibraryIsFound) {
  const Activated activated(program_.context());
  com::Ptr<ITypeLib> library;
  EXPECT_EQ(LoadRegTypeLib(LIBID_ORV_NODELib, 1, 0, LOCALE_NEUTRAL, library.put()), S_OK);
}

TEST_F(RegistrationFree, InterfacesAreMarshalled) {
  const Activated activated(program_.context());
  const auto force = create(L"Orv_Node.NodalForce").query<INodalForce>();
  ASSERT_EQ(force->put_Magnitude(7), S_OK);
  com::Ptr<IStream> stream;
  ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()), S_OK);
  // As for another process: within this one, records hand out direct pointers.
  ASSERT_EQ(CoMarshalInterface(stream.get(), __uuidof(INodalForce), force.get(), MSHCTX_LOCAL,
                               nullptr, MSHLFLAGS_NORMAL),
            S_OK);
  ASSERT_EQ(stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);

  server::in_other_apartment([&] {
    const Activated activated_here(program_.context());
    com::Ptr<INodalForce> proxy;
    ASSERT_EQ(CoUnmarshalInterface(stream.get(), __uuidof(INodalForce), proxy.put_void()), S_OK);
    double magnitude = 0;
    EXPECT_EQ(proxy->get_Magnitude(&magnitude), S_OK);
    EXPECT_EQ(magnitude, 7);
  });
}

}  // namespace
