// Records when memory runs out: the call fails or makes do, and the record stays whole.

#include "tests/host/out_of_memory.h"

#include <gmock/gmock.h>

#include "tests/records/membership.h"

namespace {

using com::Bstr;
using com::Variant;
using server::OutOfMemory;
using server::sql;
using server::with_each_allocation_failing;
using server::yes;
using ::testing::AnyOf;
using ::testing::StartsWith;

class RecordMemoryTest : public MembershipTest {
 protected:
  /// A record with the number 3 in one set, and forgotten calls.
  com::Ptr<IPersistentObject> make() {
    auto record = m().make();
    record->put_ID(3);
    record->put_Description(Bstr(L"old").get());
    host.newest_sets().add(7);
    host.journal.clear();
    return record;
  }
};

FOR_EACH_MEMBERSHIP(RecordMemoryTest);

TEST_P(RecordMemoryTest, CreationFailsWhole) {
  with_each_allocation_failing([&](OutOfMemory& memory) {
    host.journal.clear();
    com::Ptr<IUnknown> made;
    const HRESULT result = memory.during([&] {
      made = server::make(m().class_id);
      return made ? S_OK : E_OUTOFMEMORY;
    });
    EXPECT_EQ(result, memory.expected());
    made.reset();
    EXPECT_EQ(server::module().can_unload_now(), S_OK);
    EXPECT_EQ(host.objects_kept_by_others(), 0);
  });
}

TEST_P(RecordMemoryTest, LinksAreWrittenOrTheFailureIsReported) {
  with_each_allocation_failing([&](OutOfMemory& memory) {
    const auto record = make();
    const HRESULT result =
        memory.during([&] { return record->FileOpHelper(host.database.get(), 2, yes(), yes()); });
    EXPECT_EQ(result, memory.expected());
    if (FAILED(result)) {
      EXPECT_EQ(record->FileOpHelper(host.database.get(), 2, yes(), yes()), S_OK);
    }
    EXPECT_THAT(sql(record, 5), StartsWith("'old'"));
  });
}

TEST_P(RecordMemoryTest, LoadReadsWhatItCan) {
  const std::wstring object(m().object.begin(), m().object.end());
  host.query_rows = {{}};
  const fake::Row row{{object + L"ID", Variant(7)}, {L"Description", Variant(Bstr(L"new"))},
                      {L"VertexID", Variant(2)},    {L"Magnitude", Variant(9)},
                      {L"Tx", Variant(9)},          {L"Type", Variant(9)}};
  with_each_allocation_failing([&](OutOfMemory& memory) {
    const auto record = make();
    const auto rows = host.recordset(row);
    const HRESULT result = memory.during([&] {
      return record->LoadFromCurrentRecordsetPosition(host.database.get(), rows.get(), nullptr);
    });
    EXPECT_THAT(result, AnyOf(E_OUTOFMEMORY, fake::kNoSuchColumn, S_OK));
    EXPECT_THAT(sql(record, 4), AnyOf(StartsWith("'old', "), StartsWith("'new', ")));
    long dirty = -1;
    record->get_IsDirty(&dirty);
    EXPECT_EQ(dirty, 0) << "the load went on to its end";
    record->LoadFromCurrentRecordsetPosition(host.database.get(), rows.get(), nullptr);
    EXPECT_THAT(sql(record, 5), StartsWith("'new', 2, "));
  });
}

}  // namespace
