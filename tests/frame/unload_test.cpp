// A module that is unloaded leaves nothing behind in the process that used it.

#include <gtest/gtest.h>
#include <orv_node.h>

#include "tests/frame/holdings.h"
#include "tests/frame/late_binding.h"
#include "tests/frame/loaded_module.h"
#include "tests/frame/module_file.h"
#include "tests/frame/type_description.h"

namespace {

constexpr int kWarmUp = 10;

const std::wstring kModule = frame::module_file(L"orv_node.dll");

/// A module with no classes in it. It lies beside this program.
std::wstring bare_module() {
  wchar_t path[MAX_PATH];
  const std::wstring program(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
  return program.substr(0, program.find_last_of(L'\\') + 1) + L"bare_module.dll";
}

constexpr frame::Holdings kNothing;

class Unloading : public testing::Test {
 protected:
  Unloading() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~Unloading() override { CoUninitialize(); }

  /// Runs `action` many times and tells what the process holds since.
  template <class Action>
  frame::Holdings left_behind(int times, Action&& action) {
    for (int time = 0; time < kWarmUp; ++time) action();
    const frame::Holdings before = frame::current_holdings();
    for (int time = 0; time < times && !HasFatalFailure(); ++time) action();
    return frame::current_holdings() - before;
  }
};

/// An object of either sort, called by name, early bound and by enumeration.
void use(const frame::LoadedModule& module) {
  const auto force = module.create<IDispatch>(__uuidof(NodalForce));
  ASSERT_TRUE(force);
  ASSERT_EQ(frame::put(force, L"Magnitude", com::Variant(2.5)), S_OK);
  ASSERT_EQ(frame::get(force, L"Magnitude").get().dblVal, 2.5);

  const auto forces = module.create<INodalForces>(__uuidof(NodalForces));
  ASSERT_TRUE(forces);
  ASSERT_EQ(forces->Add(force.query<INodalForce>().get()), S_OK);
  com::Ptr<IUnknown> enumerator;
  ASSERT_EQ(forces->get__NewEnum(enumerator.put()), S_OK);
  com::Variant item;
  ASSERT_EQ(enumerator.query<IEnumVARIANT>()->Next(1, item.put(), nullptr), S_OK);
  ASSERT_EQ(module.can_unload_now(), S_FALSE);
}

ULONG references_to(const com::Ptr<ITypeLib>& library) {
  library->AddRef();
  return library->Release();
}

TEST_F(Unloading, AThousandLivesOfTheModuleLeaveNothingBehind) {
  // In 32 bits the compiler's runtime keeps a lock, with one of the process's thousand places for
  // thread-local data, for every module that it was linked into.
  const auto left_by_the_runtime = left_behind(
      10, [bare = bare_module()] { ASSERT_TRUE(frame::LoadedModule(bare).is_loaded()); });

  // The platform shares a library among all who hold it, so that a reference kept shows here.
  const auto library = frame::load_library();
  const ULONG library_references = references_to(library);
  const auto left = left_behind(1000, [] {
    {
      const frame::LoadedModule module(kModule);
      ASSERT_TRUE(module.is_loaded());
      use(module);
      ASSERT_EQ(module.can_unload_now(), S_OK);
    }
    ASSERT_EQ(GetModuleHandleW(kModule.c_str()), nullptr);
  });
  // Not the bytes: a block's size depends on the free one that it was cut from. The runtime's list
  // of what it keeps grows by a block now and then.
  EXPECT_LT(left.heap_blocks - 100 * left_by_the_runtime.heap_blocks, 10);
  EXPECT_EQ(left.handles, 100 * left_by_the_runtime.handles);
  EXPECT_EQ(references_to(library), library_references);
}

/// A call that is refused by way of an exception inside the module.
void fail(const frame::LoadedModule& module) {
  const auto forces = module.create<INodalForces>(__uuidof(NodalForces));
  ASSERT_EQ(forces->Add(nullptr), E_POINTER);
}

TEST_F(Unloading, AThousandFailuresLeaveNothingBehind) {
  const frame::LoadedModule module(kModule);
  EXPECT_EQ(left_behind(1000, [&] { fail(module); }), kNothing);
}

DWORD WINAPI fail_in_thread(void* module) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  fail(*static_cast<const frame::LoadedModule*>(module));
  CoUninitialize();
  return 0;
}

TEST_F(Unloading, ThreadsThatSawAFailureLeaveNothingBehind) {
  frame::LoadedModule module(kModule);
  const auto left = left_behind(200, [&] {
    const HANDLE thread = CreateThread(nullptr, 0, &fail_in_thread, &module, 0, nullptr);
    ASSERT_NE(thread, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
  });
  EXPECT_EQ(left, kNothing);
}

}  // namespace
