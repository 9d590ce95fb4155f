// Records and collections that live in another process, reached through the modules' own proxies
// and stubs. This program is both sides: started with an argument, it is the other process.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <orv_node.h>
#include <process.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/host/apartment.h"
#include "tests/host/host.h"
#include "tests/host/late_bound.h"
#include "tests/host/loaded_module.h"

namespace {

// Under these names the two processes tell each other that the one is ready and may go.
constexpr wchar_t kReady[] = L"orv_other_process_ready";
constexpr wchar_t kDone[] = L"orv_other_process_done";
// Under this identifier the other process offers its model database.
constexpr CLSID kOtherDatabase = {
    0x6B3C1D52, 0x0F0D, 0x4C58, {0x9E, 0x5B, 0x52, 0x1E, 0x2A, 0x90, 0x6C, 0x11}};

constexpr HRESULT kHostFailure = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x291);
constexpr wchar_t kHostWords[] = L"The model is opened by Zo\u00EB";

using Handle = std::unique_ptr<void, decltype([](HANDLE handle) { CloseHandle(handle); })>;

/// An event that both processes know by its name.
Handle signal(const wchar_t* name) { return Handle(CreateEventW(nullptr, TRUE, FALSE, name)); }

/// The other process: offers the server's classes, and a model database whose record store refuses
/// to delete.
int serve() {
  const server::Apartment apartment;
  fake::Host host;
  host.journal.fail("RecordStore.Delete", kHostFailure, kHostWords);
  DWORD database = 0;
  RegisterActiveObject(host.database.query<IDispatch>().get(), kOtherDatabase, ACTIVEOBJECT_STRONG,
                       &database);

  const server::LoadedModule module;
  std::vector<DWORD> registrations;
  for (const CLSID& clsid :
       {__uuidof(NodalForce), __uuidof(NodalForces), __uuidof(NodalBoundaryCondition),
        __uuidof(NodalPrescribedDisplacement)}) {
    CoRegisterClassObject(clsid, module.class_object(clsid).get(), CLSCTX_LOCAL_SERVER,
                          REGCLS_MULTIPLEUSE, &registrations.emplace_back());
  }
  SetEvent(signal(kReady).get());
  server::serve_until(signal(kDone).get());
  for (const DWORD registration : registrations) CoRevokeClassObject(registration);
  RevokeActiveObject(database, nullptr);
  return 0;
}

/// This process: the other one lives for as long as this.
class OtherProcess {
 public:
  OtherProcess() {
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    process_.reset(reinterpret_cast<HANDLE>(
        _wspawnl(_P_NOWAIT, program, L"other_process_test", L"serve", nullptr)));
    // Whichever comes first: it is ready, or it ended.
    const HANDLE handles[] = {ready_.get(), process_.get()};
    is_ready_ = WaitForMultipleObjects(2, handles, FALSE, INFINITE) == WAIT_OBJECT_0;
  }
  ~OtherProcess() {
    SetEvent(done_.get());
    WaitForSingleObject(process_.get(), INFINITE);
  }

  [[nodiscard]] bool is_ready() const { return is_ready_; }

 private:
  const server::Apartment apartment_;
  const Handle ready_ = signal(kReady);
  const Handle done_ = signal(kDone);
  Handle process_;
  bool is_ready_ = false;
};

class OtherProcessTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { other_ = std::make_unique<OtherProcess>(); }
  static void TearDownTestSuite() { other_.reset(); }

  void SetUp() override { ASSERT_TRUE(other_->is_ready()); }

  /// An object that is made and lives in the other process.
  template <class Class, class Interface>
  static com::Ptr<Interface> create() {
    com::Ptr<Interface> object;
    com::check(CoCreateInstance(__uuidof(Class), nullptr, CLSCTX_LOCAL_SERVER, __uuidof(Interface),
                                object.put_void()));
    return object;
  }
  static com::Ptr<INodalForce> create_force() { return create<NodalForce, INodalForce>(); }

 private:
  static inline std::unique_ptr<OtherProcess> other_;
};

template <class Interface, class Value>
void expect_to_cross(const com::Ptr<Interface>& object,
                     HRESULT (STDMETHODCALLTYPE Interface::*put)(Value),
                     HRESULT (STDMETHODCALLTYPE Interface::*get)(Value*), Value value) {
  EXPECT_EQ((object.get()->*put)(value), S_OK);
  Value back{};
  EXPECT_EQ((object.get()->*get)(&back), S_OK);
  EXPECT_EQ(back, value);
}

TEST_F(OtherProcessTest, NumbersAndStringsCross) {
  const auto force = create_force();
  expect_to_cross(force, &INodalForce::put_Magnitude, &INodalForce::get_Magnitude, -1.25e300);
  expect_to_cross(force, &INodalForce::put_MultiplierID, &INodalForce::get_MultiplierID,
                  -2147483647L);
  expect_to_cross(create<NodalBoundaryCondition, INodalBoundaryCondition>(),
                  &INodalBoundaryCondition::put_Rz, &INodalBoundaryCondition::get_Rz, VARIANT_TRUE);
  expect_to_cross(create<NodalPrescribedDisplacement, INodalPrescribedDisplacement>(),
                  &INodalPrescribedDisplacement::put_Direction,
                  &INodalPrescribedDisplacement::get_Direction, SVE_VECTOR);

  const com::Bstr text(L"Zo\u00EB's \u529B");
  EXPECT_EQ(force->put_Description(text.get()), S_OK);
  com::Bstr description;
  EXPECT_EQ(force->get_Description(description.put()), S_OK);
  EXPECT_EQ(description.view(), text.view());
  com::Bstr table;
  EXPECT_EQ(force->get_SqlString(1, table.put()), S_OK);
  EXPECT_EQ(table.view(), L"NodalForces");
}

TEST_F(OtherProcessTest, InterfacePointersCrossBothWays) {
  fake::Host host;
  const auto force = create_force();
  const com::Ptr<IDispatch> vertex(host.database.get());
  EXPECT_EQ(force->putref_Vertex(vertex.get()), S_OK);
  com::Ptr<IDispatch> back;
  EXPECT_EQ(force->get_Vertex(back.put()), S_OK);
  EXPECT_EQ(back.query<IUnknown>().get(), vertex.query<IUnknown>().get());
  EXPECT_EQ(force->putref_Vertex(nullptr), E_POINTER);

  const auto forces = create<NodalForces, INodalForces>();
  EXPECT_EQ(forces->Add(force.get()), S_OK);
  com::Ptr<INodalForce> item;
  EXPECT_EQ(forces->Item(0, item.put()), S_OK);
  EXPECT_EQ(item.query<IUnknown>().get(), force.query<IUnknown>().get());
  EXPECT_EQ(forces->Item(1, item.put()), E_INVALIDARG);
}

TEST_F(OtherProcessTest, ACollectionIsEnumerated) {
  const auto forces = create<NodalForces, INodalForces>();
  for (const double magnitude : {1., 2., 3.}) {
    const auto force = create_force();
    force->put_Magnitude(magnitude);
    ASSERT_EQ(forces->Add(force.get()), S_OK);
  }
  com::Ptr<IUnknown> unknown;
  ASSERT_EQ(forces->get__NewEnum(unknown.put()), S_OK);
  const auto enumerator = unknown.query<IEnumVARIANT>();
  ASSERT_TRUE(enumerator);
  std::vector<double> met;
  com::Variant item;
  ULONG fetched = 0;
  while (enumerator->Next(1, item.put(), &fetched) == S_OK) {
    const com::Ptr<IDispatch> record(item.get().pdispVal);
    met.push_back(server::LateBound(record).get(L"Magnitude").get().dblVal);
  }
  EXPECT_THAT(met, testing::ElementsAre(1, 2, 3));
}

TEST_F(OtherProcessTest, VariantsReachAHostInThisProcessAsTheyWerePassed) {
  fake::Host host;
  const auto force = create_force();
  EXPECT_EQ(force->Save(host.database.get(), com::Variant::omitted(), com::Variant::omitted()),
            S_OK);
  EXPECT_EQ(
      force->Save(host.database.get(), com::Variant::boolean(false), com::Variant(std::int16_t{7})),
      S_OK);
  EXPECT_THAT(host.journal.lines_with("Save"),
              testing::ElementsAre("RecordStore.Save object omitted omitted",
                                   "RecordStore.Save object BOOL:0 I2:7"));
}

TEST_F(OtherProcessTest, TheWordsOfAFailingHostArriveAtAScript) {
  com::Ptr<IUnknown> database;
  ASSERT_EQ(GetActiveObject(kOtherDatabase, nullptr, database.put()), S_OK);
  const com::Variant argument(database.query<IDispatch>().get());
  const auto outcome = server::LateBound(create_force()).call(L"Delete", {argument});
  EXPECT_EQ(outcome.result, kHostFailure);
  EXPECT_EQ(outcome.words.view(), kHostWords);
}

}  // namespace

int main(int count, char** arguments) {
  testing::InitGoogleMock(&count, arguments);
  return count > 1 ? serve() : RUN_ALL_TESTS();
}
