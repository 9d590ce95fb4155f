// A process that is killed while it changes a model leaves the model as it was before, or as it is
// after: at whatever moment it is killed.
//
// The program starts itself as the process that is killed.

#include <chrono>
#include <cstring>
#include <iostream>

#include "tests/modeldb/child_process.h"
#include "tests/modeldb/history_support.h"

namespace {

using model_test::bstr;
using model_test::ChildProcess;
using model_test::create;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int kForces = 2000;
constexpr wchar_t kBegins[] = L"orv_modeldb_kill_test_begins";

/// Forces, each with a vertex and a link to a new set of its own.
com::Ptr<INodalForces> batch() {
  auto forces = create<NodalForces, INodalForces>();
  for (int index = 0; index < kForces; ++index) {
    const auto force = create<NodalForce, INodalForce>();
    com::Ptr<IDispatch> sets;
    force->get_LoadSets(sets.put());
    sets.query<ILoadSets>()->Add(create<LoadSet, ILoadSet>().get());
    forces->Add(force.get());
  }
  return forces;
}

HRESULT save_batch(IModelDatabaseFile* database) {
  const auto forces = batch();
  model_test::signal(kBegins);
  return forces->Save(database, com::Variant::omitted(), com::Variant::omitted());
}

HRESULT undo_all(IModelDatabaseFile* database) {
  model_test::signal(kBegins);
  return database->Undo(com::Variant(1L));
}

using Work = HRESULT (*)(IModelDatabaseFile*);

/// What the process that is killed does.
int work_on(const wchar_t* path, Work work) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const auto database = create<ModelDatabase, IModelDatabaseFile>();
  if (FAILED(database->Open(bstr(path).get()))) return 1;
  return FAILED(work(database.get()));
}

class KillTest : public model_test::HistoryTest {
 protected:
  /// Has a process do the work on the model as it is now, once to the end, and then cut off after
  /// ever longer times. `go_on` is called with what each time left open, and told whether the work
  /// is done.
  template <class GoOn>
  void cut_off_all_along(const std::wstring& work, int kills, GoOn go_on) {
    before = all_rows();
    database->Close();
    const std::string content = file.read();
    const milliseconds whole = time_of(work);
    reopen();
    after = all_rows();
    ASSERT_TRUE(after != before);
    go_on(true);

    int undone = 0;
    for (int kill = 0; kill < kills; ++kill) {
      const milliseconds delay = whole * kill / (kills - 1);
      SCOPED_TRACE("killed after " + std::to_string(delay.count()) + " ms");
      database->Close();
      file.remove();
      file.write(content);
      cut_off(work, delay);
      ASSERT_EQ(open(file.path()), S_OK) << model_test::last_sentence();
      const std::string rows = all_rows();
      EXPECT_TRUE(rows == before || rows == after);
      go_on(rows == after);
      undone += rows == before;
    }
    EXPECT_GT(undone, 1);
    std::cout << "[          ] " << undone << " of " << kills << " were cut off\n";
  }

  std::string before;
  std::string after;

 private:
  [[nodiscard]] ChildProcess begun(const std::wstring& work) const {
    return {work + L" \"" + file.path() + L"\"", kBegins};
  }

  [[nodiscard]] milliseconds time_of(const std::wstring& work) const {
    const ChildProcess process = begun(work);
    const auto begin = steady_clock::now();
    process.wait(INFINITE);
    return std::chrono::duration_cast<milliseconds>(steady_clock::now() - begin);
  }

  void cut_off(const std::wstring& work, milliseconds delay) const {
    const ChildProcess process = begun(work);
    process.wait(static_cast<DWORD>(delay.count()));
    process.kill();
  }
};

TEST_F(KillTest, BatchIsSavedAsAWholeOrNotAtAll) {
  const auto force = make_force(1000);
  load_sets_of(force)->Add(make_load_set(L"Before").get());
  ASSERT_EQ(save(force), S_OK);
  cut_off_all_along(L"--save", 24, [&](bool) {
    EXPECT_EQ(save(make_force(1)), S_OK) << model_test::last_sentence();
  });
}

TEST_F(KillTest, StepsAreUndoneAsAWholeOrNotAtAll) {
  ASSERT_EQ(batch()->Save(database.get(), com::Variant::omitted(), com::Variant::omitted()), S_OK);
  execute(L"UPDATE NodalForces SET Magnitude = Magnitude + 0.5");
  cut_off_all_along(L"--undo", 12, [&](bool is_undone) {
    EXPECT_EQ(is_undone ? redo(2) : undo(1), S_OK) << model_test::last_sentence();
    EXPECT_TRUE(all_rows() == (is_undone ? before : after));
  });
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strncmp(argv[1], "--gtest", 7) != 0) {
    const std::wstring path(argv[2], argv[2] + std::strlen(argv[2]));
    return work_on(path.c_str(), argv[1] == std::string("--save") ? save_batch : undo_all);
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
