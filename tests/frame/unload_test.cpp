// A module that is unloaded leaves nothing behind in the process that used it.

#include <gtest/gtest.h>
#include <orv_node.h>

#include "tests/host/apartment.h"
#include "tests/host/holdings.h"
#include "tests/host/late_bound.h"
#include "tests/host/loaded_module.h"

namespace {

using server::Holdings;
using server::LoadedModule;

const std::wstring kModule = server::built_file(L"orv_node.dll");

/// A module with no classes in it. It lies beside this program.
std::wstring bare_module() {
  wchar_t path[MAX_PATH];
  const std::wstring program(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
  return program.substr(0, program.find_last_of(L'\\') + 1) + L"bare_module.dll";
}

class Unloading : public testing::Test {
 protected:
  /// Runs `action` many times and tells what the process holds since. It runs before, too: what is
  /// made once and kept does not count.
  template <class Action>
  Holdings left_behind(int times, Action&& action) {
    constexpr int kWarmUp = 10;
    for (int time = 0; time < kWarmUp; ++time) action();
    const Holdings before;
    for (int time = 0; time < times && !HasFatalFailure(); ++time) action();
    const Holdings after;
    return {after.blocks - before.blocks, after.open_handles - before.open_handles};
  }

 private:
  const server::Apartment apartment_;
};

/// An object of either sort, called by name, early bound and by enumeration.
void use(const LoadedModule& module) {
  const auto force = module.create<INodalForce>(__uuidof(NodalForce));
  ASSERT_TRUE(force);
  const server::LateBound script(force);
  ASSERT_EQ(script.put(L"Magnitude", com::Variant(2.5)), S_OK);
  ASSERT_EQ(script.get(L"Magnitude").get().dblVal, 2.5);

  const auto forces = module.create<INodalForces>(__uuidof(NodalForces));
  ASSERT_TRUE(forces);
  ASSERT_EQ(forces->Add(force.get()), S_OK);
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
  const Holdings left_by_the_runtime =
      left_behind(10, [bare = bare_module()] { ASSERT_TRUE(LoadedModule(bare).handle()); });

  // The platform shares a library among all who hold it, so that a reference kept shows here.
  com::Ptr<ITypeLib> library;
  com::check(LoadTypeLibEx(kModule.c_str(), REGKIND_NONE, library.put()));
  const ULONG library_references = references_to(library);
  const Holdings left = left_behind(1000, [] {
    {
      const LoadedModule module(kModule);
      ASSERT_TRUE(module.handle());
      use(module);
      ASSERT_EQ(module.can_unload_now(), S_OK);
    }
    ASSERT_EQ(GetModuleHandleW(kModule.c_str()), nullptr);
  });
  // The runtime's list of what it keeps grows by a block now and then.
  EXPECT_LT(left.blocks - 100 * left_by_the_runtime.blocks, 10);
  EXPECT_EQ(left.open_handles, 100 * left_by_the_runtime.open_handles);
  EXPECT_EQ(references_to(library), library_references);
}

/// A call that is refused by way of an exception inside the module.
void fail(const LoadedModule& module) {
  const auto forces = module.create<INodalForces>(__uuidof(NodalForces));
  ASSERT_EQ(forces->Add(nullptr), E_POINTER);
}

TEST_F(Unloading, FailuresLeaveNothingBehindEvenInThreadsThatEnd) {
  constexpr Holdings kNothing{0, 0};
  const LoadedModule module(kModule);
  EXPECT_EQ(left_behind(1000, [&] { fail(module); }), kNothing);
  EXPECT_EQ(left_behind(200, [&] { server::in_other_apartment([&] { fail(module); }); }), kNothing);
}

}  // namespace
