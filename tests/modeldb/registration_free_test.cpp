// Use without registration: a program whose manifest names the assemblies of both modules. Runs in
// a Wine prefix of its own, in which no module is registered.

#include "tests/frame/copied_program.h"
#include "tests/modeldb/model_test.h"

namespace {

/// This thread's use of the manifest of a program that was copied here with both modules.
class CopiedProgram {
  const frame::CopiedProgram program_{L"orv modeldb program", {L"orv_node", L"orv_modeldb"}};
  const frame::Activated activated_{program_.context()};
};

TEST(RegistrationFreeTest, NothingIsThereWithoutTheManifest) {
  CLSID clsid;
  EXPECT_EQ(CLSIDFromProgID(L"Orv_ModelDb.ModelDatabase", &clsid), CO_E_CLASSSTRING);
  EXPECT_EQ(CLSIDFromProgID(L"Orv_Node.NodalForce", &clsid), CO_E_CLASSSTRING);
}

// The modules are unloaded, so that their files can go, before the folder does.
class RegistrationFreeModelTest : private CopiedProgram, public model_test::ModelTest {};

TEST_F(RegistrationFreeModelTest, ForceIsSavedAndLoaded) {
  CLSID clsid;
  ASSERT_EQ(CLSIDFromProgID(L"Orv_ModelDb.ModelDatabase", &clsid), S_OK);
  database->Close();
  ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IModelDatabaseFile),
                             database.put_void()),
            S_OK);
  ASSERT_EQ(open(file.path()), S_OK) << model_test::last_sentence();

  const auto force = make_force(250);
  vertex_of(force)->put_ID(12);
  vertex_of(force)->put_X(4.5);
  load_sets_of(force)->Add(make_load_set(L"Wind").get());
  ASSERT_EQ(save(force), S_OK) << model_test::last_sentence();
  reopen();
  const auto loaded = load_force(1);
  ASSERT_TRUE(loaded) << model_test::last_sentence();
  double value = 0;
  loaded->get_Magnitude(&value);
  EXPECT_EQ(value, 250);
  EXPECT_EQ(id_of(vertex_of(loaded)), 12);
  vertex_of(loaded)->get_X(&value);
  EXPECT_EQ(value, 4.5);
}

TEST_F(RegistrationFreeModelTest, FirstOfTwoModelsThatClosesLeavesTheClassesToTheOther) {
  const model_test::TemporaryModel other_file;
  const auto other = model_test::create<ModelDatabase, IModelDatabaseFile>();
  ASSERT_EQ(other->Open(model_test::bstr(other_file.path()).get()), S_OK);
  // What the models themselves serve: nothing else is found outside of the manifest.
  const frame::Activated no_manifest(nullptr);
  const auto makes_a_vertex = [] {
    com::Ptr<IUnknown> vertex;
    return CoCreateInstance(__uuidof(HostVertex), nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                            vertex.put_void());
  };
  database->Close();
  EXPECT_EQ(makes_a_vertex(), S_OK);
  other->Close();
  EXPECT_TRUE(FAILED(makes_a_vertex()));
}

}  // namespace
