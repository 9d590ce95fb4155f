// What keeps a model whole when the machine stops, and patient when another program writes.

#include "tests/engine/support.h"

namespace modeldb {
namespace {

using Durability = WithDatabase;

TEST_F(Durability, AJournalOnTheDiskIsWrittenBeforeTheFileAndALockIsWaitedFor) {
  const auto setting = [&](std::wstring_view name) {
    const auto rows = database_->query(L"PRAGMA " + std::wstring(name));
    EXPECT_TRUE(rows->step());
    return std::wstring(rows->text(0));
  };
  EXPECT_EQ(setting(L"journal_mode"), L"delete");
  EXPECT_GE(std::stoi(setting(L"synchronous")), 2);  // FULL
  EXPECT_GE(std::stoi(setting(L"busy_timeout")), 1000);
}

}  // namespace
}  // namespace modeldb
