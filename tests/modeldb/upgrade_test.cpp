// A model that was made before the server knew all its kinds.

#include <sqlite3.h>

#include "tests/modeldb/model_test.h"

namespace {

class UpgradeTest : public model_test::ModelTest {};

TEST_F(UpgradeTest, OlderModelGetsTheTablesOfNewKindsAndKeepsItsRows) {
  ASSERT_EQ(save(make_force(250)), S_OK) << model_test::last_sentence();
  database->Close();
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open16(file.path().c_str(), &handle), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(handle, "DROP TABLE NodalMoments; DROP TABLE NodalMomentLoadSets", nullptr,
                         nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(handle);

  ASSERT_EQ(open(file.path()), S_OK) << model_test::last_sentence();
  const auto moment = model_test::create<NodalMoment, INodalMoment>();
  EXPECT_EQ(save(moment), S_OK) << model_test::last_sentence();
  EXPECT_EQ(count(L"NodalMoments"), "1");
  EXPECT_EQ(value(L"SELECT Magnitude FROM NodalForces"), "250");
}

}  // namespace
