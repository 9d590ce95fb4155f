// What the record store remembers of a batch, and what scripts get from the model beside records.

#include <limits>
#include <string>
#include <vector>

#include "tests/modeldb/model_test.h"

namespace {

using model_test::bstr;
using model_test::create;
using model_test::narrow;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class FailuresTest : public model_test::ModelTest {
 protected:
  com::Ptr<IFailures> failures() {
    com::Ptr<IFailures> failures;
    EXPECT_EQ(database->get_Failures(failures.put()), S_OK) << model_test::last_sentence();
    return failures;
  }
  long failed() {
    long count = -1;
    failures()->get_Count(&count);
    return count;
  }
  static std::string sentence(const com::Ptr<IFailure>& failure) {
    com::Bstr text;
    failure->get_Sentence(text.put());
    return narrow(text.view());
  }
  /// The sentences of all, as For Each meets them.
  static std::vector<std::string> walk(const com::Ptr<IFailures>& failures) {
    com::Ptr<IUnknown> walk;
    EXPECT_EQ(failures->get__NewEnum(walk.put()), S_OK);
    const auto next = walk.query<IEnumVARIANT>();
    std::vector<std::string> sentences;
    com::Variant value;
    while (next->Next(1, value.put(), nullptr) == S_OK) {
      sentences.push_back(sentence(com::Ptr<IDispatch>(value.get().pdispVal).query<IFailure>()));
    }
    return sentences;
  }
};

TEST_F(FailuresTest, BatchRemembersWhichRecordsFailedAndWhy) {
  const auto infinite = make_force(std::numeric_limits<double>::infinity());
  const auto unlinked = make_force(1);
  const auto good = make_force(2);
  const auto set = create<LoadSet, ILoadSet>();
  load_sets_of(unlinked)->Add(set.get());
  const auto forces = create<NodalForces, INodalForces>();
  for (const auto& force : {infinite, good, unlinked}) forces->Add(force.get());
  const auto yes = com::Variant::boolean(true);
  const auto no = com::Variant::boolean(false);

  ASSERT_EQ(forces->Save(database.get(), yes, no), S_OK);
  EXPECT_EQ(count(L"NodalForces"), "1");
  const auto first_batch = failures();
  EXPECT_THAT(walk(first_batch), ElementsAre(HasSubstr("its Magnitude is \"inf\""),
                                             HasSubstr("a new LoadSet that was not saved")));
  EXPECT_THAT(walk(first_batch), ::testing::SizeIs(2)) << "every walk begins at the first";
  com::Ptr<IFailure> second;
  ASSERT_EQ(first_batch->Item(1, second.put()), S_OK);
  com::Ptr<IDispatch> record;
  second->get_Record(record.put());
  EXPECT_EQ(record.query<IUnknown>().get(), unlinked.query<IUnknown>().get());
  long number = 0;
  second->get_Number(&number);
  EXPECT_EQ(number, static_cast<long>(0x800A0E87));  // ADO's 3719
  EXPECT_EQ(first_batch->Item(2, second.put()), E_INVALIDARG);
  EXPECT_EQ(first_batch->Item(-1, second.put()), E_INVALIDARG);

  // A record saved by itself is no batch; the next batch has a list of its own.
  EXPECT_TRUE(FAILED(save(infinite)));
  EXPECT_EQ(failed(), 2);
  infinite->put_Magnitude(3);
  ASSERT_EQ(save(forces), S_OK);
  EXPECT_EQ(failed(), 0);
  EXPECT_THAT(walk(first_batch), ::testing::SizeIs(2));

  ASSERT_EQ(good->Delete(database.get()), S_OK);
  ASSERT_EQ(forces->Delete(database.get()), S_OK);
  EXPECT_THAT(walk(failures()), ElementsAre(HasSubstr("is not in the model")));
}

TEST_F(FailuresTest, CollectionOfSetsIsABatchToo) {
  const auto sets = create<LoadSets, ILoadSets>();
  sets->Add(make_load_set(L"Wind").get());
  EXPECT_TRUE(FAILED(sets->Delete(database.get())));
  EXPECT_THAT(walk(failures()), ElementsAre(HasSubstr("The new LoadSet is not in the model")));
}

class NamedSetTest : public model_test::ModelTest {};

TEST_F(NamedSetTest, SetOfANameIsTheModelsOrANewOne) {
  const auto wind = make_load_set(L"Wind");
  ASSERT_EQ(save(wind), S_OK);
  const auto by_name = [&](const wchar_t* name) {
    com::Ptr<ILoadSet> set;
    EXPECT_EQ(database->LoadSet(bstr(name).get(), set.put()), S_OK) << model_test::last_sentence();
    return set;
  };
  EXPECT_EQ(id_of(by_name(L"Wind")), id_of(wind));
  const auto snow = by_name(L"Snow");
  EXPECT_NE(id_of(snow), id_of(wind));
  EXPECT_EQ(id_of(by_name(L"Snow")), id_of(snow));
  EXPECT_EQ(value(L"SELECT group_concat(Description) FROM LoadSets"), "Wind,Snow");

  ASSERT_EQ(save(make_load_set(L"Snow")), S_OK);
  com::Ptr<ILoadSet> ignored;
  EXPECT_SENTENCE(database->LoadSet(bstr(L"Snow").get(), ignored.put()),
                  HasSubstr("several LoadSets of the name \"Snow\": 2, 3."));
  for (const wchar_t* const blank : {L"", L" ", L"\t \x3000"}) {
    EXPECT_SENTENCE(database->LoadSet(bstr(blank).get(), ignored.put()),
                    HasSubstr("No name was passed."));
  }
  EXPECT_SENTENCE(database->LoadSet(bstr(std::wstring(L"a\0b", 3)).get(), ignored.put()),
                  HasSubstr("NUL"));
}

class CopyTest : public model_test::ModelTest {
 protected:
  com::Ptr<INodalForce> copy(const com::Ptr<INodalForce>& force) {
    com::Ptr<IDispatch> copy;
    EXPECT_EQ(database->Copy(force.get(), copy.put()), S_OK) << model_test::last_sentence();
    return copy.query<INodalForce>();
  }
};

TEST_F(CopyTest, CopyIsANewRecordWithTheSameValuesOnTheSameVertexInTheSameSets) {
  ASSERT_EQ(execute(L"INSERT INTO Vertices VALUES (12, 'tip', 1, 2, 3)"), S_OK);
  const auto force = make_force(250);
  force->put_Description(bstr(L"it's").get());
  force->put_Vz(-1);
  vertex_of(force)->put_ID(12);
  load_sets_of(force)->Add(make_load_set(L"Wind").get());
  ASSERT_EQ(save(force), S_OK);

  const auto twin = copy(force);
  EXPECT_EQ(id_of(twin), 0);
  double x = 0;
  vertex_of(twin)->get_X(&x);
  EXPECT_EQ(x, 1);
  ASSERT_EQ(save(twin), S_OK) << model_test::last_sentence();
  EXPECT_EQ(
      value(L"SELECT count(*) FROM (SELECT DISTINCT Description, VertexID, Magnitude, Vx, Vy, "
            L"Vz, LoadSetID FROM NodalForces JOIN NodalForceLoadSets USING (NodalForceID))"),
      "1");
  EXPECT_EQ(count(L"NodalForces"), "2");
  EXPECT_EQ(count(L"Vertices"), "1");
  EXPECT_EQ(value(L"SELECT CAST(100 * X + 10 * Y + Z AS INTEGER) || Description FROM Vertices"),
            "123tip");

  vertex_of(twin)->put_ID(13);
  EXPECT_EQ(id_of(vertex_of(force)), 12);
}

TEST_F(CopyTest, CopyOnAVertexNamedByItsIdAloneDoesNotMoveIt) {
  ASSERT_EQ(execute(L"INSERT INTO Vertices VALUES (12, '', 1, 2, 3)"), S_OK);
  const auto force = make_force(1);
  vertex_of(force)->put_ID(12);
  ASSERT_EQ(save(copy(force)), S_OK);
  EXPECT_EQ(value(L"SELECT X + Y + Z FROM Vertices"), "6");

  const auto at_a_new_one = make_force(1);
  vertex_of(at_a_new_one)->put_X(7);
  ASSERT_EQ(save(copy(at_a_new_one)), S_OK);
  EXPECT_EQ(value(L"SELECT X FROM Vertices WHERE VertexID = 13"), "7");
  com::Ptr<IDispatch> ignored;
  EXPECT_SENTENCE(database->Copy(database.get(), ignored.put()), HasSubstr("is no record"));
}

}  // namespace
