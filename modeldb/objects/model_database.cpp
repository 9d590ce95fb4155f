#include "modeldb/objects/model_database.h"

#include "modeldb/ado/argument.h"
#include "modeldb/ado/factories.h"
#include "modeldb/ado/model_call.h"
#include "modeldb/ado/row_array.h"
#include "modeldb/base/failure.h"
#include "modeldb/model/copy_model.h"
#include "modeldb/objects/bulk_rows.h"
#include "modeldb/objects/copying.h"
#include "modeldb/objects/history_steps.h"
#include "modeldb/objects/named_set.h"
#include "modeldb/objects/reading.h"
#include "modeldb/store/closed_store.h"
#include "modeldb/store/script_array.h"

namespace modeldb {
namespace {

bool wants_names(const VARIANT& argument) {
  if (com::is_omitted(argument) || argument.vt == VT_EMPTY) return false;
  const com::Variant flag = argument_as(VT_BOOL, argument,
                                        L"What Rows was given for the names is neither True nor "
                                        L"False. Pass True to have them in the first row.");
  return flag.get().boolVal != VARIANT_FALSE;
}

}  // namespace

const std::shared_ptr<Model>& ModelDatabase::model() const {
  if (!model_) fail_without_model();
  return model_;
}

STDMETHODIMP ModelDatabase::get_Command(IDispatch** pVal) {
  return model_call(turns_, [&] {
    (void)model();
    *pVal = command_.copy();
  });
}

STDMETHODIMP ModelDatabase::get_Connection(IDispatch** pVal) {
  const HRESULT result = model_call(turns_, [&] {
    (void)model();
    // The recordset that a record creates next is created in this apartment.
    Activation::in_this_apartment();
    *pVal = connection_.copy();
  });
  if (SUCCEEDED(result)) RecordLoad::connection_asked_for();
  return result;
}

STDMETHODIMP ModelDatabase::Invoke(DISPID member, REFIID iid, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* bad_argument) {
  // A script that asks for the connection loads no record.
  const RecordLoad::OtherCall call;
  return ModelDatabaseBase::Invoke(member, iid, locale, flags, parameters, result, exception,
                                   bad_argument);
}

STDMETHODIMP ModelDatabase::SetModified(long newVal) {
  return model_call(turns_, [&] {
    const auto& database = model()->database();
    if (newVal == 0) database->mark_unchanged();
  });
}

STDMETHODIMP ModelDatabase::get_RecordStore(IRecordStore** pVal) {
  return model_call(turns_, [&] {
    const com::Ptr<IRecordStore> store =
        store_ ? store_.query<IRecordStore>() : com::make<ClosedStore>().query<IRecordStore>();
    *pVal = store.copy();
  });
}

STDMETHODIMP ModelDatabase::Open(BSTR bstrLocation) {
  return model_call(turns_, [&] { open(com::Bstr::view(bstrLocation)); });
}

void ModelDatabase::open(std::wstring_view location) {
  if (model_) {
    fail(kObjectOpen, L"The model " + quoted(model_->database()->location()) +
                          L" is open. Close it before another is opened.");
  }
  auto model = std::make_shared<Model>(location);
  model->database()->share(turns_);
  auto store = com::make<RecordStore>(model, this, reverted_);
  auto connection = make_connection(model->database());
  auto command = make_command(model->database());
  // Nothing below can fail.
  model_ = std::move(model);
  store_ = std::move(store);
  model_->database()->transactions().observe(*store_);
  connection_ = std::move(connection);
  command_ = std::move(command);
}

STDMETHODIMP ModelDatabase::Close() {
  return model_call(turns_, [&] { close(); });
}

void ModelDatabase::close() {
  if (!model_) return;
  // Closed whoever still works on it, such as a record store in the middle of a save.
  model_->database()->close();
  store_->disconnect();
  store_.reset();
  connection_.reset();
  command_.reset();
  model_.reset();
}

STDMETHODIMP ModelDatabase::get_IsOpen(VARIANT_BOOL* pVal) {
  return model_call(turns_, [&] { *pVal = model_ ? VARIANT_TRUE : VARIANT_FALSE; });
}

STDMETHODIMP ModelDatabase::get_Location(BSTR* pVal) {
  return model_call(
      turns_, [&] { *pVal = com::Bstr(model_ ? model_->database()->location() : L"").detach(); });
}

STDMETHODIMP ModelDatabase::get_Modified(VARIANT_BOOL* pVal) {
  return model_call(turns_, [&] {
    *pVal = model_ && model_->database()->is_changed() ? VARIANT_TRUE : VARIANT_FALSE;
  });
}

STDMETHODIMP ModelDatabase::get_IsReadOnly(VARIANT_BOOL* pVal) {
  return model_call(turns_, [&] {
    *pVal = model_ && model_->database()->is_read_only() ? VARIANT_TRUE : VARIANT_FALSE;
  });
}

STDMETHODIMP ModelDatabase::Load(BSTR bstrCollection, VARIANT vWhere, VARIANT vOrder,
                                 IDispatch** pVal) {
  return model_call(turns_, [&] {
    *pVal = nullptr;
    const com::Ptr<RecordStore> store = store_;
    if (store) store->hear_first();
    const std::shared_ptr<Model> open_model = model();
    const Kind& kind = kind_of_table(open_model->catalogue(), com::Bstr::view(bstrCollection));
    *pVal = read_collection(*open_model, this, kind, selection_of(vWhere, vOrder)).detach();
  });
}

STDMETHODIMP ModelDatabase::Query(BSTR bstrSql, IDispatch** pVal) {
  return model_call(turns_, [&] {
    *pVal = nullptr;
    *pVal = make_recordset(model()->database(), com::Bstr::view(bstrSql)).detach();
  });
}

STDMETHODIMP ModelDatabase::get_Failures(IFailures** pVal) {
  return model_call(turns_, [&] {
    *pVal = nullptr;
    (void)model();
    *pVal = store_->failures().copy();
  });
}

STDMETHODIMP ModelDatabase::LoadSet(BSTR bstrName, ILoadSet** pVal) {
  return model_call(turns_, [&] {
    *pVal = nullptr;
    (void)model();
    // A listener may close the model.
    const com::Ptr<RecordStore> store = store_;
    *pVal = named_set<modeldb::LoadSet>(*store, this, com::Bstr::view(bstrName)).detach();
  });
}

STDMETHODIMP ModelDatabase::ConstraintSet(BSTR bstrName, IConstraintSet** pVal) {
  return model_call(turns_, [&] {
    *pVal = nullptr;
    (void)model();
    // A listener may close the model.
    const com::Ptr<RecordStore> store = store_;
    *pVal = named_set<modeldb::ConstraintSet>(*store, this, com::Bstr::view(bstrName)).detach();
  });
}

STDMETHODIMP ModelDatabase::DesignScenario(BSTR bstrName, IDesignScenario** pVal) {
  return model_call(turns_, [&] {
    *pVal = nullptr;
    (void)model();
    // A listener may close the model.
    const com::Ptr<RecordStore> store = store_;
    *pVal = named_set<modeldb::DesignScenario>(*store, this, com::Bstr::view(bstrName)).detach();
  });
}

STDMETHODIMP ModelDatabase::Copy(IDispatch* pRecord, IDispatch** pVal) {
  return model_call(turns_, [&] {
    *pVal = nullptr;
    const std::shared_ptr<Model> open_model = model();
    *pVal = copy_of(*open_model, this, pRecord).detach();
  });
}

STDMETHODIMP ModelDatabase::AppendRows(BSTR bstrTable, VARIANT vColumns, VARIANT vRows,
                                       VARIANT* pVal) {
  return model_call(turns_, [&] {
    VariantInit(pVal);
    (void)model();
    // A listener may close the model.
    const com::Ptr<RecordStore> store = store_;
    const auto keys = append_rows(*store, com::Bstr::view(bstrTable), vColumns, vRows);
    *pVal = script_array(keys).detach();
  });
}

STDMETHODIMP ModelDatabase::Rows(BSTR bstrSql, VARIANT vNames, VARIANT* pVal) {
  return model_call(turns_, [&] {
    VariantInit(pVal);
    const bool with_names = wants_names(vNames);
    const auto query =
        model()->database()->execute_text(com::Bstr::view(bstrSql), Trust::kRead).query;
    RowArray rows(query->columns().size());
    if (with_names) rows.append_names(query->columns());
    while (query->step()) rows.append(*query);
    *pVal = rows.by_row().detach();
  });
}

STDMETHODIMP ModelDatabase::get_Step(BSTR* pVal) {
  return model_call(turns_, [&] { *pVal = com::Bstr(model()->history().next_name()).detach(); });
}

STDMETHODIMP ModelDatabase::put_Step(BSTR newVal) {
  return model_call(turns_, [&] { model()->history().name_next(com::Bstr::view(newVal)); });
}

STDMETHODIMP ModelDatabase::get_History(IHistory** pVal) {
  return model_call(turns_, [&] {
    *pVal = nullptr;
    (void)model();
    *pVal = com::make<HistorySteps>(store_).query<IHistory>().detach();
  });
}

STDMETHODIMP ModelDatabase::Undo(VARIANT vStep) {
  return model_call(turns_, [&] {
    const auto steps = model()->history().undo(step_number(vStep));
    // A listener may close the model.
    const com::Ptr<RecordStore> store = store_;
    store->tell_of_steps(L"StepUndone", steps);
  });
}

STDMETHODIMP ModelDatabase::Redo(VARIANT vStep) {
  return model_call(turns_, [&] {
    const auto steps = model()->history().redo(step_number(vStep));
    const com::Ptr<RecordStore> store = store_;
    store->tell_of_steps(L"StepRedone", steps);
  });
}

STDMETHODIMP ModelDatabase::get_Overwrite(VARIANT_BOOL* pVal) {
  return model_call(turns_, [&] {
    (void)model();
    *pVal = store_->overwrites() ? VARIANT_TRUE : VARIANT_FALSE;
  });
}

STDMETHODIMP ModelDatabase::put_Overwrite(VARIANT_BOOL newVal) {
  return model_call(turns_, [&] {
    (void)model();
    store_->set_overwrites(newVal != VARIANT_FALSE);
  });
}

STDMETHODIMP ModelDatabase::CopyTo(BSTR bstrLocation, long* pRows) {
  return model_call(turns_, [&] {
    *pRows = 0;
    const std::shared_ptr<Model> open_model = model();
    *pRows = static_cast<long>(copy_model(*open_model, com::Bstr::view(bstrLocation)));
  });
}

STDMETHODIMP ModelDatabase::Poll(long* pCalls) {
  return model_call(turns_, [&] {
    *pCalls = 0;
    (void)model();
    const com::Ptr<RecordStore> store = store_;
    *pCalls = store->poll();
  });
}

com::Ptr<RecordStore> ModelDatabase::store() const {
  const RecordLoad::OtherCall call;
  const Turn turn(turns_);
  return store_;
}

void ModelDatabase::final_release() {
  turns_->begin_surely();
  close();
  turns_->end();
}

}  // namespace modeldb
