// Use without registration: a program whose manifest names the assemblies of both modules. Runs in
// a Wine prefix of its own, in which no module is registered.

#include <windows.h>

#include <filesystem>
#include <fstream>

#include "tests/frame/copied_files.h"
#include "tests/modeldb/model_test.h"

namespace {

constexpr const char* kProgramManifest = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
  <assemblyIdentity type="win32" name="program" version="1.0.0.0"/>
  <dependency>
    <dependentAssembly>
      <assemblyIdentity type="win32" name="orv_node.sxs" version="1.0.0.0"
                        processorArchitecture="*"/>
    </dependentAssembly>
  </dependency>
  <dependency>
    <dependentAssembly>
      <assemblyIdentity type="win32" name="orv_modeldb.sxs" version="1.0.0.0"
                        processorArchitecture="*"/>
    </dependentAssembly>
  </dependency>
</assembly>
)";

/// The folder of a program that was put on the machine by copying, and this thread's use of the
/// program's manifest, from here to the end of the scope.
class CopiedProgram {
 public:
  CopiedProgram() {
    const std::wstring manifest = files_.file(L"program.manifest");
    std::ofstream(std::filesystem::path(manifest)) << kProgramManifest;
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.lpSource = manifest.c_str();
    context_ = CreateActCtxW(&description);
    EXPECT_NE(context_, INVALID_HANDLE_VALUE) << GetLastError();
    EXPECT_TRUE(ActivateActCtx(context_, &cookie_));
  }
  ~CopiedProgram() {
    DeactivateActCtx(0, cookie_);
    ReleaseActCtx(context_);
  }
  CopiedProgram(const CopiedProgram&) = delete;
  CopiedProgram& operator=(const CopiedProgram&) = delete;

 private:
  const frame::CopiedFiles files_{
      L"orv modeldb program",
      {L"orv_node.dll", L"orv_node.sxs.manifest", L"orv_modeldb.dll", L"orv_modeldb.sxs.manifest"}};
  HANDLE context_ = nullptr;
  ULONG_PTR cookie_ = 0;
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

}  // namespace
