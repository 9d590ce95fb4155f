#include "modeldb/ado/recordset.h"

#include <climits>
#include <new>
#include <utility>
#include <vector>

#include "com/variant.h"
#include "modeldb/ado/argument.h"
#include "modeldb/ado/connection.h"
#include "modeldb/ado/execution.h"
#include "modeldb/ado/factories.h"
#include "modeldb/ado/value.h"
#include "modeldb/engine/failure.h"

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

/// Rows of `width` values each, which are moved, as an array of variants: field, row.
com::Variant array_of(std::vector<com::Variant>&& values, ULONG width) {
  SAFEARRAYBOUND bounds[] = {{width, 0}, {static_cast<ULONG>(values.size()) / width, 0}};
  com::Variant result;
  VARIANT* const array = result.put();
  array->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (!array->parray) throw std::bad_alloc();
  array->vt = VT_ARRAY | VT_VARIANT;
  // The first index runs fastest, as the values lie.
  auto* const elements = static_cast<VARIANT*>(array->parray->pvData);
  for (std::size_t i = 0; i < values.size(); ++i) elements[i] = values[i].detach();
  return result;
}

}  // namespace

void AdoRecordset::open(StatementLease query, std::wstring_view text) {
  if (query) cursor_.open(std::move(query));
  source_ = com::Bstr(text);
}

STDMETHODIMP AdoRecordset::Open(VARIANT source, VARIANT active_connection, CursorTypeEnum,
                                LockTypeEnum, LONG options) {
  return com::boundary([&] {
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
    Database& database = *database_of(connection_.get());
    StatementLease query = run_text(database, source_.view(), options, database.time_limit()).query;
    if (query) cursor_.open(std::move(query));
  });
}

void AdoRecordset::take_source(const VARIANT& source) {
  const com::Variant value = value_of(source);
  if (value.type() != VT_DISPATCH) {
    const com::Variant text =
        argument_as(VT_BSTR, value,
                    L"The source of the recordset is no text. Pass the text of "
                    L"a query.");
    source_ = com::Bstr(com::Bstr::view(text.get().bstrVal));
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
  cursor_.close();
  return S_OK;
}

STDMETHODIMP AdoRecordset::Requery(LONG) {
  return com::boundary([&] { cursor_.run_again(); });
}

STDMETHODIMP AdoRecordset::get_State(LONG* state) {
  *state = cursor_.is_open() ? adStateOpen : adStateClosed;
  return S_OK;
}

STDMETHODIMP AdoRecordset::get_ActiveConnection(VARIANT* connection) {
  return com::boundary([&] { *connection = com::Variant(connection_.get()).detach(); });
}

STDMETHODIMP AdoRecordset::put_ActiveConnection(VARIANT connection) {
  return com::boundary([&] { set_connection(connection); });
}

STDMETHODIMP AdoRecordset::putref_ActiveConnection(IDispatch* connection) {
  return com::boundary([&] { set_connection(connection); });
}

STDMETHODIMP AdoRecordset::get_Source(VARIANT* source) {
  return com::boundary([&] { *source = com::Variant(com::Bstr(source_.view())).detach(); });
}

STDMETHODIMP AdoRecordset::put_Source(BSTR source) {
  return com::boundary([&] { source_ = com::Bstr(com::Bstr::view(source)); });
}

STDMETHODIMP AdoRecordset::get_BOF(VARIANT_BOOL* bof) {
  return com::boundary([&] { *bof = automation_bool(cursor_.is_empty()); });
}

STDMETHODIMP AdoRecordset::get_EOF(VARIANT_BOOL* eof) {
  return com::boundary([&] { *eof = automation_bool(cursor_.at_end()); });
}

STDMETHODIMP AdoRecordset::MoveFirst() {
  return com::boundary([&] { cursor_.move_first(); });
}

STDMETHODIMP AdoRecordset::MoveNext() {
  return com::boundary([&] { cursor_.move_next(); });
}

STDMETHODIMP AdoRecordset::get_Fields(::Fields** object) {
  *object = com::Ptr<::Fields>(&fields_).detach();
  return S_OK;
}

STDMETHODIMP AdoRecordset::get_Collect(VARIANT index, VARIANT* var) {
  return com::boundary([&] {
    VariantInit(var);
    read_value(cursor_.row(), fields_.find(index), var);
  });
}

STDMETHODIMP AdoRecordset::GetRows(LONG rows, VARIANT start, VARIANT fields, VARIANT* var) {
  return com::boundary([&] {
    VariantInit(var);
    if (is_given(start) || is_given(fields)) {
      fail(kFeatureNotAvailable,
           L"GetRows reads all fields from the current row on. Leave Start and "
           L"Fields out, and select the fields in the statement.");
    }
    (void)cursor_.row();
    const int width = fields_.count();
    std::vector<com::Variant> values;
    for (LONG left = rows < 0 ? LONG_MAX : rows; left > 0 && !cursor_.at_end(); --left) {
      for (int column = 0; column < width; ++column) {
        read_value(cursor_.row(), column, values.emplace_back().put());
      }
      cursor_.move_next();
    }
    *var = array_of(std::move(values), static_cast<ULONG>(width)).detach();
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

com::Ptr<_Recordset> make_recordset(StatementLease query, std::wstring_view text) {
  const auto recordset = com::make<AdoRecordset>();
  recordset->open(std::move(query), text);
  return com::Ptr<_Recordset>(recordset.get());
}

com::Ptr<_Recordset> make_recordset(std::shared_ptr<Database> database, std::wstring_view sql) {
  return make_recordset(database->execute_text(sql, Trust::kRead).query, sql);
}

HRESULT create_recordset(IUnknown* outer, REFIID iid, void** out) {
  return com::Instance<AdoRecordset>::create(outer, iid, out);
}

}  // namespace modeldb
