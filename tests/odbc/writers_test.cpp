// Four programs write into one model, with pauses at random moments; some are killed, and some lose
// their connection. Whatever a program was told is saved is there once, and nothing else is.
//
// The program starts itself as those that write. Each keeps a journal: what it is about to do, and
// what it was told of that. ORV_TEAM_SECONDS in the environment is how long they work.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <sstream>
#include <vector>

#include "modeldb/odbc/odbc_statement.h"
#include "modeldb/odbc/session.h"
#include "tests/modeldb/child_process.h"
#include "tests/modeldb/model_test.h"

namespace {

using com::Ptr;
using com::Variant;
using model_test::bstr;
using model_test::ChildProcess;
using model_test::create;

constexpr wchar_t kBegins[] = L"orv_writers_test_begins";
constexpr std::size_t kWriters = 4;

// --- A writer
// -------------------------------------------------------------------------------------

class Writer {
 public:
  Writer(std::string location, const std::string& journal, unsigned number)
      : location_(std::move(location)),
        journal_(journal, std::ios::app),
        number_(number),
        random_(number) {}

  [[noreturn]] void write_until_killed() {
    open();
    model_test::signal(kBegins);
    for (;;) {
      pause();
      const int choice = below(10);
      if (choice < 3) {
        add_to_the_shared_one();
      } else if (choice < 5 && !saved_.empty()) {
        take_one_away();
      } else {
        save_some(below(2) == 0 ? 1 : 2 + below(30));
      }
    }
  }

 private:
  int below(int bound) { return std::uniform_int_distribution(0, bound - 1)(random_); }
  void pause() {
    if (below(3) == 0) Sleep(static_cast<DWORD>(below(40)));
  }
  /// A line that is there whatever becomes of this program.
  void note(const std::string& line) { journal_ << line << std::endl; }

  void open() {
    model_ = create<ModelDatabase, IModelDatabaseFile>();
    const std::wstring location(location_.begin(), location_.end());
    // Another connection may just be ending.
    while (FAILED(model_->Open(bstr(location).get()))) Sleep(50);
  }

  bool is_done(HRESULT result) {
    if (FAILED(result)) sentence_ = model_test::last_sentence();
    return SUCCEEDED(result);
  }

  /// What the last failure means for what was tried: "not" done, or "maybe" when nobody knows. A
  /// connection that was lost is made anew.
  std::string outcome() {
    const bool is_unknown = sentence_.find("it is not known whether") != std::string::npos;
    if (sentence_.find("was lost") != std::string::npos) {
      model_->Close();
      open();
    }
    return is_unknown ? "maybe" : "not";
  }

  Ptr<INodalForce> force_of(const std::string& description) {
    auto force = create<NodalForce, INodalForce>();
    force->put_Description(bstr(std::wstring(description.begin(), description.end())).get());
    force->put_Magnitude(1);
    return force;
  }

  static void put_into(const Ptr<INodalForce>& force, const Ptr<ILoadSet>& set) {
    Ptr<IDispatch> sets;
    force->get_LoadSets(sets.put());
    sets.query<ILoadSets>()->Add(set.get());
  }

  /// A batch of forces, each on a vertex of its own, all in a set of their own; in a transaction of
  /// the script's, or in that of the collection.
  void save_some(int count) {
    const std::string name = std::to_string(number_) + "-" + std::to_string(++made_);
    note("save " + name + " " + std::to_string(count));
    const auto set = create<LoadSet, ILoadSet>();
    set->put_Description(bstr(std::wstring(name.begin(), name.end())).get());
    std::vector<Ptr<INodalForce>> forces;
    for (int i = 0; i < count; ++i) {
      forces.push_back(force_of(name));
      put_into(forces.back(), set);
    }
    const bool is_saved = below(3) == 0 ? save_one_by_one(forces) : save_together(forces);
    if (!is_saved) return note(outcome() + " " + name);
    if (const long refused = refused_alone(); refused > 0) {
      return note("has " + name + " " + std::to_string(count - refused));
    }
    std::string ids;
    for (const auto& force : forces) {
      long id = 0;
      force->get_ID(&id);
      ids += " " + std::to_string(id);
    }
    note("did " + name + ids);
    saved_.push_back(forces);
    names_.push_back(name);
  }

  bool save_together(const std::vector<Ptr<INodalForce>>& forces) {
    const auto collection = create<NodalForces, INodalForces>();
    for (const auto& force : forces) collection->Add(force.get());
    return is_done(collection->Save(model_.get(), Variant::omitted(), Variant::omitted()));
  }

  /// Records of the last batch that were told not to be done. A deletion may meet that of another
  /// program, since both lock what is next to their own.
  long refused_alone() {
    Ptr<IFailures> failures;
    long count = 0;
    model_->get_Failures(failures.put());
    failures->get_Count(&count);
    return count;
  }

  bool save_one_by_one(const std::vector<Ptr<INodalForce>>& forces) {
    if (!run(L"BEGIN TRANSACTION")) return false;
    for (const auto& force : forces) {
      pause();
      if (is_done(force->Save(model_.get(), Variant::omitted(), Variant::omitted()))) continue;
      const std::string sentence = std::move(sentence_);
      run(L"ROLLBACK TRANSACTION");
      sentence_ = sentence;
      return false;
    }
    pause();
    return run(L"COMMIT TRANSACTION");
  }

  bool run(const wchar_t* sql) {
    Ptr<IDispatch> connection;
    model_->get_Connection(connection.put());
    Ptr<_Recordset> rows;
    return is_done(connection.query<Connection15>()->Execute(bstr(sql).get(), nullptr,
                                                             adExecuteNoRecords, rows.put()));
  }

  void take_one_away() {
    const auto forces = saved_.back();
    const std::string name = names_.back();
    saved_.pop_back();
    names_.pop_back();
    note("delete " + name);
    const auto collection = create<NodalForces, INodalForces>();
    for (const auto& force : forces) collection->Add(force.get());
    const bool is_deleted = is_done(collection->Delete(model_.get()));
    if (const long refused = is_deleted ? refused_alone() : 0; refused > 0) {
      return note("has " + name + " " + std::to_string(refused));
    }
    note((is_deleted ? "did " : outcome() + " ") + name);
  }

  /// Everybody adds 1 to the force 1, unless somebody else was quicker.
  void add_to_the_shared_one() {
    Ptr<IDispatch> object;
    const Variant condition(com::Bstr(L"NodalForceID = 1"));
    if (!is_done(model_->Load(bstr(L"NodalForces").get(), condition, Variant::omitted(),
                              object.put()))) {
      (void)outcome();
      return;
    }
    Ptr<INodalForce> force;
    object.query<INodalForces>()->Item(0, force.put());
    double sum = 0;
    force->get_Magnitude(&sum);
    pause();
    force->put_Magnitude(sum + 1);
    note("add");
    const bool is_saved =
        is_done(force->Save(model_.get(), Variant::omitted(), Variant::omitted()));
    note((is_saved ? "did" : outcome()) + " add");
  }

  const std::string location_;
  std::ofstream journal_;
  const unsigned number_;
  std::mt19937 random_;
  Ptr<IModelDatabaseFile> model_;
  std::string sentence_;  // of the last failure
  int made_ = 0;
  std::vector<std::vector<Ptr<INodalForce>>> saved_;
  std::vector<std::string> names_;
};

// --- What became of it
// ----------------------------------------------------------------------------

/// What the journals say.
struct Journals {
  struct Batch {
    long count = 0;
    bool may_be_there = true;
    bool may_be_gone = true;
  };

  std::map<std::string, Batch> batches;
  std::set<long> keys;
  long keys_given = 0;
  long added = 0;          // surely
  long perhaps_added = 0;  // besides
  long refused = 0;

  void read(const std::string& path) {
    std::ifstream journal(path);
    std::string pending;  // "add", or what was begun with a batch
    for (std::string line; std::getline(journal, line);) {
      std::istringstream words(line);
      std::string what;
      std::string name;
      words >> what >> name;
      if (what == "add") {
        ++perhaps_added;
      } else if (what == "save") {
        words >> batches[name].count;
        pending = "save";
      } else if (what == "delete") {
        batches[name].may_be_gone = true;
        pending = "delete";
      } else if (what == "has") {
        long count = 0;
        words >> count;
        batches[name] = {.count = count, .may_be_there = true, .may_be_gone = count == 0};
      } else if (name == "add") {
        if (what != "maybe") --perhaps_added;
        if (what == "did") ++added;
        if (what == "not") ++refused;
      } else if (what != "maybe") {
        const bool is_there = (what == "did") == (pending == "save");
        batches[name].may_be_there = is_there;
        batches[name].may_be_gone = !is_there;
        for (long key = 0; words >> key; ++keys_given) keys.insert(key);
      }
    }
  }
};

class WritersTest : public model_test::ModelTest {
 protected:
  WritersTest() : owner_(file.path()) { owner_.connect(); }

  /// The journal of a writer that is started, which has that number.
  std::string start_writer(std::unique_ptr<ChildProcess>& writer) {
    const std::wstring journal = model_test::TemporaryFile().path();
    const std::wstring number = std::to_wstring(++started_);
    writer = std::make_unique<ChildProcess>(
        L"--write \"" + file.path() + L"\" \"" + journal + L"\" " + number, kBegins);
    return {journal.begin(), journal.end()};
  }

  long asked(const std::wstring& sql) {
    modeldb::OdbcStatement rows(owner_, sql, modeldb::Trust::kHost);
    return rows.step() ? static_cast<long>(rows.integer(0)) : -1;
  }

  /// How many forces there are under each description.
  std::map<std::string, long> batches_there() {
    std::map<std::string, long> batches;
    modeldb::OdbcStatement rows(owner_,
                                L"SELECT Description, count(*) FROM NodalForces WHERE "
                                L"NodalForceID <> 1 GROUP BY Description",
                                modeldb::Trust::kHost);
    while (rows.step()) batches[model_test::narrow(rows.text(0))] = rows.integer(1);
    return batches;
  }

  void end_a_connection() {
    (void)asked(
        L"SELECT count(pg_terminate_backend(pid)) FROM (SELECT pid FROM pg_stat_activity WHERE "
        L"datname = current_database() AND pid <> pg_backend_pid() ORDER BY random() LIMIT 1) x");
  }

  modeldb::Session owner_;
  unsigned started_ = 0;
};

TEST_F(WritersTest, NothingIsLostAndNothingTwiceWhenWritersAreKilled) {
  const auto shared = make_force(0);
  ASSERT_EQ(save(shared), S_OK) << model_test::last_sentence();
  database->Close();

  const char* const seconds = std::getenv("ORV_TEAM_SECONDS");
  const ULONGLONG end = GetTickCount64() + 1000ULL * (seconds ? std::atol(seconds) : 10);
  std::vector<std::string> journals;
  int kills = 0;
  {
    std::vector<std::unique_ptr<ChildProcess>> writers(kWriters);
    for (auto& writer : writers) journals.push_back(start_writer(writer));
    std::mt19937 random(7);
    while (GetTickCount64() < end || kills < 4) {
      Sleep(200 + random() % 600);
      if (random() % 3 == 0) end_a_connection();
      auto& writer = writers[random() % kWriters];
      writer->kill();
      journals.push_back(start_writer(writer));
      ++kills;
    }
    for (const auto& writer : writers) writer->kill();
  }
  // The server notices at its next word to a program that is gone.
  while (asked(L"SELECT count(*) FROM pg_stat_activity WHERE datname = current_database() AND pid "
               L"<> pg_backend_pid()") > 0) {
    Sleep(50);
  }

  Journals told;
  for (const std::string& journal : journals) {
    told.read(journal);
    std::filesystem::remove(journal);
  }
  auto there = batches_there();
  for (const auto& [name, batch] : told.batches) {
    const auto found = there.find(name);
    const long count = found == there.end() ? 0 : found->second;
    EXPECT_TRUE((count == batch.count && batch.may_be_there) || (count == 0 && batch.may_be_gone))
        << name << " has " << count << " of " << batch.count << " forces";
    if (found != there.end()) there.erase(found);
  }
  EXPECT_TRUE(there.empty()) << "nobody has saved " << there.begin()->first;
  EXPECT_EQ(static_cast<long>(told.keys.size()), told.keys_given) << "a key was given twice";
  const long sum = asked(L"SELECT Magnitude::integer FROM NodalForces WHERE NodalForceID = 1");
  EXPECT_GE(sum, told.added);
  EXPECT_LE(sum, told.added + told.perhaps_added);
  // Each has its vertex and its link, and none is left of what is gone.
  EXPECT_EQ(asked(L"SELECT count(*) FROM NodalForces f LEFT JOIN Vertices v USING (VertexID) WHERE "
                  L"v.VertexID IS NULL"),
            0);
  EXPECT_EQ(asked(L"SELECT count(*) FROM NodalForces f LEFT JOIN NodalForceLoadSets l USING "
                  L"(NodalForceID) WHERE l.LoadSetID IS NULL AND f.NodalForceID <> 1"),
            0);
  EXPECT_EQ(asked(L"SELECT count(*) FROM NodalForceLoadSets"),
            asked(L"SELECT count(*) - 1 FROM NodalForces"));
  std::cout << "[          ] " << kills << " writers were killed; " << told.batches.size()
            << " batches, " << told.keys_given << " keys, " << told.added << " additions, "
            << told.refused << " refused\n";
}

int write(char** arguments) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  Writer(arguments[2], arguments[3], std::strtoul(arguments[4], nullptr, 10)).write_until_killed();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 5 && argv[1] == std::string("--write")) return write(argv);
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
