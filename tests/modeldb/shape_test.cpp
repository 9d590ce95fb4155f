// Files of older versions, and files that other programs have reshaped.

#include <sqlite3.h>

#include "tests/modeldb/model_test.h"

namespace {

using model_test::narrow;
using ::testing::HasSubstr;

class ShapeTest : public model_test::ModelTest {
 protected:
  ShapeTest() { database->Close(); }

  /// Runs statements on the file as another program does, and returns the first value.
  std::string run(const std::string& sql) {
    sqlite3* other = nullptr;
    EXPECT_EQ(sqlite3_open(narrow(file.path()).c_str(), &other), SQLITE_OK);
    std::string result;
    const auto keep = [](void* to, int, char** values, char**) {
      *static_cast<std::string*>(to) = values[0] ? values[0] : "";
      return 0;
    };
    char* fault = nullptr;
    EXPECT_EQ(sqlite3_exec(other, sql.c_str(), keep, &result, &fault), SQLITE_OK) << fault;
    sqlite3_close(other);
    return result;
  }

  /// Makes a table anew, a piece of its definition replaced.
  void reshape(const std::string& table, const std::string& part, const std::string& replacement) {
    std::string sql = run("SELECT sql FROM sqlite_schema WHERE name = '" + table + "'");
    const auto found = sql.find(part);
    ASSERT_NE(found, std::string::npos) << sql;
    run("DROP TABLE " + table + "; " + sql.replace(found, part.size(), replacement));
  }
};

constexpr const char* kLinkRule =
    ", FOREIGN KEY (LoadSetID) REFERENCES LoadSets (LoadSetID) ON UPDATE CASCADE ON DELETE CASCADE";

TEST_F(ShapeTest, OlderFileGetsItsLinkRulesAndKeepsTheRest) {
  reshape("NodalForceLoadSets", kLinkRule, ", Mine TEXT");
  run("CREATE INDEX MyOwn ON NodalForceLoadSets (Mine);"
      "INSERT INTO LoadSets VALUES (1, 'Wind'); INSERT INTO NodalForces (NodalForceID) VALUES (5);"
      "INSERT INTO NodalForceLoadSets VALUES (1, 5, 'a'), (7, 5, 'b'), (1, 6, 'c'), (1, 5, 'd');"
      "PRAGMA user_version = 1");
  ASSERT_EQ(open(file.path()), S_OK) << model_test::last_sentence();
  EXPECT_EQ(value(L"SELECT group_concat(LoadSetID || ' ' || NodalForceID || ' ' || Mine) FROM "
                  L"NodalForceLoadSets"),
            "1 5 a,1 6 c,1 5 d")
      << "set 7 is not there";
  reopen();
  ASSERT_EQ(execute(L"DELETE FROM LoadSets"), S_OK) << model_test::last_sentence();
  EXPECT_EQ(count(L"NodalForceLoadSets"), "0");
  database->Close();
  EXPECT_EQ(run("PRAGMA user_version"), "2");
  EXPECT_EQ(run("SELECT count(*) FROM sqlite_schema WHERE tbl_name = 'NodalForceLoadSets'"), "4")
      << "the table, its two indexes and MyOwn";
}

TEST_F(ShapeTest, TableInWhichRowsWouldGetLostIsRefused) {
  const std::string original = file.read();
  const char* const key = "INTEGER PRIMARY KEY AUTOINCREMENT";
  const struct {
    const char* table;
    const char* part;
    const char* replacement;
    const char* fault;
  } cases[] = {
      {"NodalForces", key, "INTEGER", "its key NodalForceID is no INTEGER PRIMARY KEY"},
      {"NodalForces", key, "INTEGER PRIMARY KEY", "its key NodalForceID"},
      {"NodalForces", key, "TEXT PRIMARY KEY", "its key NodalForceID"},
      {"NodalForces", ", Vx REAL", "", "it has no column Vx"},
      {"NodalForces", "Vx REAL", "Vx REAL AS (1.0)", "it has no column Vx"},
      {"NodalForces", "Vx REAL", "Vx VARCHAR(9)", "of the type \"VARCHAR(9)\", not REAL"},
      {"NodalForces", "Vx REAL", "Vx REAL, Mine TEXT NOT NULL ON CONFLICT IGNORE", "(ON CONFLICT)"},
      {"NodalForces", "Vx REAL", "Vx REAL UNIQUE ON CONFLICT REPLACE", "(ON CONFLICT)"},
      {"NodalForces", "Vx REAL", "Vx REAL, Mine TEXT NOT NULL", "Mine does not allow NULL"},
      {"NodalForces", "VertexID INTEGER", "VertexID INTEGER REFERENCES Vertices ON DELETE CASCADE",
       "(REFERENCES)"},
      {"NodalForceLoadSets", kLinkRule, "", "it lacks the rule FOREIGN KEY (LoadSetID)"},
      {"NodalForceLoadSets", kLinkRule, ", PRIMARY KEY (LoadSetID, NodalForceID)",
       "it has a primary key"},
      {"LoadSets", "TABLE LoadSets", "VIEW LoadSets", "it is no table"}};
  for (const auto& [table, part, replacement, fault] : cases) {
    SCOPED_TRACE(replacement);
    if (std::string(replacement).starts_with("VIEW")) {
      run("DROP TABLE LoadSets; CREATE VIEW LoadSets AS SELECT 1 AS LoadSetID, '' AS Description");
    } else {
      reshape(table, part, replacement);
    }
    const std::string reshaped = file.read();
    EXPECT_SENTENCE(open(file.path()), HasSubstr("The table " + std::string(table) + " of the"),
                    HasSubstr(fault));
    EXPECT_EQ(file.read(), reshaped) << "left as it was";
    database->Close();
    file.write(original);
  }
}

TEST_F(ShapeTest, FurtherColumnsAndOtherWordsForATypeAreFine) {
  reshape("NodalForces", "Vx REAL, Vy REAL", "Vy DOUBLE, Mine TEXT UNIQUE, \"VX\" float /* mm */");
  ASSERT_EQ(open(file.path()), S_OK) << model_test::last_sentence();
  ASSERT_EQ(save(make_force(250)), S_OK) << model_test::last_sentence();
  ASSERT_EQ(save(make_force(250)), S_OK) << model_test::last_sentence();
  EXPECT_TRUE(load_force(2));
}

}  // namespace
