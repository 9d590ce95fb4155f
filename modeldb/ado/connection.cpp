#include "modeldb/ado/connection.h"

#include "com/bstr.h"
#include "modeldb/ado/execution.h"
#include "modeldb/ado/factories.h"
#include "modeldb/ado/model_call.h"
#include "modeldb/base/failure.h"

namespace modeldb {

std::shared_ptr<Database> database_of(IDispatch* connection) {
  const auto own = com::own_object<AdoConnection, kOwnConnection>(connection);
  if (!own) {
    fail(kInvalidConnection,
         L"The connection is none of a model database opened in this process. "
         L"Pass the Connection of an open ModelDatabase.");
  }
  return own->database();
}

STDMETHODIMP AdoConnection::Execute(BSTR command, VARIANT* records_affected, LONG options,
                                    _Recordset** record_set) {
  return model_call(database_->turns(), [&] {
    execute(*database_, com::Bstr::view(command), records_affected, options,
            database_->texts().time_limit(), record_set);
  });
}

STDMETHODIMP AdoConnection::get_CommandTimeout(LONG* seconds) {
  *seconds = database_->texts().time_limit();
  return S_OK;
}

STDMETHODIMP AdoConnection::put_CommandTimeout(LONG seconds) {
  return com::boundary([&] { database_->texts().set_time_limit(time_limit(seconds)); });
}

STDMETHODIMP AdoConnection::BeginTrans(LONG* transaction_level) {
  return model_call(database_->turns(), [&] {
    database_->transactions().begin();
    *transaction_level = database_->transactions().client_depth();
  });
}

STDMETHODIMP AdoConnection::CommitTrans() {
  return model_call(database_->turns(), [&] { database_->transactions().commit(); });
}

STDMETHODIMP AdoConnection::RollbackTrans() {
  return model_call(database_->turns(), [&] { database_->transactions().rollback(); });
}

STDMETHODIMP AdoConnection::get_State(LONG* state) {
  *state = database_->is_open() ? adStateOpen : adStateClosed;
  return S_OK;
}

STDMETHODIMP AdoConnection::get_ConnectionString(BSTR* str) {
  return model_call(database_->turns(), [&] { *str = com::Bstr(database_->location()).detach(); });
}

STDMETHODIMP AdoConnection::get_Provider(BSTR* str) {
  return model_call(database_->turns(), [&] { *str = com::Bstr(L"Orv_ModelDb").detach(); });
}

/// The version of ADO whose interfaces these are.
STDMETHODIMP AdoConnection::get_Version(BSTR* str) {
  return model_call(database_->turns(), [&] { *str = com::Bstr(L"2.8").detach(); });
}

STDMETHODIMP AdoConnection::get_Mode(ConnectModeEnum* mode) {
  *mode = adModeReadWrite;
  return S_OK;
}

STDMETHODIMP AdoConnection::get_CursorLocation(CursorLocationEnum* cursor_loc) {
  *cursor_loc = adUseServer;
  return S_OK;
}

com::Ptr<_Connection> make_connection(std::shared_ptr<Database> database) {
  return com::Ptr<_Connection>(com::make<AdoConnection>(std::move(database)).get());
}

}  // namespace modeldb
