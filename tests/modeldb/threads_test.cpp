// Programs of either kind of apartment, with several threads.

#include <array>
#include <functional>
#include <list>

#include "tests/host/apartment.h"
#include "tests/modeldb/listener.h"

namespace {

using com::Ptr;
using com::Variant;
using model_test::bstr;
using model_test::create;
using model_test::TemporaryModel;

/// Threads of the apartments that a test asks for.
class Threads {
 public:
  void start(DWORD apartment, std::function<void()> action) {
    actions_.push_back({apartment, std::move(action)});
    handles_.push_back(CreateThread(nullptr, 0, &run, &actions_.back(), 0, nullptr));
  }
  void wait() {
    for (HANDLE handle : handles_) {
      server::serve_until(handle);
      CloseHandle(handle);
    }
    handles_.clear();
  }

 private:
  struct Action {
    DWORD apartment;
    std::function<void()> work;
  };

  static DWORD WINAPI run(void* argument) {
    const auto* const action = static_cast<Action*>(argument);
    const server::Apartment apartment(action->apartment);
    action->work();
    return 0;
  }

  std::list<Action> actions_;
  std::vector<HANDLE> handles_;
};

/// What a thread leaves behind for another one to release.
struct Leftovers {
  Ptr<IModelDatabaseFile> model;
  Ptr<IDispatch> forces;
  Ptr<ILoadSet> wind;
};

template <class Object>
HRESULT save(const Ptr<Object>& object, const Ptr<IModelDatabaseFile>& model) {
  return object->Save(model.get(), Variant::omitted(), Variant::omitted());
}

/// A force in the set, which is saved; what goes wrong comes as a sentence.
std::string save_force(const Ptr<IModelDatabaseFile>& model, const Ptr<ILoadSet>& set) {
  const auto force = create<NodalForce, INodalForce>();
  Ptr<IDispatch> sets;
  force->get_LoadSets(sets.put());
  sets.query<ILoadSets>()->Add(set.get());
  force->put_Magnitude(250);
  const HRESULT result = save(force, model);
  return SUCCEEDED(result) ? "" : "refused: " + model_test::last_sentence();
}

long count_of(const Ptr<IDispatch>& forces) {
  long count = -1;
  if (const auto collection = forces.query<INodalForces>()) collection->get_Count(&count);
  return count;
}

long sets_of_first(const Ptr<IDispatch>& forces) {
  Ptr<INodalForce> force;
  forces.query<INodalForces>()->Item(0, force.put());
  Ptr<IDispatch> sets;
  force->get_LoadSets(sets.put());
  long count = -1;
  sets.query<ILoadSets>()->get_Count(&count);
  return count;
}

constexpr int kForces = 10;

/// What a script does with a model of its own.
Leftovers work_with_own_model(const std::wstring& path) {
  Leftovers left{.model = create<ModelDatabase, IModelDatabaseFile>(),
                 .forces = nullptr,
                 .wind = create<LoadSet, ILoadSet>()};
  EXPECT_EQ(left.model->Open(bstr(path).get()), S_OK) << model_test::last_sentence();
  left.wind->put_Description(bstr(L"Wind").get());
  for (int i = 0; i < kForces; ++i) EXPECT_EQ(save_force(left.model, left.wind), "");
  EXPECT_EQ(left.model->Load(bstr(L"NodalForces").get(), Variant::omitted(), Variant::omitted(),
                             left.forces.put()),
            S_OK)
      << model_test::last_sentence();
  EXPECT_EQ(save(left.forces.query<INodalForces>(), left.model), S_OK);
  EXPECT_EQ(count_of(left.forces), kForces);
  EXPECT_EQ(sets_of_first(left.forces), 1);
  return left;
}

class ThreadsTest : public model_test::ModelTest {
 protected:
  Threads threads;
};

TEST_F(ThreadsTest, EveryThreadWorksWithAModelOfItsOwnAndAnotherReleasesIt) {
  std::array<TemporaryModel, 4> files;
  std::array<Leftovers, 4> leftovers;
  for (std::size_t i = 0; i < files.size(); ++i) {
    threads.start(i % 2 ? COINIT_MULTITHREADED : COINIT_APARTMENTTHREADED,
                  [&, i] { leftovers[i] = work_with_own_model(files[i].path()); });
  }
  threads.wait();
  threads.start(COINIT_MULTITHREADED, [&] { leftovers = {}; });
  threads.wait();
  for (const TemporaryModel& each : files) {
    database->Close();
    EXPECT_EQ(open(each.path()), S_OK) << model_test::last_sentence();
    EXPECT_EQ(count(L"NodalForceLoadSets"), std::to_string(kForces));
  }
}

TEST_F(ThreadsTest, ThreadsAtOneModelArePutInLine) {
  const auto wind = make_load_set(L"Wind");
  ASSERT_EQ(save(wind), S_OK);
  for (const DWORD apartment :
       {COINIT_MULTITHREADED, COINIT_MULTITHREADED, COINIT_APARTMENTTHREADED}) {
    threads.start(apartment, [&] {
      for (int i = 0; i < kForces; ++i) {
        const auto set = create<LoadSet, ILoadSet>();
        set->put_ID(1);
        EXPECT_EQ(save_force(database, set), "");
        Ptr<IDispatch> forces;
        EXPECT_EQ(database->Load(bstr(L"NodalForces").get(), Variant::omitted(), Variant::omitted(),
                                 forces.put()),
                  S_OK)
            << model_test::last_sentence();
        EXPECT_EQ(sets_of_first(forces), 1);
      }
    });
  }
  threads.wait();
  EXPECT_EQ(count(L"NodalForces"), std::to_string(3 * kForces));
}

TEST_F(ThreadsTest, AModelIsClosedAnywhereAndOpenedAgain) {
  for (const DWORD apartment : {COINIT_MULTITHREADED, COINIT_APARTMENTTHREADED}) {
    threads.start(apartment, [&] {
      EXPECT_EQ(save_force(database, make_load_set(L"Wind")), "");
      database->Close();
    });
    threads.wait();
    ASSERT_EQ(open(file.path()), S_OK) << model_test::last_sentence();
    const auto forces = load_forces();
    ASSERT_TRUE(forces) << model_test::last_sentence();
    EXPECT_EQ(sets_of_first(forces), 1);
  }
}

TEST_F(ThreadsTest, ReferencesAreCountedForAllThreads) {
  const auto set = make_load_set(L"Wind");
  for (int i = 0; i < 3; ++i) {
    threads.start(COINIT_MULTITHREADED, [&] {
      for (int times = 0; times < 100000; ++times) {
        const Ptr<ILoadSet> shared = set;
      }
    });
  }
  threads.wait();
  set->AddRef();
  EXPECT_EQ(set->Release(), 1u);
}

TEST_F(ThreadsTest, ObjectsOfAModelAreHandedOverAsDirectPointers) {
  ASSERT_EQ(save(make_force(1)), S_OK);
  Ptr<IDispatch> connection;
  Ptr<IDispatch> command;
  Ptr<IDispatch> rows;
  database->get_Connection(connection.put());
  database->get_Command(command.put());
  database->Query(bstr(L"SELECT * FROM NodalForces").get(), rows.put());
  Ptr<Fields> fields;
  rows.query<Recordset15>()->get_Fields(fields.put());
  Ptr<Field> field;
  fields->get_Item(Variant(0), field.put());
  for (const Ptr<IDispatch>& own :
       {Ptr<IDispatch>(database), Ptr<IDispatch>(store()), connection, command, rows,
        Ptr<IDispatch>(fields), Ptr<IDispatch>(field), Ptr<IDispatch>(make_load_set(L"Wind"))}) {
    Ptr<IStream> stream;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, own.get(), stream.put()), S_OK);
    threads.start(COINIT_MULTITHREADED, [&] {
      Ptr<IDispatch> received;
      EXPECT_EQ(CoUnmarshalInterface(stream.get(), IID_IDispatch, received.put_void()), S_OK);
      EXPECT_EQ(received.get(), own.get());
    });
    threads.wait();
  }
}

TEST_F(ThreadsTest, AListenerIsCalledInTheThreadThatItBelongsTo) {
  model_test::Listener listener;
  DWORD thread = 0;
  listener.on_call = [&] { thread = GetCurrentThreadId(); };
  const auto observed = store().query<IObservableRecordStore>();
  ASSERT_EQ(observed->Advise(&listener), S_OK);
  threads.start(COINIT_MULTITHREADED,
                [&] { EXPECT_EQ(save_force(database, make_load_set(L"Wind")), ""); });
  threads.wait();
  EXPECT_EQ(thread, GetCurrentThreadId());
  EXPECT_EQ(observed->Unadvise(&listener), S_OK);
}

}  // namespace
