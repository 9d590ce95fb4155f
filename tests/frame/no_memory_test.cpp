// The server in a process and in threads that have no memory from the start. In a program of its
// own, since the first failure of a process is another one than those after it.

#include <thread>

#include "tests/host/out_of_memory.h"
#include "tests/host/server.h"

namespace {

using server::LoadedModule;
using server::OutOfMemory;

/// What the class object of NodalForce and then a force itself are refused with.
void expect_refusals(const LoadedModule& module, bool class_object_made) {
  OutOfMemory memory(1, OutOfMemory::kEnd);
  com::Ptr<IClassFactory> factory;
  EXPECT_EQ(memory.during([&] {
    return module.get_class_object(__uuidof(NodalForce), IID_IClassFactory, factory.put_void());
  }),
            class_object_made ? S_OK : E_OUTOFMEMORY);
  factory = module.class_object(__uuidof(NodalForce));
  com::Ptr<IUnknown> force;
  EXPECT_EQ(memory.during(
                [&] { return factory->CreateInstance(nullptr, IID_IUnknown, force.put_void()); }),
            E_OUTOFMEMORY);
}

TEST(NoMemory, CreationFailsAlsoWhereNothingFailedBefore) {
  const LoadedModule& module = server::module();
  expect_refusals(module, false);
  expect_refusals(module, true);
  // More threads at once than the reserve has room for would end the process; one after the other
  // they give back what they took.
  for (int thread = 0; thread < 100; ++thread) {
    std::jthread([&] { expect_refusals(module, true); });
  }
  EXPECT_TRUE(server::make(__uuidof(NodalForce)));
}

}  // namespace
