// The entry points and the class objects behind them, asked as the platform asks them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <orv_node.h>

#include <atomic>
#include <thread>
#include <vector>

#include "tests/host/apartment.h"
#include "tests/host/loaded_module.h"
#include "tests/kinds/kind.h"

namespace {

// A class of nobody.
constexpr CLSID kNoClass = {0x9CCC3EFF, 0x7751, 0x4E33, {0, 0, 0, 0, 0, 0, 0, 0}};

class ClassObjects : public testing::Test {
 protected:
  ~ClassObjects() override {
    EXPECT_EQ(module_.can_unload_now(), S_OK) << "the test left something of the module in use";
  }

  const server::Apartment apartment_;
  const server::LoadedModule module_;
};

TEST_F(ClassObjects, AreRefusedForClassesOfOthersAndWithoutAPlaceToPutThem) {
  // The second is a class of the platform, which is creatable elsewhere.
  for (const CLSID& clsid : {kNoClass, CLSID_StdGlobalInterfaceTable}) {
    auto* nothing = reinterpret_cast<void*>(1);
    EXPECT_EQ(module_.get_class_object(clsid, IID_IClassFactory, &nothing),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(nothing, nullptr);
  }
  EXPECT_EQ(module_.get_class_object(__uuidof(NodalForce), IID_IClassFactory, nullptr), E_POINTER);
}

TEST_F(ClassObjects, AreOnePerClassAndAnswerAsFactories) {
  for (const Class& each : all_classes()) {
    const auto first = module_.class_object(each.clsid);
    ASSERT_TRUE(first) << each;
    com::Ptr<IUnknown> second;
    EXPECT_EQ(module_.get_class_object(each.clsid, IID_IUnknown, second.put_void()), S_OK);
    EXPECT_EQ(first.query<IUnknown>().get(), second.get());
    com::Ptr<IDispatch> other;
    EXPECT_EQ(module_.get_class_object(each.clsid, IID_IDispatch, other.put_void()), E_NOINTERFACE);
    EXPECT_FALSE(other);
  }
}

TEST_F(ClassObjects, RefuseWhatCannotBeCreatedAndKeepNothingOfIt) {
  {
    const auto factory = module_.class_object(__uuidof(NodalForce));
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    com::Ptr<INodalForces> wrong;
    EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(INodalForces), wrong.put_void()),
              E_NOINTERFACE);
    EXPECT_FALSE(wrong);
  }
  EXPECT_EQ(module_.can_unload_now(), S_OK);
}

TEST_F(ClassObjects, KeepTheModuleWhileSomeoneHoldsOrLocksThem) {
  auto factory = module_.class_object(__uuidof(NodalForce));
  EXPECT_EQ(module_.can_unload_now(), S_FALSE);
  auto further = factory;
  factory.reset();
  EXPECT_EQ(module_.can_unload_now(), S_FALSE);
  further.reset();
  EXPECT_EQ(module_.can_unload_now(), S_OK);

  // A lock outlives the reference to the class object through which it was taken.
  module_.class_object(__uuidof(NodalForce))->LockServer(TRUE);
  module_.class_object(__uuidof(NodalProbes))->LockServer(TRUE);
  EXPECT_EQ(module_.can_unload_now(), S_FALSE);
  module_.class_object(__uuidof(NodalForce))->LockServer(FALSE);
  EXPECT_EQ(module_.can_unload_now(), S_FALSE);
  module_.class_object(__uuidof(NodalForce))->LockServer(FALSE);
  EXPECT_EQ(module_.can_unload_now(), S_OK);
}

TEST_F(ClassObjects, ProxiesKeepTheModule) {
  com::Ptr<IPSFactoryBuffer> proxies;
  CLSID proxy_class;
  ASSERT_EQ(CoGetPSClsid(__uuidof(INodalForce), &proxy_class), S_OK);
  ASSERT_EQ(module_.get_class_object(proxy_class, IID_IPSFactoryBuffer, proxies.put_void()), S_OK);
  EXPECT_EQ(module_.can_unload_now(), S_FALSE);
}

constexpr std::size_t kThreads = 2;

/// Where threads go on at the same moment, as none does that has to be woken up.
class Meeting {
 public:
  void wait() {
    const std::size_t end = arrived_++ / kThreads * kThreads + kThreads;
    while (arrived_ < end) SwitchToThread();
  }

 private:
  std::atomic<std::size_t> arrived_ = 0;
};

/// What one of several threads got from a module that nobody used yet.
struct FirstUse {
  std::vector<IUnknown*> class_objects;
  std::vector<ITypeInfo*> type_information;

  void ask(const server::LoadedModule& module, Meeting& meeting) {
    for (const Class& each : all_classes()) {
      meeting.wait();
      class_objects.push_back(module.class_object(each.clsid).get());
      com::Ptr<ITypeInfo> info;
      module.create<IDispatch>(each.clsid)->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put());
      type_information.push_back(info.get());
    }
  }
};

TEST(FirstUseOfTheModule, MakesSharedStateOnceThoughTwoThreadsAskAtTheSameTime) {
  constexpr int kRounds = 10;
  for (int round = 0; round < kRounds; ++round) {
    // Loaded anew in every round, so that nothing is made yet.
    const server::LoadedModule fresh;
    Meeting meeting;
    std::vector<FirstUse> uses(kThreads);
    std::vector<std::thread> threads;
    for (FirstUse& use : uses) {
      threads.emplace_back([&] {
        const server::Apartment apartment(COINIT_MULTITHREADED);
        use.ask(fresh, meeting);
      });
    }
    for (std::thread& thread : threads) thread.join();

    for (const FirstUse& use : uses) {
      EXPECT_THAT(use.class_objects, testing::Not(testing::Contains(nullptr)));
      EXPECT_EQ(use.class_objects, uses[0].class_objects);
      EXPECT_EQ(use.type_information, uses[0].type_information);
    }
    EXPECT_EQ(fresh.can_unload_now(), S_OK);
  }
}

}  // namespace
