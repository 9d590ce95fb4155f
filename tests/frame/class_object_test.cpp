// The entry points and the class objects behind them, asked as the platform asks them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <orv_node.h>

#include <vector>

#include "kinds/kinds.h"
#include "tests/frame/loaded_module.h"
#include "tests/frame/module_file.h"

namespace {

// A class of nobody.
constexpr CLSID kNoClass = {0x9CCC3EFF, 0x7751, 0x4E33, {0, 0, 0, 0, 0, 0, 0, 0}};

std::vector<CLSID> all_classes() {
#define KIND(name, collection, script) __uuidof(name), __uuidof(collection),
  return {FOR_EACH_KIND(KIND)};
#undef KIND
}

class ClassObjects : public testing::Test {
 protected:
  ClassObjects() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~ClassObjects() override {
    EXPECT_EQ(module_.can_unload_now(), S_OK) << "the test left something of the module in use";
    CoUninitialize();
  }

  const frame::LoadedModule module_{frame::module_file(L"orv_node.dll")};
};

TEST_F(ClassObjects, AreRefusedWithoutAPlaceToPutThem) {
  EXPECT_EQ(module_.get_class_object(__uuidof(NodalForce), IID_IClassFactory, nullptr), E_POINTER);
}

TEST_F(ClassObjects, AreRefusedForClassesOfOthers) {
  com::Ptr<IUnknown> object;
  void** const out = object.put_void();
  *out = reinterpret_cast<void*>(1);
  EXPECT_EQ(module_.get_class_object(kNoClass, IID_IClassFactory, out), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_FALSE(object);
  // A class of the platform, which is creatable elsewhere.
  EXPECT_EQ(
      module_.get_class_object(CLSID_StdGlobalInterfaceTable, IID_IClassFactory, object.put_void()),
      CLASS_E_CLASSNOTAVAILABLE);
}

TEST_F(ClassObjects, AreOnePerClassAndAnswerAsFactories) {
  for (const CLSID& clsid : all_classes()) {
    const auto first = module_.class_object(clsid);
    ASSERT_TRUE(first);
    com::Ptr<IUnknown> second;
    EXPECT_EQ(module_.get_class_object(clsid, IID_IUnknown, second.put_void()), S_OK);
    EXPECT_EQ(first.query<IUnknown>().get(), second.get());
    com::Ptr<IDispatch> other;
    EXPECT_EQ(module_.get_class_object(clsid, IID_IDispatch, other.put_void()), E_NOINTERFACE);
    EXPECT_FALSE(other);
  }
}

TEST_F(ClassObjects, MakeAnObjectOfTheirOwnClass) {
  for (const CLSID& clsid : all_classes()) {
    const auto object = module_.create<IProvideClassInfo2>(clsid);
    ASSERT_TRUE(object);
    com::Ptr<ITypeInfo> info;
    ASSERT_EQ(object->GetClassInfo(info.put()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    EXPECT_TRUE(IsEqualCLSID(attributes->guid, clsid));
    info->ReleaseTypeAttr(attributes);
  }
}

TEST_F(ClassObjects, RefuseWhatCannotBeCreated) {
  const auto factory = module_.class_object(__uuidof(NodalForce));
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
  com::Ptr<INodalForces> wrong;
  EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(INodalForces), wrong.put_void()),
            E_NOINTERFACE);
  EXPECT_FALSE(wrong);
}

TEST_F(ClassObjects, KeepTheModuleWhileSomeoneHoldsThem) {
  EXPECT_EQ(module_.can_unload_now(), S_OK);
  auto factory = module_.class_object(__uuidof(NodalForce));
  EXPECT_EQ(module_.can_unload_now(), S_FALSE);
  auto further = factory;
  factory.reset();
  EXPECT_EQ(module_.can_unload_now(), S_FALSE);
  further.reset();
  EXPECT_EQ(module_.can_unload_now(), S_OK);
}

TEST_F(ClassObjects, KeepTheModuleWhileItIsLocked) {
  // The lock outlives the reference to the class object through which it was taken.
  module_.class_object(__uuidof(NodalForce))->LockServer(TRUE);
  module_.class_object(__uuidof(NodalProbes))->LockServer(TRUE);
  EXPECT_EQ(module_.can_unload_now(), S_FALSE);
  module_.class_object(__uuidof(NodalForce))->LockServer(FALSE);
  EXPECT_EQ(module_.can_unload_now(), S_FALSE);
  module_.class_object(__uuidof(NodalForce))->LockServer(FALSE);
  EXPECT_EQ(module_.can_unload_now(), S_OK);
}

TEST_F(ClassObjects, EveryObjectKeepsTheModule) {
  for (const CLSID& clsid : all_classes()) {
    auto object = module_.create<IUnknown>(clsid);
    ASSERT_TRUE(object);
    EXPECT_EQ(module_.can_unload_now(), S_FALSE);
    object.reset();
    EXPECT_EQ(module_.can_unload_now(), S_OK);
  }
}

TEST_F(ClassObjects, AFailedCreationKeepsNothing) {
  com::Ptr<IStream> wrong;
  module_.class_object(__uuidof(NodalForce))
      ->CreateInstance(nullptr, IID_IStream, wrong.put_void());
  EXPECT_EQ(module_.can_unload_now(), S_OK);
}

TEST_F(ClassObjects, ProxiesKeepTheModule) {
  com::Ptr<IPSFactoryBuffer> proxies;
  CLSID proxy_class;
  ASSERT_EQ(CoGetPSClsid(__uuidof(INodalForce), &proxy_class), S_OK);
  ASSERT_EQ(module_.get_class_object(proxy_class, IID_IPSFactoryBuffer, proxies.put_void()), S_OK);
  EXPECT_EQ(module_.can_unload_now(), S_FALSE);
  proxies.reset();
  EXPECT_EQ(module_.can_unload_now(), S_OK);
}

// --- Concurrent first use ------------------------------------------------------------------------

/// What one of several threads does, all at the same moment, with a module that nobody used yet.
struct Asker {
  const frame::LoadedModule& module;
  HANDLE start;
  std::vector<IUnknown*> class_objects;
  std::vector<ITypeInfo*> type_information;
};

DWORD WINAPI use_all_classes_first(void* parameter) {
  Asker& use = *static_cast<Asker*>(parameter);
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  WaitForSingleObject(use.start, INFINITE);
  for (const CLSID& clsid : all_classes()) {
    use.class_objects.push_back(use.module.class_object(clsid).get());
    com::Ptr<ITypeInfo> info;
    use.module.create<IDispatch>(clsid)->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put());
    use.type_information.push_back(info.get());
  }
  CoUninitialize();
  return 0;
}

TEST(FirstUse, MakesSharedStateOnceThoughManyThreadsAskAtTheSameTime) {
  constexpr int kRounds = 5;
  constexpr std::size_t kThreads = 8;
  for (int round = 0; round < kRounds; ++round) {
    // Loaded anew in every round, so that nothing is made yet.
    const frame::LoadedModule fresh(frame::module_file(L"orv_node.dll"));
    const HANDLE start = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::vector<Asker> uses(kThreads, Asker{fresh, start, {}, {}});
    std::vector<HANDLE> threads;
    for (Asker& use : uses) {
      threads.push_back(CreateThread(nullptr, 0, &use_all_classes_first, &use, 0, nullptr));
    }
    SetEvent(start);
    WaitForMultipleObjects(static_cast<DWORD>(threads.size()), threads.data(), TRUE, INFINITE);
    for (const HANDLE thread : threads) CloseHandle(thread);
    CloseHandle(start);

    for (const Asker& use : uses) {
      EXPECT_THAT(use.class_objects, testing::Not(testing::Contains(nullptr)));
      EXPECT_EQ(use.class_objects, uses[0].class_objects);
      EXPECT_EQ(use.type_information, uses[0].type_information);
    }
    EXPECT_EQ(fresh.can_unload_now(), S_OK);
  }
}

}  // namespace
