#include "modeldb/ado/recordset.h"

#include <climits>
#include <utility>

#include "com/variant.h"
#include "modeldb/ado/argument.h"
#include "modeldb/ado/connection.h"
#include "modeldb/ado/execution.h"
#include "modeldb/ado/factories.h"
#include "modeldb/ado/model_call.h"
#include "modeldb/ado/row_array.h"
#include "modeldb/ado/value.h"
#include "modeldb/base/failure.h"

namespace modeldb {
namespace {

bool is_given(const VARIANT& argument) {
  return argument.vt != VT_EMPTY && !com::is_omitted(argument);
}

/// The argument itself: a variable of a script arrives by reference.
com::Variant value_of(const VARIANT& argument) {
  com::Variant value;
  com::check(VariantCopyInd(value.put(), com::mutable_address(argument)));
  return value;
}

VARIANT_BOOL automation_bool(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

}  // namespace

void AdoRecordset::final_release() {
  // The statement goes back to its database, which may be at work for another thread.
  if (const std::shared_ptr<Turns> turns = cursor_.turns()) {
    turns->begin_surely();
    cursor_.close();
    turns->end();
  }
}

void AdoRecordset::open(const Database& database, StatementLease query, std::wstring_view text) {
  cursor_.belong_to(database.turns());
  if (query) cursor_.open(std::move(query));
  source_ = com::Bstr(text);
}

STDMETHODIMP AdoRecordset::Open(VARIANT source, VARIANT active_connection, CursorTypeEnum,
                                LockTypeEnum, LONG options) {
  return model_call(cursor_.turns(), [&] {
    if (cursor_.is_open()) {
      fail(kObjectOpen, L"The recordset is open already. Close it before you open it anew.");
    }
    if (is_given(source)) take_source(source);
    if (is_given(active_connection)) set_connection(active_connection);
    if (!connection_) {
      fail(kInvalidConnection,
           L"The recordset has no connection. Pass the Connection of an open "
           L"model database to Open.");
    }
    const std::shared_ptr<Database> database = database_of(connection_.get());
    const Turn turn(database->turns());
    cursor_.belong_to(database->turns());
    StatementLease query =
        run_text(*database, source_.view(), options, database->texts().time_limit()).query;
    if (query) cursor_.open(std::move(query));
  });
}

void AdoRecordset::take_source(const VARIANT& source) {
  com::Variant value = value_of(source);
  if (value.type() != VT_DISPATCH) {
    if (value.type() != VT_BSTR) {
      value = argument_as(VT_BSTR, value,
                          L"The source of the recordset is no text. Pass the text of "
                          L"a query.");
    }
    source_ = com::Bstr::adopt(value.detach().bstrVal);
    return;
  }
  const auto command = com::Ptr<IDispatch>(value.get().pdispVal).query<Command15>();
  if (!command) {
    fail(kInvalidArgument,
         L"The source of the recordset is an object, but no Command. Pass the "
         L"text of a query.");
  }
  com::check(command->get_CommandText(source_.put()), command);
  com::Ptr<_Connection> connection;
  com::check(command->get_ActiveConnection(connection.put()), command);
  set_connection(connection.get());
}

void AdoRecordset::set_connection(IDispatch* connection) {
  (void)database_of(connection);
  connection_ = connection;
}

void AdoRecordset::set_connection(const VARIANT& connection) {
  const com::Variant value = value_of(connection);
  if (value.type() != VT_DISPATCH) {
    fail(kInvalidConnection,
         L"The recordset was given no connection object. Pass the Connection of "
         L"an open model database.");
  }
  set_connection(value.get().pdispVal);
}

STDMETHODIMP AdoRecordset::Close() {
  return model_call(cursor_.turns(), [&] { cursor_.close(); });
}

STDMETHODIMP AdoRecordset::Requery(LONG) {
  return model_call(cursor_.turns(), [&] { cursor_.run_again(); });
}

STDMETHODIMP AdoRecordset::get_State(LONG* state) {
  return model_call(cursor_.turns(),
                    [&] { *state = cursor_.is_open() ? adStateOpen : adStateClosed; });
}

STDMETHODIMP AdoRecordset::get_ActiveConnection(VARIANT* connection) {
  return model_call(cursor_.turns(),
                    [&] { *connection = com::Variant(connection_.get()).detach(); });
}

STDMETHODIMP AdoRecordset::put_ActiveConnection(VARIANT connection) {
  return model_call(cursor_.turns(), [&] { set_connection(connection); });
}

STDMETHODIMP AdoRecordset::putref_ActiveConnection(IDispatch* connection) {
  return model_call(cursor_.turns(), [&] { set_connection(connection); });
}

STDMETHODIMP AdoRecordset::get_Source(VARIANT* source) {
  return model_call(cursor_.turns(),
                    [&] { *source = com::Variant(com::Bstr(source_.view())).detach(); });
}

STDMETHODIMP AdoRecordset::put_Source(BSTR source) {
  return model_call(cursor_.turns(), [&] { source_ = com::Bstr(com::Bstr::view(source)); });
}

STDMETHODIMP AdoRecordset::get_BOF(VARIANT_BOOL* bof) {
  return model_call(cursor_.turns(), [&] { *bof = automation_bool(cursor_.is_empty()); });
}

STDMETHODIMP AdoRecordset::get_EOF(VARIANT_BOOL* eof) {
  return model_call(cursor_.turns(), [&] { *eof = automation_bool(cursor_.at_end()); });
}

STDMETHODIMP AdoRecordset::MoveFirst() {
  return model_call(cursor_.turns(), [&] { cursor_.move_first(); });
}

STDMETHODIMP AdoRecordset::MoveNext() {
  return model_call(cursor_.turns(), [&] { cursor_.move_next(); });
}

STDMETHODIMP AdoRecordset::get_Fields(::Fields** object) {
  *object = com::Ptr<::Fields>(&fields_).detach();
  return S_OK;
}

STDMETHODIMP AdoRecordset::get_Collect(VARIANT index, VARIANT* var) {
  return model_call(cursor_.turns(), [&] {
    VariantInit(var);
    // Before the row: the value of an object that is the index may move the recordset or close it.
    const int column = fields_.find(index);
    read_value(cursor_.row(), column, var);
  });
}

STDMETHODIMP AdoRecordset::GetRows(LONG rows, VARIANT start, VARIANT fields, VARIANT* var) {
  return model_call(cursor_.turns(), [&] {
    VariantInit(var);
    if (is_given(start) || is_given(fields)) {
      fail(kFeatureNotAvailable,
           L"GetRows reads all fields from the current row on. Leave Start and "
           L"Fields out, and select the fields in the statement.");
    }
    (void)cursor_.row();
    RowArray values(fields_.count());
    for (LONG left = rows < 0 ? LONG_MAX : rows; left > 0 && !cursor_.at_end(); --left) {
      values.append(cursor_.row());
      cursor_.move_next();
    }
    *var = values.by_field().detach();
  });
}

STDMETHODIMP AdoRecordset::get_RecordCount(ADO_LONGPTR* count) {
  *count = -1;
  return S_OK;
}

STDMETHODIMP AdoRecordset::get_CursorType(CursorTypeEnum* cursor_type) {
  *cursor_type = adOpenForwardOnly;
  return S_OK;
}

STDMETHODIMP AdoRecordset::get_LockType(LockTypeEnum* lock_type) {
  *lock_type = adLockReadOnly;
  return S_OK;
}

STDMETHODIMP AdoRecordset::get_CursorLocation(CursorLocationEnum* cursor_loc) {
  *cursor_loc = adUseServer;
  return S_OK;
}

STDMETHODIMP AdoRecordset::Supports(CursorOptionEnum, VARIANT_BOOL* ret) {
  *ret = VARIANT_FALSE;
  return S_OK;
}

com::Ptr<_Recordset> make_recordset(const Database& database, StatementLease query,
                                    std::wstring_view text) {
  const auto recordset = com::make<AdoRecordset>();
  recordset->open(database, std::move(query), text);
  return com::Ptr<_Recordset>(recordset.get());
}

com::Ptr<_Recordset> make_recordset(std::shared_ptr<Database> database, std::wstring_view sql) {
  return make_recordset(*database, database->execute_text(sql, Trust::kRead).query, sql);
}

HRESULT create_recordset(IUnknown* outer, REFIID iid, void** out) {
  return com::Instance<AdoRecordset>::create(outer, iid, out);
}

}  // namespace modeldb
