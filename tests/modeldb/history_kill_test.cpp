// A process that is killed while it undoes or redoes leaves the model as it was before, or as it is
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

constexpr int kForces = 3000;
constexpr int kKills = 12;
constexpr wchar_t kBegins[] = L"orv_modeldb_history_kill_test_begins";

int undo_all(const wchar_t* path) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const auto database = create<ModelDatabase, IModelDatabaseFile>();
  if (FAILED(database->Open(bstr(path).get()))) return 1;
  model_test::signal(kBegins);
  return FAILED(database->Undo(com::Variant(1L)));
}

class Undoer : public ChildProcess {
 public:
  explicit Undoer(const std::wstring& path) : ChildProcess(L"--undo \"" + path + L"\"", kBegins) {}
};

class HistoryKillTest : public model_test::HistoryTest {
 protected:
  HistoryKillTest() {
    without_ = all_rows();
    const auto forces = create<NodalForces, INodalForces>();
    for (int i = 0; i < kForces; ++i) {
      const auto force = make_force(i);
      load_sets_of(force)->Add(make_load_set(L"Set").get());
      forces->Add(force.get());
    }
    forces->Save(database.get(), com::Variant::omitted(), com::Variant::omitted());
    execute(L"UPDATE NodalForces SET Magnitude = Magnitude + 0.5");
    with_ = all_rows();
    database->Close();
    before_ = file.read();
  }

  void restore() {
    file.remove();
    file.write(before_);
  }

  /// Whether the steps are undone; what is there, is there as a whole, and can be redone or undone.
  bool is_undone_as_a_whole() {
    EXPECT_EQ(open(file.path()), S_OK) << model_test::last_sentence();
    const bool is_undone = all_rows() == without_;
    EXPECT_TRUE(is_undone || all_rows() == with_);
    EXPECT_EQ(is_undone ? redo(2) : undo(1), S_OK) << model_test::last_sentence();
    EXPECT_TRUE(all_rows() == (is_undone ? with_ : without_));
    database->Close();
    return is_undone;
  }

 private:
  std::string without_;
  std::string with_;
  std::string before_;
};

TEST_F(HistoryKillTest, StepsAreUndoneAsAWholeOrNotAtAll) {
  milliseconds whole{};
  {
    const Undoer undoer(file.path());
    const auto begin = steady_clock::now();
    undoer.wait(INFINITE);
    whole = std::chrono::duration_cast<milliseconds>(steady_clock::now() - begin);
  }
  EXPECT_TRUE(is_undone_as_a_whole());

  int cut_off = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    const milliseconds delay = whole * kill / (kKills - 1);
    SCOPED_TRACE("killed after " + std::to_string(delay.count()) + " ms");
    restore();
    {
      const Undoer undoer(file.path());
      undoer.wait(static_cast<DWORD>(delay.count()));
      undoer.kill();
    }
    if (!is_undone_as_a_whole()) ++cut_off;
  }
  EXPECT_GT(cut_off, 1);
  std::cout << "[          ] " << cut_off << " of " << kKills << " were cut off\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && argv[1] == std::string("--undo")) {
    return undo_all(std::wstring(argv[2], argv[2] + std::strlen(argv[2])).c_str());
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
