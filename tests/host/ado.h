#pragma once

#include <msado15_backcompat.h>

#include <map>
#include <string>
#include <vector>

#include "com/ptr.h"
#include "com/variant.h"
#include "tests/host/object.h"

// ADO's objects. Each is the oldest interface that has the members which the server calls, and
// answers for the later ones too, whose first members are the same.

namespace fake {

/// A row of a query: what each column holds, by the names under which the row offers it.
using Row = std::map<std::wstring, com::Variant, std::less<>>;

/// What ADO answers for a column that a row does not have (adErrItemNotFound).
constexpr HRESULT kNoSuchColumn = static_cast<HRESULT>(0x800A0CC1);

// What the server does not call; several stand on a line.
// clang-format off

class UnusedField : public Object<Field20, ::Field> {
 public:
  using Object::Object;
  NOT_CALLED(get_Properties, ::Properties**) NOT_CALLED(get_ActualSize, ADO_LONGPTR*)
  NOT_CALLED(get_Attributes, LONG*) NOT_CALLED(get_DefinedSize, ADO_LONGPTR*)
  NOT_CALLED(get_Name, BSTR*) NOT_CALLED(get_Type, DataTypeEnum*) NOT_CALLED(put_Value, VARIANT)
  NOT_CALLED(get_Precision, unsigned char*) NOT_CALLED(get_NumericScale, unsigned char*)
  NOT_CALLED(AppendChunk, VARIANT) NOT_CALLED(GetChunk, LONG, VARIANT*)
  NOT_CALLED(get_OriginalValue, VARIANT*) NOT_CALLED(get_UnderlyingValue, VARIANT*)
  NOT_CALLED(get_DataFormat, IUnknown**) NOT_CALLED(putref_DataFormat, IUnknown*)
  NOT_CALLED(put_Precision, unsigned char) NOT_CALLED(put_NumericScale, unsigned char)
  NOT_CALLED(put_Type, DataTypeEnum) NOT_CALLED(put_DefinedSize, ADO_LONGPTR)
  NOT_CALLED(put_Attributes, LONG)
};

class UnusedFields : public Object<Fields15, Fields20, ::Fields> {
 public:
  using Object::Object;
  NOT_CALLED(get_Count, LONG*) NOT_CALLED(_NewEnum, IUnknown**) NOT_CALLED(Refresh)
};

class UnusedRecordset : public Object<Recordset15, Recordset20, Recordset21, _Recordset> {
 public:
  using Object::Object;
  NOT_CALLED(get_Properties, ::Properties**) NOT_CALLED(get_AbsolutePosition, PositionEnum_Param*)
  NOT_CALLED(put_AbsolutePosition, PositionEnum_Param)
  NOT_CALLED(putref_ActiveConnection, IDispatch*) NOT_CALLED(put_ActiveConnection, VARIANT)
  NOT_CALLED(get_ActiveConnection, VARIANT*) NOT_CALLED(get_BOF, VARIANT_BOOL*)
  NOT_CALLED(get_Bookmark, VARIANT*) NOT_CALLED(put_Bookmark, VARIANT)
  NOT_CALLED(get_CacheSize, LONG*) NOT_CALLED(put_CacheSize, LONG)
  NOT_CALLED(get_CursorType, CursorTypeEnum*) NOT_CALLED(put_CursorType, CursorTypeEnum)
  NOT_CALLED(get_LockType, LockTypeEnum*) NOT_CALLED(put_LockType, LockTypeEnum)
  NOT_CALLED(get_MaxRecords, ADO_LONGPTR*) NOT_CALLED(put_MaxRecords, ADO_LONGPTR)
  NOT_CALLED(get_RecordCount, ADO_LONGPTR*) NOT_CALLED(putref_Source, IDispatch*)
  NOT_CALLED(put_Source, BSTR) NOT_CALLED(get_Source, VARIANT*)
  NOT_CALLED(AddNew, VARIANT, VARIANT) NOT_CALLED(CancelUpdate) NOT_CALLED(Delete, AffectEnum)
  NOT_CALLED(GetRows, LONG, VARIANT, VARIANT, VARIANT*) NOT_CALLED(Move, ADO_LONGPTR, VARIANT)
  NOT_CALLED(MovePrevious) NOT_CALLED(MoveLast) NOT_CALLED(Requery, LONG)
  NOT_CALLED(_xResync, AffectEnum) NOT_CALLED(Update, VARIANT, VARIANT)
  NOT_CALLED(get_AbsolutePage, PositionEnum_Param*)
  NOT_CALLED(put_AbsolutePage, PositionEnum_Param) NOT_CALLED(get_EditMode, EditModeEnum*)
  NOT_CALLED(get_Filter, VARIANT*) NOT_CALLED(put_Filter, VARIANT)
  NOT_CALLED(get_PageCount, ADO_LONGPTR*) NOT_CALLED(get_PageSize, LONG*)
  NOT_CALLED(put_PageSize, LONG) NOT_CALLED(get_Sort, BSTR*) NOT_CALLED(put_Sort, BSTR)
  NOT_CALLED(get_Status, LONG*) NOT_CALLED(get_State, LONG*) NOT_CALLED(_xClone, _Recordset**)
  NOT_CALLED(UpdateBatch, AffectEnum) NOT_CALLED(CancelBatch, AffectEnum)
  NOT_CALLED(get_CursorLocation, CursorLocationEnum*)
  NOT_CALLED(put_CursorLocation, CursorLocationEnum)
  NOT_CALLED(NextRecordset, VARIANT*, _Recordset**)
  NOT_CALLED(Supports, CursorOptionEnum, VARIANT_BOOL*) NOT_CALLED(get_Collect, VARIANT, VARIANT*)
  NOT_CALLED(put_Collect, VARIANT, VARIANT) NOT_CALLED(get_MarshalOptions, MarshalOptionsEnum*)
  NOT_CALLED(put_MarshalOptions, MarshalOptionsEnum)
  NOT_CALLED(Find, BSTR, LONG, SearchDirectionEnum, VARIANT)
};

class UnusedConnection : public Object<Connection15> {
 public:
  using Object::Object;
  NOT_CALLED(get_Properties, ::Properties**) NOT_CALLED(get_ConnectionString, BSTR*)
  NOT_CALLED(put_ConnectionString, BSTR) NOT_CALLED(get_CommandTimeout, LONG*)
  NOT_CALLED(put_CommandTimeout, LONG) NOT_CALLED(get_ConnectionTimeout, LONG*)
  NOT_CALLED(put_ConnectionTimeout, LONG) NOT_CALLED(get_Version, BSTR*) NOT_CALLED(Close)
  NOT_CALLED(BeginTrans, LONG*) NOT_CALLED(CommitTrans) NOT_CALLED(RollbackTrans)
  NOT_CALLED(Open, BSTR, BSTR, BSTR, LONG) NOT_CALLED(get_Errors, ::Errors**)
  NOT_CALLED(get_DefaultDatabase, BSTR*) NOT_CALLED(put_DefaultDatabase, BSTR)
  NOT_CALLED(get_IsolationLevel, IsolationLevelEnum*)
  NOT_CALLED(put_IsolationLevel, IsolationLevelEnum) NOT_CALLED(get_Attributes, LONG*)
  NOT_CALLED(put_Attributes, LONG) NOT_CALLED(get_CursorLocation, CursorLocationEnum*)
  NOT_CALLED(put_CursorLocation, CursorLocationEnum) NOT_CALLED(get_Mode, ConnectModeEnum*)
  NOT_CALLED(put_Mode, ConnectModeEnum) NOT_CALLED(get_Provider, BSTR*)
  NOT_CALLED(put_Provider, BSTR) NOT_CALLED(get_State, LONG*)
  NOT_CALLED(OpenSchema, SchemaEnum, VARIANT, VARIANT, _Recordset**)
};

class UnusedCommand : public Object<Command15> {
 public:
  using Object::Object;
  NOT_CALLED(get_Properties, ::Properties**) NOT_CALLED(get_ActiveConnection, _Connection**)
  NOT_CALLED(putref_ActiveConnection, _Connection*) NOT_CALLED(put_ActiveConnection, VARIANT)
  NOT_CALLED(get_CommandText, BSTR*) NOT_CALLED(get_CommandTimeout, LONG*)
  NOT_CALLED(put_CommandTimeout, LONG) NOT_CALLED(get_Prepared, VARIANT_BOOL*)
  NOT_CALLED(put_Prepared, VARIANT_BOOL)
  NOT_CALLED(CreateParameter, BSTR, DataTypeEnum, ParameterDirectionEnum, ADO_LONGPTR, VARIANT, _Parameter**)
  NOT_CALLED(get_Parameters, ::Parameters**) NOT_CALLED(put_CommandType, CommandTypeEnum)
  NOT_CALLED(get_CommandType, CommandTypeEnum*) NOT_CALLED(get_Name, BSTR*)
  NOT_CALLED(put_Name, BSTR)
};
// clang-format on

/// Hands out an object that has the members of Later which are called.
template <class Later>
void give_as(Later** out, IDispatch* object) {
  com::Ptr<IDispatch>(object)->QueryInterface(__uuidof(Later), reinterpret_cast<void**>(out));
}

class Field final : public UnusedField {
 public:
  Field(Journal& journal, com::Variant value)
      : UnusedField(journal, "Field"), value_(std::move(value)) {}
  STDMETHODIMP get_Value(VARIANT* value) override {
    return then(note("Value"), [&] { *value = com::Variant(value_).detach(); });
  }

 private:
  com::Variant value_;
};

class Fields final : public UnusedFields {
 public:
  Fields(Journal& journal, Row row) : UnusedFields(journal, "Fields"), row_(std::move(row)) {}
  STDMETHODIMP get_Item(VARIANT name, ::Field** field) override {
    if (name.vt != VT_BSTR) return DISP_E_TYPEMISMATCH;
    if (const HRESULT result = note("Item", name.bstrVal); FAILED(result)) return result;
    const auto found = row_.find(com::Bstr::view(name.bstrVal));
    if (found == row_.end()) return kNoSuchColumn;
    give_as(field, new Field(journal(), found->second));
    return S_OK;
  }

 private:
  Row row_;
};

/// A recordset that stands at the first of its rows.
class Recordset final : public UnusedRecordset {
 public:
  Recordset(Journal& journal, const std::string& name, std::vector<Row> rows)
      : UnusedRecordset(journal, name), rows_(std::move(rows)) {}

  /// The row at which it stands.
  [[nodiscard]] const Row& row() const { return rows_.at(position_); }

  STDMETHODIMP get_Fields(::Fields** fields) override {
    return then(note("Fields"), [&] { give_as(fields, new Fields(journal(), row())); });
  }
  STDMETHODIMP Open(VARIANT source, VARIANT connection, CursorTypeEnum cursor, LockTypeEnum lock,
                    LONG options) override {
    return note("Open", source, connection, long{cursor}, long{lock}, options);
  }
  STDMETHODIMP MoveFirst() override {
    position_ = 0;
    return note("MoveFirst");
  }
  STDMETHODIMP MoveNext() override {
    return then(note("MoveNext"), [&] { ++position_; });
  }
  STDMETHODIMP get_EOF(VARIANT_BOOL* end) override {
    return then(note("EOF"),
                [&] { *end = position_ < rows_.size() ? VARIANT_FALSE : VARIANT_TRUE; });
  }
  STDMETHODIMP Close() override { return note("Close"); }

 private:
  std::vector<Row> rows_;
  std::size_t position_ = 0;
};

class Connection final : public UnusedConnection {
 public:
  explicit Connection(Journal& journal) : UnusedConnection(journal, "Connection") {}
  STDMETHODIMP Execute(BSTR text, VARIANT* affected, LONG options, _Recordset** rows) override {
    *rows = nullptr;
    return note("Execute", text, affected, options);
  }
};

class Command final : public UnusedCommand {
 public:
  explicit Command(Journal& journal) : UnusedCommand(journal, "Command") {}
  STDMETHODIMP put_CommandText(BSTR text) override { return note("CommandText", text); }
  /// Gives a recordset back, which nobody is to look at.
  STDMETHODIMP Execute(VARIANT* affected, VARIANT* parameters, LONG options,
                       _Recordset** rows) override {
    return then(note("Execute", affected, parameters, options),
                [&] { give_as(rows, new Recordset(journal(), "Result", {})); });
  }
};

}  // namespace fake
