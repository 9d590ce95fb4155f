// The client's own transactions: what a rollback takes back from records and from the model.

#include <limits>

#include "tests/modeldb/history_support.h"
#include "tests/modeldb/record_double.h"

namespace {

using model_test::bstr;
using model_test::create;
using ::testing::HasSubstr;

class TransactionTest : public model_test::ModelTest {
 protected:
  template <class Object>
  long dirty(const com::Ptr<Object>& object) {
    long dirty = -1;
    object->get_IsDirty(&dirty);
    return dirty;
  }
  bool is_modified() {
    VARIANT_BOOL modified = VARIANT_FALSE;
    EXPECT_EQ(database->get_Modified(&modified), S_OK);
    return modified != VARIANT_FALSE;
  }
  com::Ptr<INodalForces> make_forces(int size) {
    auto forces = create<NodalForces, INodalForces>();
    for (int index = 0; index < size; ++index) forces->Add(make_force(index).get());
    return forces;
  }
  HRESULT save_all(const com::Ptr<INodalForces>& forces) {
    return forces->Save(database.get(), com::Variant::omitted(), com::Variant::omitted());
  }
};

TEST_F(TransactionTest, RollbackTakesBackTheKeysOfNewObjects) {
  const auto wind = make_load_set(L"Wind");
  const auto force = make_force(111);
  load_sets_of(force)->Add(wind.get());
  execute(L"BEGIN TRANSACTION");
  ASSERT_EQ(save(force), S_OK);
  ASSERT_EQ(save(force), S_OK);
  execute(L"ROLLBACK TRANSACTION");
  EXPECT_EQ(id_of(force), 0);
  EXPECT_EQ(dirty(force), 1);
  EXPECT_EQ(id_of(vertex_of(force)), 0);
  EXPECT_EQ(id_of(wind), 0);

  // The keys of the rollback go to others; the first force must not overwrite them.
  const auto other = make_force(222);
  load_sets_of(other)->Add(make_load_set(L"Snow").get());
  ASSERT_EQ(save(other), S_OK);
  ASSERT_EQ(save(force), S_OK);
  EXPECT_NE(id_of(force), id_of(other));
  EXPECT_EQ(count(L"NodalForces"), "2");
  EXPECT_EQ(value(L"SELECT LoadSets.Description FROM LoadSets JOIN NodalForceLoadSets USING "
                  L"(LoadSetID) JOIN NodalForces USING (NodalForceID) WHERE Magnitude = 111"),
            "Wind");
}

TEST_F(TransactionTest, RollbackLeavesWhatItDidNotGive) {
  const auto known = make_force(1);
  const auto renumbered = make_force(2);
  ASSERT_EQ(save(known), S_OK);
  const long id = id_of(known);
  execute(L"BEGIN TRANSACTION");
  known->put_Magnitude(7);
  ASSERT_EQ(save(known), S_OK);
  ASSERT_EQ(save(renumbered), S_OK);
  renumbered->put_ID(77);
  execute(L"ROLLBACK TRANSACTION");
  EXPECT_EQ(id_of(known), id);
  EXPECT_EQ(dirty(known), 1);
  EXPECT_EQ(id_of(renumbered), 77);

  ASSERT_EQ(save(known), S_OK);
  EXPECT_EQ(value(L"SELECT Magnitude FROM NodalForces"), "7");
}

TEST_F(TransactionTest, RollbackMakesSetsAndVerticesDirtyAgain) {
  const auto wind = make_load_set(L"Wind");
  const auto tip = create<Vertex, ICoordinateVertex>();
  ASSERT_EQ(save(wind), S_OK);
  ASSERT_EQ(save(tip), S_OK);
  const auto same = create<LoadSet, ILoadSet>();
  same->put_ID(id_of(wind));
  const auto moved = create<Vertex, ICoordinateVertex>();
  moved->put_ID(id_of(tip));
  moved->put_X(5);
  wind->put_Description(bstr(L"Gale").get());
  execute(L"BEGIN TRANSACTION");
  ASSERT_EQ(save(same), S_OK) << "the model has it as it is";
  ASSERT_EQ(save(wind), S_OK);
  ASSERT_EQ(save(moved), S_OK);
  execute(L"ROLLBACK TRANSACTION");
  EXPECT_EQ(dirty(same), 1);
  EXPECT_EQ(dirty(wind), 1);
  EXPECT_EQ(dirty(moved), 1);

  // What was put is not lost: the next save writes it.
  ASSERT_EQ(save(wind), S_OK);
  ASSERT_EQ(save(moved), S_OK);
  EXPECT_EQ(value(L"SELECT LoadSets.Description || CAST(X AS INTEGER) FROM LoadSets, Vertices"),
            "Gale5");
}

TEST_F(TransactionTest, RecordThatSavesAnotherWhileItsKeyIsTakenBackIsRefused) {
  model_test::RecordDouble record;
  const auto first = make_force(1);
  const auto other = make_force(2);
  ASSERT_EQ(execute(L"INSERT INTO Vertices (VertexID) VALUES (12)"), S_OK);
  execute(L"BEGIN TRANSACTION");
  ASSERT_EQ(save(first), S_OK);
  ASSERT_EQ(store()->SaveRecord(&record, com::Variant::omitted(), com::Variant::omitted()), S_OK);
  record.on_put_id = [&] { EXPECT_SENTENCE(save(other), HasSubstr("being rolled back")); };
  execute(L"ROLLBACK TRANSACTION");
  EXPECT_EQ(record.id, 0);
  EXPECT_EQ(id_of(first), 0);
  EXPECT_EQ(id_of(other), 0);

  // Nor does a record harm anybody that closes the model there.
  record.on_put_id = [] {};
  execute(L"BEGIN TRANSACTION");
  ASSERT_EQ(save(first), S_OK);
  ASSERT_EQ(store()->SaveRecord(&record, com::Variant::omitted(), com::Variant::omitted()), S_OK);
  record.on_put_id = [&] { database->Close(); };
  execute(L"ROLLBACK TRANSACTION");
  EXPECT_EQ(id_of(first), 0);
}

TEST_F(TransactionTest, ClosingRollsBack) {
  const auto force = make_force(1);
  execute(L"BEGIN TRANSACTION");
  ASSERT_EQ(save(force), S_OK);
  reopen();
  EXPECT_EQ(id_of(force), 0);
  EXPECT_EQ(count(L"NodalForces"), "0");
}

TEST_F(TransactionTest, BatchThatCannotBeCommittedTakesItsKeysBack) {
  // The batch is the first change, with which the tables of the history would come.
  model_test::OtherProgram(file.path()).run("INSERT INTO NodalForces (Magnitude) VALUES (1)");
  const auto reader = create<ModelDatabase, IModelDatabaseFile>();
  ASSERT_EQ(reader->Open(bstr(file.path()).get()), S_OK);
  com::Ptr<IDispatch> unread;
  ASSERT_EQ(reader->Query(bstr(L"SELECT * FROM NodalForces").get(), unread.put()), S_OK);

  const auto forces = make_forces(2);
  EXPECT_SENTENCE(save_all(forces), HasSubstr("in use"));
  com::Ptr<INodalForce> first;
  ASSERT_EQ(forces->Item(0, first.put()), S_OK);
  EXPECT_EQ(id_of(first), 0);
  EXPECT_EQ(dirty(first), 1);

  unread.reset();
  reader->Close();
  ASSERT_EQ(save(make_force(2)), S_OK);
  ASSERT_EQ(save_all(forces), S_OK);
  EXPECT_EQ(count(L"NodalForces"), "4");
}

TEST_F(TransactionTest, InnerOnesEndWithinThoseAroundThem) {
  const auto kept = make_forces(2);
  const auto undone = make_force(7);
  execute(L"BEGIN TRANSACTION");
  ASSERT_EQ(save_all(kept), S_OK) << model_test::last_sentence();
  execute(L"BEGIN TRANSACTION");
  ASSERT_EQ(save(undone), S_OK);
  execute(L"ROLLBACK TRANSACTION");
  EXPECT_EQ(id_of(undone), 0);
  EXPECT_EQ(dirty(undone), 1);
  ASSERT_EQ(save_all(make_forces(1)), S_OK);
  EXPECT_EQ(execute(L"COMMIT TRANSACTION"), S_OK);
  EXPECT_SENTENCE(execute(L"COMMIT TRANSACTION"), HasSubstr("No transaction is open"));
  EXPECT_EQ(count(L"NodalForces"), "3");

  execute(L"BEGIN TRANSACTION");
  const auto all = make_forces(2);
  ASSERT_EQ(save_all(all), S_OK);
  execute(L"ROLLBACK TRANSACTION");
  com::Ptr<INodalForce> first;
  ASSERT_EQ(all->Item(0, first.put()), S_OK);
  EXPECT_EQ(id_of(first), 0) << "committed within what was rolled back";
  EXPECT_EQ(count(L"NodalForces"), "3");
}

TEST_F(TransactionTest, DoesNotEndWhileAChangeIsUnderWay) {
  for (const wchar_t* const end : {L"COMMIT TRANSACTION", L"ROLLBACK TRANSACTION"}) {
    model_test::RecordDouble record;
    record.file_operations[2] = [&](IDispatch*) {
      EXPECT_SENTENCE(execute(end), HasSubstr("under way"));
      return S_OK;
    };
    execute(L"BEGIN TRANSACTION");
    EXPECT_EQ(store()->SaveRecord(&record, com::Variant::omitted(), com::Variant::omitted()), S_OK);
    EXPECT_EQ(execute(L"ROLLBACK TRANSACTION"), S_OK);
    EXPECT_EQ(count(L"NodalForces"), "0");
  }
}

TEST_F(TransactionTest, ThatIsLeftOpenWithinAChangeUndoesTheChange) {
  model_test::RecordDouble record;
  record.file_operations[2] = [&](IDispatch*) { return execute(L"BEGIN TRANSACTION"); };
  EXPECT_SENTENCE(store()->SaveRecord(&record, com::Variant::omitted(), com::Variant::omitted()),
                  HasSubstr("still open"));
  EXPECT_EQ(record.id, 0);
  EXPECT_EQ(count(L"NodalForces"), "0");
  EXPECT_EQ(save(make_force(1)), S_OK);
}

TEST_F(TransactionTest, ModelIsModifiedByWhatIsKept) {
  EXPECT_FALSE(is_modified());
  const auto refused = make_force(std::numeric_limits<double>::quiet_NaN());
  EXPECT_TRUE(FAILED(save(refused)));
  EXPECT_FALSE(is_modified()) << "a record that was refused after its vertex was saved";
  execute(L"BEGIN TRANSACTION");
  ASSERT_EQ(save(make_force(1)), S_OK);
  EXPECT_TRUE(FAILED(save(refused)));
  EXPECT_TRUE(is_modified());
  execute(L"ROLLBACK TRANSACTION");
  EXPECT_FALSE(is_modified());
  execute(L"INSERT INTO LoadSets (Description) VALUES ('by a statement')");
  EXPECT_TRUE(is_modified());
  ASSERT_EQ(database.query<IModelDatabase>()->SetModified(0), S_OK);
  EXPECT_FALSE(is_modified());
}

}  // namespace
