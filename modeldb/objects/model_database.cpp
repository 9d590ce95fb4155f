#include "modeldb/objects/model_database.h"

#include "modeldb/ado/factories.h"
#include "modeldb/engine/failure.h"
#include "modeldb/objects/loading.h"

namespace modeldb {

const std::shared_ptr<Model>& ModelDatabase::model() const {
  if (!model_) {
    fail(kObjectClosed,
         L"No model is open. Call Open with the path of a model database file first.");
  }
  return model_;
}

STDMETHODIMP ModelDatabase::get_Command(IDispatch** pVal) {
  return com::boundary([&] {
    (void)model();
    *pVal = command_.copy();
  });
}

STDMETHODIMP ModelDatabase::get_Connection(IDispatch** pVal) {
  return com::boundary([&] {
    (void)model();
    *pVal = connection_.copy();
  });
}

STDMETHODIMP ModelDatabase::SetModified(long newVal) {
  return com::boundary([&] {
    const auto& database = model()->database();
    if (newVal == 0) database->mark_unchanged();
  });
}

STDMETHODIMP ModelDatabase::get_RecordStore(IRecordStore** pVal) {
  return com::boundary([&] {
    (void)model();
    *pVal = store_.copy();
  });
}

STDMETHODIMP ModelDatabase::Open(BSTR bstrLocation) {
  return com::boundary([&] { open(com::Bstr::view(bstrLocation)); });
}

void ModelDatabase::open(std::wstring_view location) {
  if (model_) {
    fail(kObjectOpen, L"The model " + quoted(model_->database()->path()) +
                          L" is open. Close it before another is opened.");
  }
  auto model = std::make_shared<Model>(location);
  auto store = com::make<RecordStore>(model, this);
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
  return com::boundary([&] { close(); });
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
  *pVal = model_ ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

STDMETHODIMP ModelDatabase::get_Location(BSTR* pVal) {
  return com::boundary(
      [&] { *pVal = com::Bstr(model_ ? model_->database()->path() : L"").detach(); });
}

STDMETHODIMP ModelDatabase::get_Modified(VARIANT_BOOL* pVal) {
  return com::boundary(
      [&] { *pVal = model_ && model_->database()->is_changed() ? VARIANT_TRUE : VARIANT_FALSE; });
}

STDMETHODIMP ModelDatabase::get_IsReadOnly(VARIANT_BOOL* pVal) {
  return com::boundary(
      [&] { *pVal = model_ && model_->database()->is_read_only() ? VARIANT_TRUE : VARIANT_FALSE; });
}

STDMETHODIMP ModelDatabase::Load(BSTR bstrCollection, VARIANT vWhere, VARIANT vOrder,
                                 IDispatch** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    const std::shared_ptr<Model> open_model = model();
    const Kind& kind = loadable_kind(open_model->catalogue(), com::Bstr::view(bstrCollection));
    *pVal = load_collection(*open_model, this, kind, selection_of(vWhere, vOrder)).detach();
  });
}

STDMETHODIMP ModelDatabase::Query(BSTR bstrSql, IDispatch** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    *pVal = make_recordset(model()->database(), com::Bstr::view(bstrSql)).detach();
  });
}

}  // namespace modeldb
