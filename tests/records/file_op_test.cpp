// FileOpHelper: what the host's record store has the record do around the writing of its row.

#include <gmock/gmock.h>

#include "com/bstr.h"
#include "tests/records/membership.h"

namespace {

using com::Variant;
using fake::operator+;
using server::no;
using server::omitted;
using server::sql;
using server::yes;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using Lines = fake::Journal::Lines;

constexpr long kBeforeSave = 1;
constexpr long kAfterSave = 2;
constexpr long kDelete = 3;

/// One call of an operation, and where the operation goes on when it fails: at the call with that
/// index, or nowhere.
struct Step {
  std::string line;
  std::size_t next;
};
constexpr std::size_t kNowhere = SIZE_MAX;

class Script {
 public:
  Script& then(const std::string& line, std::size_t next = kNowhere) {
    steps_.push_back({line, next});
    return *this;
  }
  /// Calls that stand or fall together, but for the last, whose result does not matter.
  Script& block(const Lines& lines) {
    const std::size_t end = steps_.size() + lines.size();
    for (const std::string& line : lines) then(line, end);
    return *this;
  }
  [[nodiscard]] std::size_t size() const { return steps_.size(); }
  [[nodiscard]] const Step& operator[](std::size_t index) const { return steps_[index]; }

  /// The calls that come when the one with this index fails.
  [[nodiscard]] Lines lines_failing_at(std::size_t index) const {
    Lines lines;
    for (std::size_t i = 0; i < steps_.size(); ++i) {
      if (i <= index || i >= steps_[index].next) lines.push_back(steps_[i].line);
    }
    return lines;
  }

 private:
  std::vector<Step> steps_;
};

class FileOpTest : public MembershipTest {
 protected:
  void SetUp() override { start(); }

  /// A record with the number 3 in the sets 7 and 9, whose description was changed to "new".
  void start() {
    record_ = m().make();
    record_->put_ID(3);
    record_->put_Description(com::Bstr(L"new").get());
    sets().add(7);
    sets().add(9);
    host.journal.clear();
  }
  HRESULT run(long operation, const VARIANT& down, const VARIANT& up) {
    return record_->FileOpHelper(host.database.get(), operation, down, up);
  }
  /// Runs an operation whole, and then with each of its calls failing in turn. Only an operation
  /// that `commits` makes the current values the saved ones, unless it was cut short.
  void expect_calls(long operation, const Script& script, bool commits);

  fake::Sets& sets() { return host.newest_sets(); }
  [[nodiscard]] bool committed() const { return sql(record_, 5).starts_with("'new'"); }

  [[nodiscard]] Lines delete_lines() const {
    return {"Command.CommandText DELETE FROM " + m().links() + " WHERE " + m().object + "ID = 3",
            "Command.Execute null null 129", "db.SetModified 1"};
  }
  [[nodiscard]] Lines insert_lines(long set) const {
    return {"Command.CommandText INSERT INTO " + m().links() + " (" + m().set + "ID, " +
                m().object + "ID) VALUES (" + std::to_string(set) + ", 3)",
            "Command.Execute null null 129", "db.SetModified 1"};
  }

  com::Ptr<IPersistentObject> record_;
};
FOR_EACH_MEMBERSHIP(FileOpTest);

void FileOpTest::expect_calls(long operation, const Script& script, bool commits) {
  EXPECT_EQ(run(operation, yes(), yes()), S_OK);
  ASSERT_THAT(host.journal.lines(), ElementsAreArray(script.lines_failing_at(script.size())));
  EXPECT_EQ(committed(), commits);

  for (std::size_t index = 0; index < script.size(); ++index) {
    SCOPED_TRACE("call " + std::to_string(index) + ", " + script[index].line);
    start();
    host.journal.fail_call(index + 1, E_ABORT, L"failed");
    const bool ignored = script[index].line == "db.SetModified 1";
    EXPECT_EQ(run(operation, yes(), yes()), ignored ? S_OK : E_ABORT);
    if (!ignored) {
      EXPECT_EQ(fake::take_error_words(), "failed");
    }
    EXPECT_THAT(host.journal.lines(), ElementsAreArray(script.lines_failing_at(index)));
    EXPECT_EQ(committed(), commits && script[index].next != kNowhere);
  }
}

TEST_P(FileOpTest, BeforeSaveSavesTheVertexAndAsksForItsNumber) {
  Script script;
  script.then("db.Command").then("db.Connection");
  script.then("Vertex.Save db I2:-1 I2:-1").then("Vertex.ID");
  expect_calls(kBeforeSave, script, false);
}

TEST_P(FileOpTest, AfterSaveReplacesTheLinksAndCommitsWhateverSingleCallFails) {
  const std::string item = m().sets() + ".Item ";
  const std::string id = m().set + ".ID";
  Script script;
  script.then("db.Command")
      .then("db.Connection")
      .then(m().sets() + ".Save db I2:-1 I2:-1")
      .block(delete_lines())
      .then(m().sets() + ".Count")
      .block(Lines{item + "0", id} + insert_lines(7))
      .then(m().sets() + ".Count")
      .block(Lines{item + "1", id} + insert_lines(9))
      .then(m().sets() + ".Count");
  expect_calls(kAfterSave, script, true);
}

TEST_P(FileOpTest, DeleteTakesTheLinksAwayAndLeavesTheSets) {
  Script script;
  script.then("db.Command").then("db.Connection").block(delete_lines());
  expect_calls(kDelete, script, false);
  EXPECT_THAT(sets().ids(), ElementsAre(7, 9));
}

TEST_P(FileOpTest, LastOfSeveralFailuresIsReported) {
  host.journal.fail_call(4, E_FAIL, L"the delete");
  host.journal.fail(m().sets() + ".Item 1", E_ABORT, L"the item");
  EXPECT_EQ(run(kAfterSave, yes(), yes()), E_ABORT);
  EXPECT_EQ(fake::take_error_words(), "the item");
  EXPECT_TRUE(committed());
}

TEST_P(FileOpTest, CollectionIsFollowedAsItStandsAndASetThatIsNotThereCostsOnlyItsOwnLink) {
  sets().add_null();
  host.journal.on_call = [&](const std::string& call) {
    if (call == insert_lines(9)[0]) sets().add(7);
  };
  EXPECT_EQ(run(kAfterSave, yes(), no()), E_POINTER);
  EXPECT_THAT(host.journal.lines_with("INSERT"),
              ElementsAre(insert_lines(7)[0], insert_lines(9)[0], insert_lines(7)[0]));
  EXPECT_THAT(host.journal.lines_with(m().sets() + ".Save"), IsEmpty());
  EXPECT_TRUE(committed());
}

TEST_P(FileOpTest, WhatIsNoCollectionFailsWhereOneIsNeeded) {
  for (IDispatch* const other : {static_cast<IDispatch*>(nullptr), host.connection.get()}) {
    server::LateBound(record_).put_reference(m().property, other);
    host.journal.clear();
    const HRESULT failure = other ? E_NOINTERFACE : E_POINTER;
    EXPECT_EQ(run(kAfterSave, yes(), yes()), failure);
    EXPECT_THAT(host.journal.lines_with("Command."), IsEmpty());
    EXPECT_EQ(run(kAfterSave, yes(), no()), failure);
    EXPECT_THAT(host.journal.lines_with("Command.CommandText"), ElementsAre(delete_lines()[0]));
    EXPECT_FALSE(committed());
  }
}

TEST_P(FileOpTest, NumberOfTheVertexIsCommittedOnlyAsItWasBeforeTheSave) {
  const Variant vertex = server::LateBound(record_).get(L"Vertex");
  com::Ptr<IDispatch>(vertex.get().pdispVal).query<IVertex>()->put_ID(12);
  run(kAfterSave, yes(), yes());
  EXPECT_THAT(sql(record_, 5), StartsWith("'new', 0, "));
  run(kBeforeSave, no(), no());
  EXPECT_THAT(host.journal.lines_with("Vertex.Save"), IsEmpty());
  EXPECT_THAT(sql(record_, 5), StartsWith("'new', 0, "));
  run(kAfterSave, yes(), yes());
  EXPECT_THAT(sql(record_, 5), StartsWith("'new', 12, "));
}

TEST_P(FileOpTest, FlagsConvertAsThePlatformHasItAndCountAsTrueWhenTheyDoNot) {
  const struct {
    Variant flag;
    bool cascades;
    bool converts;
  } cases[] = {
      {yes(), true, true},
      {no(), false, true},
      {Variant(std::int16_t{0}), false, true},
      {Variant(4), true, true},
      {Variant(), false, true},
      {Variant(com::Bstr(L"True")), true, true},
      {Variant(com::Bstr(L"False")), false, true},
      {Variant(com::Bstr(L"maybe")), true, false},
      {omitted(), true, false},
  };
  for (const auto& [flag, cascades, converts] : cases) {
    SCOPED_TRACE(host.journal.show(flag));
    host.journal.clear();
    run(kBeforeSave, flag, yes());
    EXPECT_EQ(host.journal.lines_with("Vertex.Save").size(), cascades ? 1U : 0U);
    run(kAfterSave, yes(), flag);
    EXPECT_EQ(host.journal.lines_with(m().sets() + ".Save").size(), cascades ? 1U : 0U);
    EXPECT_EQ(SUCCEEDED(run(kDelete, yes(), flag)), converts);
  }
}

}  // namespace
