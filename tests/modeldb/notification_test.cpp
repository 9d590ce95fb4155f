// Who listens to the record store, and what they are told.

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "modeldb/sqlite/sqlite_engine.h"
#include "tests/modeldb/model_test.h"

namespace {

using model_test::create;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr long kSuspend = 0;

/// What a script advises the record store of: it notes what it is told.
class Listener final : public IDispatch {
 public:
  std::vector<std::string> calls;
  HRESULT result = S_OK;
  bool has_methods = true;
  std::function<void()> on_call;

  // The test owns the object.
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch);
    *out = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 1; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }

  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    if (!has_methods) return DISP_E_UNKNOWNNAME;
    methods_.push_back(model_test::narrow(names[0]));
    ids[0] = static_cast<DISPID>(methods_.size());
    return S_OK;
  }

  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                      EXCEPINFO*, UINT*) override {
    calls.push_back(methods_[member - 1] + " " + text(parameters->rgvarg[1]) + " " +
                    text(parameters->rgvarg[0]));
    // A copy: the call may replace it.
    if (const auto call = on_call) call();
    return result;
  }

 private:
  /// A number, or an array that a script can index.
  static std::string text(const VARIANT& value) {
    if (value.vt == VT_I4) return std::to_string(value.lVal);
    if (value.vt == VT_DISPATCH) return "an object";
    if (value.vt != (VT_ARRAY | VT_VARIANT)) return "type " + std::to_string(value.vt);
    std::string list = "[";
    long last = -1;
    SafeArrayGetUBound(value.parray, 1, &last);
    for (long index = 0; index <= last; ++index) {
      com::Variant element;
      SafeArrayGetElement(value.parray, &index, element.put());
      list += (index ? " " : "") + text(element);
    }
    return list + "]";
  }

  std::vector<std::string> methods_;
};

class NotificationTest : public model_test::ModelTest {
 protected:
  NotificationTest() { EXPECT_EQ(advise(&listener), S_OK); }
  // The store lets its listeners go before they do.
  ~NotificationTest() override { database->Close(); }

  com::Ptr<IObservableRecordStore> observable() { return store().query<IObservableRecordStore>(); }
  HRESULT advise(IDispatch* object) { return observable()->Advise(object); }

  Listener listener;
  Listener other;
  Listener without_methods;
};

TEST_F(NotificationTest, CollectionIsReportedOnceWithItsIdsInOrder) {
  const auto known = make_force(1);
  ASSERT_EQ(save(known), S_OK);
  const auto forces = create<NodalForces, INodalForces>();
  for (const auto& force : {make_force(2), known, make_force(3)}) forces->Add(force.get());
  listener.calls.clear();
  ASSERT_EQ(save(forces), S_OK);
  EXPECT_THAT(listener.calls, ElementsAre("RecordsSaved 19 [2 1 3]"));
  listener.calls.clear();
  ASSERT_EQ(forces->Delete(database.get()), S_OK);
  EXPECT_THAT(listener.calls, ElementsAre("RecordsDeleted 19 [2 1 3]"));

  listener.calls.clear();
  const auto sets = create<LoadSets, ILoadSets>();
  sets->Add(make_load_set(L"Wind").get());
  sets->Add(make_load_set(L"Snow").get());
  ASSERT_EQ(save(sets), S_OK);
  EXPECT_THAT(listener.calls, ElementsAre("RecordsSaved 2 [1 2]"));

  listener.calls.clear();
  SAFEARRAYBOUND bounds[] = {{2, 0}, {1, 0}};
  com::Variant rows;
  com::Variant keys;
  rows.put()->parray = SafeArrayCreate(VT_R8, 2, bounds);
  com::mutable_address(rows)->vt = VT_ARRAY | VT_R8;
  const com::Variant column(com::Bstr(L"Magnitude"));
  ASSERT_EQ(database->AppendRows(com::Bstr(L"NodalForces").get(), column, rows, keys.put()), S_OK);
  EXPECT_THAT(listener.calls, ElementsAre("RecordsSaved 19 [4 5]"));
}

TEST_F(NotificationTest, StepsThatAreUndoneAndRedoneAreTold) {
  ASSERT_EQ(save(make_force(1)), S_OK);
  ASSERT_EQ(save(make_force(2)), S_OK);
  listener.calls.clear();
  ASSERT_EQ(database->Undo(com::Variant(1)), S_OK) << model_test::last_sentence();
  ASSERT_EQ(database->Redo(com::Variant::omitted()), S_OK);
  EXPECT_THAT(listener.calls,
              ElementsAre("StepUndone 2 type 8", "StepUndone 1 type 8", "StepRedone 1 type 8"));
}

TEST_F(NotificationTest, FailedSaveIsNotReported) {
  const auto force = make_force(std::numeric_limits<double>::quiet_NaN());
  EXPECT_TRUE(FAILED(save(force)));
  EXPECT_THAT(listener.calls, IsEmpty());
}

TEST_F(NotificationTest, FailuresOfABatchAreToldBeforeItAndStayThoseOfIt) {
  const auto forces = create<NodalForces, INodalForces>();
  forces->Add(make_force(std::numeric_limits<double>::quiet_NaN()).get());
  forces->Add(make_force(1).get());
  // The listener saves a batch of its own, once.
  const auto sets = create<LoadSets, ILoadSets>();
  sets->Add(make_load_set(L"Wind").get());
  listener.on_call = [&] {
    listener.on_call = nullptr;
    save(sets);
  };
  ASSERT_EQ(save(forces), S_OK);
  EXPECT_THAT(listener.calls, ElementsAre("RecordFailed 19 an object", "RecordsSaved 2 [1]",
                                          "RecordsSaved 19 [0 1]"));
  com::Ptr<IFailures> failures;
  database->get_Failures(failures.put());
  long count = -1;
  failures->get_Count(&count);
  EXPECT_EQ(count, 1);
}

TEST_F(NotificationTest, SuspensionHoldsUntilResumed) {
  ASSERT_EQ(store()->EventsEnabled(kSuspend), S_OK);
  save(make_force(1));
  EXPECT_THAT(listener.calls, IsEmpty());
  ASSERT_EQ(store()->EventsEnabled(-1), S_OK);
  save(make_force(2));
  EXPECT_THAT(listener.calls, ElementsAre("RecordSaved 1 2", "RecordSaved 19 2"));
}

TEST_F(NotificationTest, SuspensionEndsWithTheBatchThatBrokeOff) {
  // The collection suspends notification, then cannot begin its transaction.
  const auto forces = create<NodalForces, INodalForces>();
  forces->Add(make_force(0).get());
  const auto writer = modeldb::open_file(file.path());
  writer->transactions().begin();
  EXPECT_TRUE(FAILED(save(forces)));
  writer->close();
  save(make_force(1));
  EXPECT_THAT(listener.calls, ElementsAre("RecordSaved 1 1", "RecordSaved 19 1"));

  // As if it had broken off later.
  store()->EventsEnabled(kSuspend);
  execute(L"BEGIN TRANSACTION");
  save(make_force(2));
  execute(L"ROLLBACK TRANSACTION");
  EXPECT_EQ(listener.calls.size(), 2u);
  save(make_force(3));
  EXPECT_EQ(listener.calls.size(), 4u);
}

TEST_F(NotificationTest, ListenerThatFailsOrLacksAMethodHarmsNobody) {
  listener.result = E_FAIL;
  without_methods.has_methods = false;
  advise(&without_methods);
  advise(&other);
  ASSERT_EQ(save(make_force(1)), S_OK);
  EXPECT_EQ(other.calls.size(), 2u);
  EXPECT_EQ(count(L"NodalForces"), "1");
}

TEST_F(NotificationTest, ListenerIsToldOnceHoweverOftenItIsAdvised) {
  advise(&listener);
  save(make_force(1));
  EXPECT_EQ(listener.calls.size(), 2u);
  ASSERT_EQ(observable()->Unadvise(&listener), S_OK);
  save(make_force(2));
  EXPECT_EQ(listener.calls.size(), 2u);
}

TEST_F(NotificationTest, ListenerMaySaveAndClose) {
  const auto second = make_force(2);
  listener.on_call = [&] {
    listener.on_call = nullptr;
    EXPECT_EQ(save(second), S_OK);
    database->Close();
  };
  EXPECT_EQ(save(make_force(1)), S_OK);
  ASSERT_EQ(open(file.path()), S_OK);
  EXPECT_EQ(count(L"NodalForces"), "2");
}

TEST_F(NotificationTest, ListenerThatAlwaysSavesIsNotNotifiedWithoutEnd) {
  listener.on_call = [&] { EXPECT_EQ(save(make_load_set(L"Wind")), S_OK); };
  EXPECT_EQ(save(make_load_set(L"Snow")), S_OK);
  EXPECT_EQ(listener.calls.size(), 16u);
  EXPECT_EQ(count(L"LoadSets"), "17");
  // Once it has come back, it is notified as before.
  listener.on_call = nullptr;
  save(make_load_set(L"Ice"));
  EXPECT_EQ(listener.calls.size(), 17u);
}

TEST_F(NotificationTest, ClosingEndsListening) {
  reopen();
  save(make_force(1));
  EXPECT_THAT(listener.calls, IsEmpty());
}

}  // namespace
