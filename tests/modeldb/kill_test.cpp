// A process that is killed while it saves a batch leaves the model as it was before the batch, or
// as it is after: at whatever moment it is killed.
//
// The program starts itself as the process that saves.

#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <cstring>
#include <iostream>
#include <string>

#include "tests/modeldb/child_process.h"
#include "tests/modeldb/model_test.h"

namespace {

using model_test::bstr;
using model_test::ChildProcess;
using model_test::create;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int kForces = 2000;
constexpr int kKills = 24;
constexpr wchar_t kBegins[] = L"orv_modeldb_kill_test_begins";

/// Saves a batch of forces, each with a vertex and a link to a new set of its own.
int save_batch(const wchar_t* path) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const auto database = create<ModelDatabase, IModelDatabaseFile>();
  if (FAILED(database->Open(bstr(path).get()))) return 1;
  const auto forces = create<NodalForces, INodalForces>();
  for (int index = 0; index < kForces; ++index) {
    const auto force = create<NodalForce, INodalForce>();
    com::Ptr<IDispatch> sets;
    force->get_LoadSets(sets.put());
    sets.query<ILoadSets>()->Add(create<LoadSet, ILoadSet>().get());
    forces->Add(force.get());
  }
  model_test::signal(kBegins);
  return FAILED(forces->Save(database.get(), com::Variant::omitted(), com::Variant::omitted()));
}

/// A process that saves a batch, at the moment at which it begins.
class Saver : public ChildProcess {
 public:
  explicit Saver(const std::wstring& path)
      : ChildProcess(L"--save-batch \"" + path + L"\"", kBegins) {}
};

class KillTest : public model_test::ModelTest {
 protected:
  KillTest() {
    const auto force = make_force(1000);
    load_sets_of(force)->Add(make_load_set(L"Before").get());
    EXPECT_EQ(save(force), S_OK);
    database->Close();
    before_ = file.read();
  }

  void restore() {
    file.remove();
    file.write(before_);
  }

  milliseconds time_of_a_batch() {
    const Saver saver(file.path());
    const auto begin = steady_clock::now();
    saver.wait(INFINITE);
    return std::chrono::duration_cast<milliseconds>(steady_clock::now() - begin);
  }

  /// Opens the model after a kill, checks that it is whole, and returns the number of its forces.
  std::string forces_in_a_whole_model() {
    EXPECT_EQ(open(file.path()), S_OK) << model_test::last_sentence();
    const std::string forces = count(L"NodalForces");
    EXPECT_EQ(count(L"Vertices"), forces);
    EXPECT_EQ(count(L"LoadSets"), forces);
    EXPECT_EQ(count(L"NodalForceLoadSets"), forces);
    EXPECT_EQ(value(L"SELECT Magnitude FROM NodalForces WHERE NodalForceID = 1"), "1000");
    EXPECT_EQ(save(make_force(1)), S_OK) << model_test::last_sentence();
    database->Close();
    return forces;
  }

 private:
  std::string before_;
};

TEST_F(KillTest, BatchIsWholeOrNotThereWheneverItsProcessIsKilled) {
  const milliseconds batch = time_of_a_batch();
  const std::string all = std::to_string(1 + kForces);
  EXPECT_EQ(forces_in_a_whole_model(), all);

  int undone = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    const milliseconds delay = batch * kill / (kKills - 1);
    SCOPED_TRACE("killed after " + std::to_string(delay.count()) + " ms");
    restore();
    {
      const Saver saver(file.path());
      saver.wait(static_cast<DWORD>(delay.count()));
      saver.kill();
    }
    const std::string forces = forces_in_a_whole_model();
    EXPECT_TRUE(forces == "1" || forces == all) << forces;
    undone += forces == "1";
  }
  EXPECT_GT(undone, 1);
  std::cout << "[          ] " << undone << " of " << kKills << " batches were cut off\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && argv[1] == std::string("--save-batch")) {
    return save_batch(std::wstring(argv[2], argv[2] + std::strlen(argv[2])).c_str());
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
