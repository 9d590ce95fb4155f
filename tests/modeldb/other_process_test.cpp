// A model that is open in another process, reached through the module's own proxies and stubs.
//
// The program starts itself as the process that serves.

#include <cstdlib>

#include "com/error.h"
#include "tests/host/late_bound.h"
#include "tests/modeldb/child_process.h"
#include "tests/modeldb/model_test.h"

namespace {

using model_test::bstr;

constexpr wchar_t kReady[] = L"orv_modeldb_other_process_ready";

/// Serves a class of this process to others.
template <class Class>
DWORD serve_class() {
  com::Ptr<IUnknown> factory;
  DWORD registration = 0;
  com::check(CoGetClassObject(__uuidof(Class), CLSCTX_INPROC_SERVER, nullptr, IID_IUnknown,
                              factory.put_void()));
  com::check(CoRegisterClassObject(__uuidof(Class), factory.get(), CLSCTX_LOCAL_SERVER,
                                   REGCLS_MULTIPLEUSE, &registration));
  return registration;
}

/// Serves its classes until the process that started this one has ended.
int serve(DWORD client) {
  const HANDLE ended = OpenProcess(SYNCHRONIZE, FALSE, client);
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const DWORD registrations[] = {serve_class<ModelDatabase>(), serve_class<NodalForce>()};
  model_test::signal(kReady);
  while (MsgWaitForMultipleObjects(1, &ended, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  for (const DWORD registration : registrations) CoRevokeClassObject(registration);
  CoUninitialize();
  return 0;
}

/// A model in a file of its own, open in the other process.
class OtherProcessTest : public model_test::ModelTest {
 protected:
  // The other process ends after this one.
  static void SetUpTestSuite() {
    new model_test::ChildProcess(std::to_wstring(GetCurrentProcessId()), kReady);
  }

  OtherProcessTest() {
    database->Close();
    database = create_there<ModelDatabase, IModelDatabaseFile>();
    EXPECT_EQ(open(file.path()), S_OK);
  }

  template <class Class, class Interface>
  static com::Ptr<Interface> create_there() {
    com::Ptr<Interface> object;
    com::check(CoCreateInstance(__uuidof(Class), nullptr, CLSCTX_LOCAL_SERVER, __uuidof(Interface),
                                object.put_void()));
    return object;
  }
};

// Not one of this process: Wine's marshaller takes no ADO command for its links.
TEST_F(OtherProcessTest, ForceIsSavedAndLoaded) {
  const auto force = create_there<NodalForce, INodalForce>();
  EXPECT_EQ(force->put_Magnitude(250), S_OK);
  EXPECT_EQ(vertex_of(force)->put_ID(12), S_OK);
  EXPECT_EQ(vertex_of(force)->put_X(4.5), S_OK);
  ASSERT_EQ(save(force), S_OK);
  EXPECT_EQ(id_of(force), 1);

  const auto loaded = load_force(1);
  ASSERT_TRUE(loaded);
  double value = 0;
  EXPECT_EQ(loaded->get_Magnitude(&value), S_OK);
  EXPECT_EQ(value, 250);
  EXPECT_EQ(id_of(vertex_of(loaded)), 12);
  EXPECT_EQ(vertex_of(loaded)->get_X(&value), S_OK);
  EXPECT_EQ(value, 4.5);
}

TEST_F(OtherProcessTest, VertexOfThisOneIsSaved) {
  const auto vertex = model_test::create<Vertex, ICoordinateVertex>();
  vertex->put_X(4.5);
  EXPECT_EQ(save(vertex), S_OK);
  EXPECT_EQ(id_of(vertex), 1);

  database->Close();
  database = model_test::create<ModelDatabase, IModelDatabaseFile>();
  ASSERT_EQ(open(file.path()), S_OK);
  EXPECT_EQ(value(L"SELECT X FROM Vertices"), "4.5");
}

TEST_F(OtherProcessTest, SentenceOfAFailureArrives) {
  const com::Variant table(bstr(L"Forces"));
  const auto outcome = server::LateBound(database).call(L"Load", {table.get()});
  EXPECT_EQ(outcome.result, MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 3265));
  EXPECT_THAT(model_test::narrow(outcome.words.view()),
              testing::HasSubstr("There is no collection for a table \"Forces\""));
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  return argc > 1 ? serve(std::strtoul(argv[1], nullptr, 10)) : RUN_ALL_TESTS();
}
