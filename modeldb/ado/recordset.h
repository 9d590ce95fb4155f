#pragma once

#include <string_view>

#include "com/bstr.h"
#include "com/part.h"
#include "modeldb/ado/cursor.h"
#include "modeldb/ado/fields.h"
#include "modeldb/ado/unavailable_recordset.h"

namespace modeldb {

/// The rows of a query, read once from the first to the last.
class AdoRecordset : public UnavailableRecordset {
 public:
  /// Takes a query of `database` that is ready to run; an empty one leaves the recordset closed.
  void open(const Database& database, StatementLease query, std::wstring_view text);

  /// `source` is the text of a statement, the name of a table or a Command; `active_connection` a
  /// connection of an open model database. Both may have been set as properties before. The type of
  /// cursor and lock that is asked for gives way to what there is: forward-only and read-only.
  ///
  /// A text that is no query is run, and the recordset stays closed. kObjectOpen: it is open.
  /// kInvalidConnection: no connection, or none of a model database.
  STDMETHODIMP Open(VARIANT source, VARIANT active_connection, CursorTypeEnum cursor_type,
                    LockTypeEnum lock_type, LONG options) override;
  /// Succeeds on a closed recordset, too.
  STDMETHODIMP Close() override;
  STDMETHODIMP Requery(LONG options) override;
  STDMETHODIMP get_State(LONG* state) override;

  STDMETHODIMP get_ActiveConnection(VARIANT* connection) override;
  STDMETHODIMP put_ActiveConnection(VARIANT connection) override;
  STDMETHODIMP putref_ActiveConnection(IDispatch* connection) override;
  STDMETHODIMP get_Source(VARIANT* source) override;
  STDMETHODIMP put_Source(BSTR source) override;

  STDMETHODIMP get_BOF(VARIANT_BOOL* bof) override;
  STDMETHODIMP get_EOF(VARIANT_BOOL* eof) override;
  /// Succeeds on an empty recordset, too.
  STDMETHODIMP MoveFirst() override;
  STDMETHODIMP MoveNext() override;

  STDMETHODIMP get_Fields(::Fields** object) override;
  STDMETHODIMP get_Collect(VARIANT index, VARIANT* var) override;
  /// The next `rows` rows, or all that are left (-1), as a two-dimensional array: field, row.
  STDMETHODIMP GetRows(LONG rows, VARIANT start, VARIANT fields, VARIANT* var) override;

  /// -1: rows are not counted ahead of reading them.
  STDMETHODIMP get_RecordCount(ADO_LONGPTR* count) override;
  STDMETHODIMP get_CursorType(CursorTypeEnum* cursor_type) override;
  STDMETHODIMP get_LockType(LockTypeEnum* lock_type) override;
  STDMETHODIMP get_CursorLocation(CursorLocationEnum* cursor_loc) override;
  STDMETHODIMP Supports(CursorOptionEnum cursor_options, VARIANT_BOOL* ret) override;

 protected:
  void final_release() override;

 private:
  void take_source(const VARIANT& source);
  void set_connection(IDispatch* connection);
  void set_connection(const VARIANT& connection);

  Cursor cursor_;
  com::Part<AdoFields> fields_{static_cast<_Recordset*>(this), static_cast<_Recordset*>(this),
                               cursor_};
  com::Bstr source_;
  com::Ptr<IDispatch> connection_;
};

/// A recordset of the rows of `query` of `database`; closed when that is empty.
com::Ptr<_Recordset> make_recordset(const Database& database, StatementLease query,
                                    std::wstring_view text);

}  // namespace modeldb
