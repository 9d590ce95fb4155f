// Random sequences of changes, undone and redone: whatever was done, every table is as it was, row
// by row and bit by bit.
//
// ORV_HISTORY_SEQUENCES sets how many sequences are tried, ORV_HISTORY_SEED where they begin.

#include <cstdlib>
#include <iostream>
#include <random>
#include <sstream>

#include "tests/modeldb/history_support.h"

namespace {

using model_test::bstr;
using model_test::create;
using model_test::OtherProgram;

constexpr int kSequences = 6;
constexpr int kChanges = 40;

unsigned setting(const char* name, unsigned otherwise) {
  const char* const text = std::getenv(name);
  return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : otherwise;
}

class RandomTest : public model_test::HistoryTest {
 protected:
  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  std::wstring number(int limit) { return std::to_wstring(below(limit)); }

  /// A new model, with tables of another program in it.
  void start(unsigned seed) {
    random_.seed(seed);
    database->Close();
    file.remove();
    ASSERT_EQ(open(file.path()), S_OK) << model_test::last_sentence();
    OtherProgram(file.path())
        .run(
            "CREATE TABLE OtherWithout (K TEXT COLLATE NOCASE, N INTEGER, V, PRIMARY KEY (K, N)) "
            "WITHOUT ROWID; CREATE TABLE OtherText (K TEXT PRIMARY KEY, V REAL);"
            "CREATE TABLE OtherUnique (ID INTEGER PRIMARY KEY, U INTEGER UNIQUE, V BLOB);"
            "CREATE TABLE OtherLoose (A, B TEXT COLLATE NOCASE)");
    states_ = {all_rows()};
    steps_ = {{}};
    at_ = 0;
  }

  void sequence() {
    for (int i = 0; i < kChanges; ++i) {
      switch (below(8)) {
        case 0:
          if (at_ > 0) go_to(at_ - 1 - below(static_cast<int>(at_)), true);
          break;
        case 1:
          if (at_ + 1 < states_.size()) {
            go_to(at_ + 1 + below(static_cast<int>(states_.size() - at_ - 1)), false);
          }
          break;
        case 2:
          if (below(4) == 0) reopen();
          break;
        default:
          make_step();
      }
      if (HasFailure()) return;
    }
    if (at_ > 0) go_to(0, true);
    if (states_.size() > 1) go_to(states_.size() - 1, false);
  }

 private:
  /// Undoes or redoes one step at a time or all at once.
  void go_to(std::size_t state, bool undoes) {
    if (below(2) == 0) {
      EXPECT_EQ(undoes ? undo(steps_[state + 1].first) : redo(steps_[state].last), S_OK)
          << model_test::last_sentence();
    } else {
      for (std::size_t i = std::min(state, at_) + 1; i <= std::max(state, at_); ++i) {
        for (long number = steps_[i].first; number <= steps_[i].last; ++number) {
          EXPECT_EQ(undoes ? undo() : redo(), S_OK) << model_test::last_sentence();
        }
      }
    }
    at_ = state;
    expect_state();
  }

  void expect_state() {
    const std::string found = all_rows();
    if (found == states_[at_]) return;
    ADD_FAILURE() << "state " << at_ << " has rows\n"
                  << rows_of_one(found, states_[at_]) << "instead of\n"
                  << rows_of_one(states_[at_], found) << "last statements\n"
                  << model_test::narrow(last_) << note();
  }

  /// Rows that one state has and the other has not, shortened.
  static std::string rows_of_one(const std::string& one, const std::string& other) {
    constexpr std::size_t kLongest = 120;
    std::string rows;
    std::istringstream lines(one);
    for (std::string row; std::getline(lines, row);) {
      if (other.find(row) == std::string::npos) rows += "  " + row.substr(0, kLongest) + '\n';
    }
    return rows;
  }

  void make_step() {
    const long number = next_number();
    last_ = L"";
    if (below(2) == 0) {
      change();
    } else {
      transaction(0);
    }
    if (next_number() == number) return expect_state();
    states_.resize(++at_);
    steps_.resize(at_);
    states_.push_back(all_rows());
    steps_.push_back({number, next_number() - 1});
  }

  void transaction(int depth) {
    run(L"BEGIN TRANSACTION");
    for (int i = below(5); i >= 0; --i) {
      if (depth < 3 && below(4) == 0) {
        transaction(depth + 1);
      } else {
        change();
      }
    }
    // Without one, where a statement rolled everything back.
    run(below(3) == 0 ? L"ROLLBACK TRANSACTION" : L"COMMIT TRANSACTION");
  }

  void run(const std::wstring& sql) {
    last_ += sql + L"\n";
    (void)execute(sql);  // many are meant to fail
  }

  void change() {
    switch (below(6)) {
      case 0:
        return save_force();
      case 1:
        return save_collection();
      case 2:
        return change_loaded_force();
      default:
        return run(statement());
    }
  }

  com::Ptr<INodalForce> random_force() {
    const auto force = make_force(below(5) * 0.5);
    if (below(2) == 0) vertex_of(force)->put_ID(1 + below(4));
    if (below(3) == 0) force->put_ID(1 + below(12));
    for (int i = below(3); i > 0; --i) {
      load_sets_of(force)->Add(make_load_set(L"Set " + number(3)).get());
    }
    return force;
  }

  void save_force() {
    last_ += L"(a force is saved)\n";
    (void)save(random_force());
  }

  void save_collection() {
    last_ += L"(a collection is saved)\n";
    const auto forces = create<NodalForces, INodalForces>();
    for (int i = below(5); i >= 0; --i) forces->Add(random_force().get());
    (void)forces->Save(database.get(), com::Variant::omitted(), com::Variant::omitted());
    if (below(3) == 0) (void)forces->Delete(database.get());
  }

  void change_loaded_force() {
    const auto force = load_force(1 + below(12));
    if (!force) return;
    last_ += L"(a loaded force is changed)\n";
    if (below(2) == 0) {
      (void)force->Delete(database.get());
      return;
    }
    force->put_Vx(below(3));
    force->put_Description(bstr(L"changed " + number(100)).get());
    (void)save(force);
  }

  std::wstring conflict() {
    constexpr const wchar_t* kWords[] = {L"",
                                         L"OR REPLACE ",
                                         L"OR IGNORE ",
                                         L"OR FAIL ",
                                         L"OR ROLLBACK ",
                                         L"OR ABORT ",
                                         L"OR REPLACE ",
                                         L""};
    return kWords[below(8)];
  }

  std::wstring text() {
    constexpr const wchar_t* kTexts[] = {L"'a'", L"'A'", L"'\u00e4''b'", L"''", L"x'00ff'"};
    return kTexts[below(5)];
  }

  std::wstring value() {
    switch (below(6)) {
      case 0:
        return L"NULL";
      case 1:
        return number(4) + L".0";
      case 2:
        return L"-" + number(4) + L".25e10";
      case 3:
        return text();
      case 4:
        return below(400) == 0 ? L"printf('%.1500000c', 'x')" : L"printf('%.300c', 'y')";
      default:
        return number(4);
    }
  }

  std::wstring statement() {
    const std::wstring key = std::to_wstring(1 + below(12));
    switch (below(22)) {
      case 0:
        return L"INSERT " + conflict() +
               L"INTO NodalForces (NodalForceID, VertexID, Magnitude) VALUES (" + key + L", " +
               number(4) + L", " + number(9) + L"), (" + std::to_wstring(1 + below(12)) +
               L", 1, 2.5)";
      case 1:
        return L"INSERT INTO NodalForces (VertexID, Description) VALUES (" + number(4) + L", " +
               text() + L")";
      case 2:
        return L"UPDATE " + conflict() + L"NodalForces SET NodalForceID = NodalForceID + " +
               number(3) + L" WHERE NodalForceID > " + key;
      case 3:
        return L"UPDATE NodalForces SET Magnitude = " + value() + L" WHERE NodalForceID % 3 = " +
               number(3);
      case 4:
        return L"DELETE FROM NodalForces" +
               (below(4) == 0 ? std::wstring() : L" WHERE NodalForceID = " + key);
      case 5:
        return L"INSERT INTO NodalForceLoadSets (LoadSetID, NodalForceID) SELECT LoadSetID, " +
               number(12) + L" FROM LoadSets";
      case 6:
        return L"DELETE FROM NodalForceLoadSets WHERE NodalForceID = " + number(12);
      case 7:
        return L"UPDATE NodalForceLoadSets SET LoadSetID = " + number(6);
      case 8:
        return L"DELETE FROM LoadSets WHERE LoadSetID = " + key;
      case 9:
        return L"UPDATE " + conflict() + L"LoadSets SET LoadSetID = " + key +
               L" WHERE LoadSetID = " + number(12);
      case 10:
        return L"INSERT " + conflict() + L"INTO LoadSets (LoadSetID, Description) VALUES (" + key +
               L", " + text() + L")";
      case 11:
        return L"INSERT " + conflict() + L"INTO Vertices (VertexID, X) VALUES (" + key + L", " +
               number(9) + L"), (1, 0)";
      case 12:
        return L"DELETE FROM Vertices WHERE VertexID > " + number(6);
      case 13:
        return L"UPDATE " + conflict() + L"Vertices SET VertexID = VertexID + 1, X = X / 3";
      case 14:
        return L"INSERT " + conflict() + L"INTO OtherWithout VALUES (" + text() + L", " +
               number(3) + L", " + value() + L")";
      case 15:
        return L"UPDATE " + conflict() + L"OtherWithout SET K = " + text() + L", V = " + value();
      case 16:
        return L"DELETE FROM OtherWithout WHERE N = " + number(3);
      case 17:
        return L"INSERT " + conflict() + L"INTO OtherText VALUES (" + text() + L", " + value() +
               L"), ('" + number(4) + L"', " + value() + L")";
      case 18:
        return L"INSERT " + conflict() + L"INTO OtherUnique (U, V) VALUES (" + number(9) + L", " +
               value() + L"), (" + number(9) + L", 1), (" + number(9) + L", 2)";
      case 19:
        return L"UPDATE " + conflict() + L"OtherUnique SET ID = ID + " + number(3) + L", U = U + " +
               number(2);
      case 20:
        return L"INSERT INTO OtherLoose VALUES (" + value() + L", " + text() + L"), (1, 'a')";
      default:
        return below(2) == 0 ? L"UPDATE OtherLoose SET rowid = rowid + 5, A = " + value()
                             : L"DELETE FROM OtherLoose WHERE B = " + text();
    }
  }

  std::mt19937 random_;
  std::vector<std::string> states_;  // after each step, the state at the beginning first
  /// Numbers of steps: a statement that rolls back by itself may leave several in one go.
  struct Steps {
    long first = 0;
    long last = 0;
  };
  std::vector<Steps> steps_;  // which lead to each
  std::size_t at_ = 0;
  std::wstring last_;  // what the step consists of, for a debugger
};

TEST_F(RandomTest, WhateverWasDoneIsUndoneAndRedoneExactly) {
  const unsigned first = setting("ORV_HISTORY_SEED", std::random_device{}());
  const unsigned size = setting("ORV_HISTORY_SEQUENCES", kSequences);
  std::cout << "[          ] " << size << " sequences from ORV_HISTORY_SEED=" << first << '\n';
  for (unsigned i = 0; i < size; ++i) {
    SCOPED_TRACE("ORV_HISTORY_SEED=" + std::to_string(first + i));
    start(first + i);
    sequence();
    ASSERT_FALSE(HasFailure());
  }
}

}  // namespace
