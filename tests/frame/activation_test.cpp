// Use without registration: a program whose manifest names the module's assembly. Runs in a Wine
// prefix of its own, in which no module is registered.

#include <gtest/gtest.h>
#include <orv_node.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "com/type_description.h"
#include "kinds/kinds.h"
#include "tests/frame/late_binding.h"
#include "tests/frame/module_file.h"

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
</assembly>
)";

/// The folder of a program that was put on the machine by copying: its manifest, the module and
/// the module's assembly manifest.
class ProgramFolder {
 public:
  ProgramFolder() {
    CreateDirectoryW(folder_.c_str(), nullptr);
    for (const wchar_t* name : kCopied) {
      CopyFileW(frame::module_file(name).c_str(), file(name).c_str(), FALSE);
    }
    std::ofstream(std::filesystem::path(manifest())) << kProgramManifest;
  }
  ~ProgramFolder() {
    for (const wchar_t* name : kCopied) DeleteFileW(file(name).c_str());
    DeleteFileW(manifest().c_str());
    RemoveDirectoryW(folder_.c_str());
  }
  ProgramFolder(const ProgramFolder&) = delete;
  ProgramFolder& operator=(const ProgramFolder&) = delete;

  [[nodiscard]] const std::wstring& path() const { return folder_; }
  [[nodiscard]] std::wstring manifest() const { return file(L"program.manifest"); }

 private:
  static constexpr const wchar_t* kCopied[] = {L"orv_node.dll", L"orv_node.sxs.manifest"};

  [[nodiscard]] std::wstring file(const wchar_t* name) const { return folder_ + L"\\" + name; }

  std::wstring folder_ = frame::environment(L"TEMP") + L"\\orv program";
};

/// The activation context that the program's manifest describes.
class ActivationContext {
 public:
  explicit ActivationContext(const ProgramFolder& program) {
    const std::wstring manifest = program.manifest();
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.dwFlags = ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
    description.lpSource = manifest.c_str();
    description.lpAssemblyDirectory = program.path().c_str();
    handle_ = CreateActCtxW(&description);
  }
  ~ActivationContext() {
    if (is_valid()) ReleaseActCtx(handle_);
  }
  ActivationContext(const ActivationContext&) = delete;
  ActivationContext& operator=(const ActivationContext&) = delete;

  [[nodiscard]] bool is_valid() const { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] HANDLE handle() const { return handle_; }

 private:
  HANDLE handle_;
};

/// A thread's use of a context, from here to the end of the scope.
class Activated {
 public:
  explicit Activated(const ActivationContext& context) {
    ActivateActCtx(context.handle(), &cookie_);
  }
  ~Activated() { DeactivateActCtx(0, cookie_); }
  Activated(const Activated&) = delete;
  Activated& operator=(const Activated&) = delete;

 private:
  ULONG_PTR cookie_ = 0;
};

class RegistrationFree : public testing::Test {
 protected:
  RegistrationFree() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  // Also unloads the module, so that its file can be deleted.
  ~RegistrationFree() override { CoUninitialize(); }

  void SetUp() override { ASSERT_TRUE(context_.is_valid()) << GetLastError(); }

  static com::Ptr<IDispatch> create(const wchar_t* progid) {
    CLSID clsid;
    com::check(CLSIDFromProgID(progid, &clsid));
    com::Ptr<IDispatch> object;
    com::check(
        CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.put_void()));
    return object;
  }

  const ProgramFolder program_;
  const ActivationContext context_{program_};
};

TEST_F(RegistrationFree, NothingIsThereWithoutTheManifest) {
  CLSID clsid;
  EXPECT_EQ(CLSIDFromProgID(L"Orv_Node.NodalForce", &clsid), CO_E_CLASSSTRING);
  com::Ptr<IUnknown> object;
  EXPECT_EQ(CoCreateInstance(__uuidof(NodalForce), nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                             object.put_void()),
            REGDB_E_CLASSNOTREG);
}

TEST_F(RegistrationFree, ARecordAndACollectionAreUsedByName) {
  const Activated activated(context_);
  const auto force = create(L"Orv_Node.NodalForce");
  EXPECT_EQ(frame::put(force, L"Magnitude", com::Variant(12.5)), S_OK);
  EXPECT_EQ(frame::get(force, L"Magnitude").get().dblVal, 12.5);

  const auto forces = create(L"Orv_Node.NodalForces.1");
  frame::call(forces, L"Add", {com::Variant(force.get())});
  EXPECT_EQ(frame::get(forces, L"Count").get().lVal, 1);
  const com::Variant first = frame::call(forces, L"Item", {com::Variant(0)});
  EXPECT_EQ(first.get().pdispVal, force.get());
}

TEST_F(RegistrationFree, EveryClassIsFoundByItsIdentifierAndBothItsNames) {
  const Activated activated(context_);
  const auto expect_class = [](const std::wstring& name, REFCLSID expected) {
    for (const wchar_t* version : {L"", L".1"}) {
      const auto object = create((L"Orv_Node." + name + version).c_str());
      com::Ptr<ITypeInfo> info;
      com::check(object.query<IProvideClassInfo2>()->GetClassInfo(info.put()));
      EXPECT_TRUE(IsEqualCLSID(com::TypeAttributes(info)->guid, expected));
    }
    com::Ptr<IDispatch> object;
    EXPECT_EQ(
        CoCreateInstance(expected, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.put_void()),
        S_OK);
  };
#define KIND(name, collection, script)     \
  expect_class(L"" #name, __uuidof(name)); \
  expect_class(L"" #collection, __uuidof(collection));
  FOR_EACH_KIND(KIND)
#undef KIND
}

TEST_F(RegistrationFree, TheLibraryIsFound) {
  const Activated activated(context_);
  com::Ptr<ITypeLib> library;
  EXPECT_EQ(LoadRegTypeLib(LIBID_ORV_NODELib, 1, 0, LOCALE_NEUTRAL, library.put()), S_OK);
}

/// A record of this apartment as another one uses it, through marshalling.
struct RemoteUse {
  const ActivationContext& context;
  com::Ptr<IStream> stream;
  HRESULT result = E_PENDING;
  double magnitude = 0;
};

DWORD WINAPI use_from_other_apartment(void* parameter) {
  RemoteUse& use = *static_cast<RemoteUse*>(parameter);
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  {
    const Activated activated(use.context);
    com::Ptr<INodalForce> force;
    use.result = CoUnmarshalInterface(use.stream.get(), __uuidof(INodalForce), force.put_void());
    if (SUCCEEDED(use.result)) use.result = force->get_Magnitude(&use.magnitude);
  }
  CoUninitialize();
  return 0;
}

TEST_F(RegistrationFree, InterfacesAreMarshalled) {
  const Activated activated(context_);
  const auto force = create(L"Orv_Node.NodalForce").query<INodalForce>();
  ASSERT_EQ(force->put_Magnitude(7), S_OK);

  RemoteUse use{context_, nullptr};
  ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, use.stream.put()), S_OK);
  // As for another process: within this one, records hand out direct pointers.
  ASSERT_EQ(CoMarshalInterface(use.stream.get(), __uuidof(INodalForce), force.get(), MSHCTX_LOCAL,
                               nullptr, MSHLFLAGS_NORMAL),
            S_OK);
  ASSERT_EQ(use.stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);

  HANDLE thread = CreateThread(nullptr, 0, &use_from_other_apartment, &use, 0, nullptr);
  DWORD signalled = 0;
  CoWaitForMultipleHandles(0, INFINITE, 1, &thread, &signalled);
  CloseHandle(thread);
  EXPECT_EQ(use.result, S_OK);
  EXPECT_EQ(use.magnitude, 7);
}

}  // namespace
