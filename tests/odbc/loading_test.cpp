// Loading so many records from a server that they come some at a time, while others are read.

#include <windows.h>

#include <functional>
#include <set>
#include <string>

#include "modeldb/base/number_set.h"
#include "modeldb/odbc/odbc_statement.h"
#include "modeldb/odbc/session.h"
#include "tests/modeldb/model_test.h"

namespace {

using model_test::bstr;
using testing::AllOf;
using testing::HasSubstr;

/// Stands for the class of forces as long as it lives, and calls back before it makes one.
class CallingForces final : public IClassFactory {
 public:
  CallingForces(int before, std::function<void()> call) : before_(before), call_(std::move(call)) {
    CoGetClassObject(__uuidof(NodalForce), CLSCTX_INPROC_SERVER, nullptr, __uuidof(IClassFactory),
                     forces_.put_void());
    CoRegisterClassObject(__uuidof(NodalForce), this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                          &registration_);
  }
  CallingForces(const CallingForces&) = delete;
  CallingForces& operator=(const CallingForces&) = delete;
  ~CallingForces() { CoRevokeClassObject(registration_); }

  [[nodiscard]] int made() const { return made_; }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    const bool is_known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory);
    *out = is_known ? this : nullptr;
    return is_known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 1; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
    if (++made_ == before_) call_();
    return forces_->CreateInstance(outer, iid, out);
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
  int before_;
  std::function<void()> call_;
  int made_ = 0;
  com::Ptr<IClassFactory> forces_;
  DWORD registration_ = 0;
};

/// A model with 10,000 forces: of the magnitude i on the node 10,001 - i, every other one in a set.
class LoadingTest : public model_test::ModelTest {
 protected:
  static constexpr int kCount = 10'000;
  static constexpr int kHalf = kCount / 2;
  static constexpr int kCall = 3'000;  // the first forces are there by then, and the last are not

  LoadingTest() : owner_(file.path()) {
    owner_.connect();
    const std::wstring all = L" FROM generate_series(1, " + std::to_wstring(kCount) + L") AS i";
    owner_.run(L"INSERT INTO LoadSets (LoadSetID, Description) VALUES (1, 'a')");
    owner_.run(L"INSERT INTO Vertices (VertexID, Description, X, Y, Z) SELECT i, '', i, 0, 0" +
               all);
    owner_.run(
        L"INSERT INTO NodalForces (NodalForceID, Description, VertexID, MultiplierTableID, "
        L"Magnitude, Vx, Vy, Vz, CoordinateSystemID) SELECT i, 'it''s', " +
        std::to_wstring(kCount + 1) + L" - i, 0, i, 0, 0, 0, 0" + all);
    owner_.run(L"INSERT INTO NodalForceLoadSets (LoadSetID, NodalForceID) SELECT 1, i" + all +
               L" WHERE i % 2 = 0");
    reopen();  // so that it knows the keys
  }

  void expect_own(const com::Ptr<INodalForce>& force) {
    double magnitude = 0;
    force->get_Magnitude(&magnitude);
    EXPECT_EQ(magnitude, id_of(force));
    double x = 0;
    vertex_of(force)->get_X(&x);
    EXPECT_EQ(x, kCount + 1 - magnitude) << id_of(force);
    long sets = 0;
    load_sets_of(force)->get_Count(&sets);
    EXPECT_EQ(sets, id_of(force) % 2 == 0 ? 1 : 0) << id_of(force);
  }
  /// The forces are `count`, and each has its own values, vertex and sets.
  void expect_own(const com::Ptr<INodalForces>& forces, long count) {
    ASSERT_TRUE(forces) << model_test::last_sentence();
    long found = 0;
    forces->get_Count(&found);
    ASSERT_EQ(found, count);
    for (long i = 0; i < found && !HasFailure(); ++i) {
      com::Ptr<INodalForce> force;
      ASSERT_EQ(forces->Item(i, force.put()), S_OK);
      expect_own(force);
    }
  }
  /// Nobody on the server has one open.
  void expect_no_transaction() {
    modeldb::OdbcStatement open(owner_,
                                L"SELECT count(*) FROM pg_stat_activity WHERE datname = "
                                L"current_database() AND state LIKE 'idle in transaction%'",
                                modeldb::Trust::kHost);
    ASSERT_TRUE(open.step());
    EXPECT_EQ(open.integer(0), 0);
  }

  modeldb::Session owner_;
};

TEST_F(LoadingTest, RecordsComeWithTheirOwnInAnyOrder) {
  for (const auto* const order :
       {L"NodalForceID", L"VertexID", L"abs(Magnitude - 5000), VertexID"}) {
    SCOPED_TRACE(model_test::narrow(order));
    const com::Variant in_order{com::Bstr(order)};
    expect_own(load_forces(com::Variant::omitted(), in_order), kCount);
    const com::Variant half(com::Bstr(L"Description = 'it''s' AND Magnitude > 5000.5"));
    expect_own(load_forces(half, in_order), kHalf);
  }
  expect_own(load_forces(com::Variant(com::Bstr(L"Magnitude < 0"))), 0);
  // Also those that wait for the server, as long as the transaction lasts.
  ASSERT_EQ(execute(L"BEGIN TRANSACTION"), S_OK);
  const auto changed = load_force(kHalf);
  changed->put_Vx(7);
  ASSERT_EQ(save(changed), S_OK) << model_test::last_sentence();
  expect_own(load_forces(), kCount);
  expect_own(load_forces(com::Variant(com::Bstr(L"Vx = 7"))), 1);
  ASSERT_EQ(execute(L"ROLLBACK TRANSACTION"), S_OK);
  expect_own(load_forces(com::Variant(com::Bstr(L"Vx = 7"))), 0);
  reopen();
  expect_no_transaction();
}

TEST_F(LoadingTest, WhatIsWrittenMeanwhileIsKeptAndLoadedTheNextTime) {
  com::Ptr<INodalForces> forces;
  {
    CallingForces calling(kCall, [&] {
      ASSERT_TRUE(
          FAILED(execute(L"INSERT INTO LoadSets (LoadSetID, Description) VALUES (1, 'again')")));
      ASSERT_EQ(execute(L"INSERT INTO LoadSets (LoadSetID, Description) VALUES (2, 'b')"), S_OK);
      ASSERT_EQ(execute(L"UPDATE Vertices SET X = -1 WHERE VertexID = 4001"), S_OK);
      ASSERT_EQ(execute(L"DELETE FROM NodalForces WHERE NodalForceID = 9999"), S_OK);
      ASSERT_EQ(save(make_force(-1)), S_OK) << model_test::last_sentence();
    });
    forces = load_forces();
    EXPECT_EQ(calling.made(), kCount + 1);
  }
  com::Ptr<INodalForce> force;
  ASSERT_EQ(forces->Item(kCount - 4001, force.put()), S_OK);
  double x = 0;
  vertex_of(force)->get_X(&x);
  EXPECT_EQ(x, -1);
  vertex_of(force)->put_X(4001);
  expect_own(forces, kCount);
  reopen();
  EXPECT_EQ(value(L"SELECT count(*) FROM NodalForces WHERE NodalForceID = 9999"), "0");
  EXPECT_EQ(count(L"LoadSets"), "2");
  EXPECT_EQ(value(L"SELECT count(*) FROM NodalForces WHERE Magnitude = -1"), "1");
  expect_no_transaction();
}

TEST_F(LoadingTest, TransactionThatEndsMeanwhileLeavesTheRows) {
  for (const auto* const end : {L"COMMIT TRANSACTION", L"ROLLBACK TRANSACTION"}) {
    ASSERT_EQ(execute(L"BEGIN TRANSACTION"), S_OK);
    ASSERT_EQ(execute(L"UPDATE NodalForces SET Vx = 1 WHERE NodalForceID = 1"), S_OK);
    com::Ptr<INodalForces> forces;
    {
      const CallingForces calling(kCall, [&] { ASSERT_EQ(execute(end), S_OK); });
      forces = load_forces();
    }
    expect_own(forces, kCount);
  }
  EXPECT_EQ(value(L"SELECT sum(Vx) FROM NodalForces"), "1");
  reopen();
  expect_no_transaction();
}

TEST_F(LoadingTest, FailureAtALateRowIsTold) {
  const com::Variant late(com::Bstr(L"100 / (NodalForceID - 9000) < 200"));
  for (const auto* const within : {L"", L"BEGIN TRANSACTION"}) {
    if (*within != L'\0') ASSERT_EQ(execute(within), S_OK);
    com::Ptr<IDispatch> none;
    EXPECT_SENTENCE(
        database->Load(bstr(L"NodalForces").get(), late, com::Variant::omitted(), none.put()),
        HasSubstr("The condition \"100 / (NodalForceID - 9000) < 200\" on the table NodalForces "
                  "cannot be run, because it divides by zero."));
  }
  ASSERT_EQ(execute(L"ROLLBACK TRANSACTION"), S_OK);
  expect_own(load_forces(), kCount);
}

TEST_F(LoadingTest, ColumnsThatSomebodyElseReplacesAreNotMistakenForOthers) {
  const auto load = [&] {
    com::Ptr<IDispatch> object;
    return database->Load(bstr(L"NodalForces").get(), com::Variant::omitted(),
                          com::Variant::omitted(), object.put());
  };
  expect_own(load_forces(), kCount);
  owner_.run(
      L"ALTER TABLE Vertices DROP COLUMN Description, "
      L"ADD COLUMN Description text NOT NULL DEFAULT 'new'");
  expect_own(load_forces(), kCount);
  owner_.run(L"ALTER TABLE NodalForces DROP COLUMN Vx, ADD COLUMN Weight double precision");
  EXPECT_SENTENCE(load(), HasSubstr("the column Vx is not where it was. Close"));
  EXPECT_SENTENCE(save(make_force(1)), HasSubstr("it has no Vx"));
}

TEST_F(LoadingTest, ConnectionThatBreaksMeanwhileIsTold) {
  {
    const CallingForces calling(kCall, [&] {
      owner_.run(
          L"DO $$ BEGIN PERFORM pg_terminate_backend(pid, 60000) FROM pg_stat_activity WHERE "
          L"datname = current_database() AND pid <> pg_backend_pid(); END $$");
    });
    com::Ptr<IDispatch> none;
    EXPECT_SENTENCE(database->Load(bstr(L"NodalForces").get(), com::Variant::omitted(),
                                   com::Variant::omitted(), none.put()),
                    AllOf(HasSubstr("was lost"), HasSubstr("open it again")));
    EXPECT_FALSE(none);
  }
  reopen();
  expect_own(load_forces(), kCount);
}

TEST(NumberSetTest, HoldsWhatASetHolds) {
  modeldb::NumberSet numbers;
  std::set<long> expected;
  unsigned random = 1;
  for (int i = 0; i < 20'000; ++i) {
    random = random * 1664525 + 1013904223;
    const long number = static_cast<long>(random >> 16) % 60 - 30;
    if ((random >> 8) % 3 != 0) {
      ASSERT_EQ(numbers.insert(number), expected.insert(number).second) << i;
    } else {
      ASSERT_EQ(numbers.erase(number), expected.erase(number) > 0) << i;
    }
    const long other = static_cast<long>(random >> 24) % 60 - 30;
    ASSERT_EQ(numbers.contains(other), expected.contains(other)) << i;
  }
}

}  // namespace
