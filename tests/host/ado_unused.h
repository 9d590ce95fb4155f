#pragma once

#include <msado15_backcompat.h>

#include "tests/host/object.h"

// The members of ADO's interfaces that the server does not call. What it calls is left to the
// classes that derive from these. Several stand on a line.
// clang-format off

namespace fake {

class UnusedField : public Object<::Field, Field20> {
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
  NOT_CALLED(put_Attributes, LONG) NOT_CALLED(get_Status, LONG*)
};

class UnusedFields : public Object<::Fields, Fields20, Fields15> {
 public:
  using Object::Object;
  NOT_CALLED(get_Count, LONG*) NOT_CALLED(_NewEnum, IUnknown**) NOT_CALLED(Refresh)
  NOT_CALLED(_Append, BSTR, DataTypeEnum, ADO_LONGPTR, FieldAttributeEnum)
  NOT_CALLED(Delete, VARIANT)
  NOT_CALLED(Append, BSTR, DataTypeEnum, ADO_LONGPTR, FieldAttributeEnum, VARIANT)
  NOT_CALLED(Update) NOT_CALLED(Resync, ResyncEnum) NOT_CALLED(CancelUpdate)
};

class UnusedRecordset : public Object<_Recordset, Recordset21, Recordset20, Recordset15> {
 public:
  using Object::Object;
  NOT_CALLED(get_Properties, ::Properties**) NOT_CALLED(get_AbsolutePosition, PositionEnum_Param*)
  NOT_CALLED( put_AbsolutePosition, PositionEnum_Param)
  NOT_CALLED(putref_ActiveConnection, IDispatch*) NOT_CALLED(put_ActiveConnection, VARIANT)
  NOT_CALLED(get_ActiveConnection, VARIANT*) NOT_CALLED(get_BOF, VARIANT_BOOL*)
  NOT_CALLED(get_Bookmark, VARIANT*) NOT_CALLED( put_Bookmark, VARIANT)
  NOT_CALLED(get_CacheSize, LONG*) NOT_CALLED(put_CacheSize, LONG)
  NOT_CALLED(get_CursorType, CursorTypeEnum*) NOT_CALLED(put_CursorType, CursorTypeEnum)
  NOT_CALLED( get_LockType, LockTypeEnum*) NOT_CALLED(put_LockType, LockTypeEnum)
  NOT_CALLED(get_MaxRecords, ADO_LONGPTR*) NOT_CALLED(put_MaxRecords, ADO_LONGPTR)
  NOT_CALLED( get_RecordCount, ADO_LONGPTR*) NOT_CALLED(putref_Source, IDispatch*)
  NOT_CALLED(put_Source, BSTR) NOT_CALLED(get_Source, VARIANT*)
  NOT_CALLED(AddNew, VARIANT, VARIANT) NOT_CALLED(CancelUpdate) NOT_CALLED( Delete, AffectEnum)
  NOT_CALLED(GetRows, LONG, VARIANT, VARIANT, VARIANT*) NOT_CALLED(Move, ADO_LONGPTR, VARIANT)
  NOT_CALLED(MovePrevious) NOT_CALLED(MoveLast) NOT_CALLED(Requery, LONG)
  NOT_CALLED( _xResync, AffectEnum) NOT_CALLED(Update, VARIANT, VARIANT)
  NOT_CALLED(get_AbsolutePage, PositionEnum_Param*)
  NOT_CALLED(put_AbsolutePage, PositionEnum_Param) NOT_CALLED( get_EditMode, EditModeEnum*)
  NOT_CALLED(get_Filter, VARIANT*) NOT_CALLED(put_Filter, VARIANT)
  NOT_CALLED(get_PageCount, ADO_LONGPTR*) NOT_CALLED( get_PageSize, LONG*)
  NOT_CALLED(put_PageSize, LONG) NOT_CALLED(get_Sort, BSTR*) NOT_CALLED(put_Sort, BSTR)
  NOT_CALLED(get_Status, LONG*) NOT_CALLED( get_State, LONG*) NOT_CALLED(_xClone, _Recordset**)
  NOT_CALLED(UpdateBatch, AffectEnum) NOT_CALLED(CancelBatch, AffectEnum)
  NOT_CALLED( get_CursorLocation, CursorLocationEnum*)
  NOT_CALLED(put_CursorLocation, CursorLocationEnum)
  NOT_CALLED(NextRecordset, VARIANT*, _Recordset**)
  NOT_CALLED( Supports, CursorOptionEnum, VARIANT_BOOL*) NOT_CALLED(get_Collect, VARIANT, VARIANT*)
  NOT_CALLED(put_Collect, VARIANT, VARIANT) NOT_CALLED( get_MarshalOptions, MarshalOptionsEnum*)
  NOT_CALLED(put_MarshalOptions, MarshalOptionsEnum)
  NOT_CALLED(Find, BSTR, LONG, SearchDirectionEnum, VARIANT) NOT_CALLED(Cancel)
  NOT_CALLED(get_DataSource, IUnknown**) NOT_CALLED( putref_DataSource, IUnknown*)
  NOT_CALLED(_xSave, BSTR, PersistFormatEnum) NOT_CALLED(get_ActiveCommand, IDispatch**)
  NOT_CALLED( put_StayInSync, VARIANT_BOOL) NOT_CALLED(get_StayInSync, VARIANT_BOOL*)
  NOT_CALLED( GetString, StringFormatEnum, LONG, BSTR, BSTR, BSTR, BSTR*)
  NOT_CALLED(get_DataMember, BSTR*) NOT_CALLED(put_DataMember, BSTR)
  NOT_CALLED( CompareBookmarks, VARIANT, VARIANT, CompareEnum*)
  NOT_CALLED(Clone, LockTypeEnum, _Recordset**) NOT_CALLED(Resync, AffectEnum, ResyncEnum)
  NOT_CALLED(Seek, VARIANT, SeekEnum) NOT_CALLED( put_Index, BSTR) NOT_CALLED( get_Index, BSTR*)
  NOT_CALLED( Save, VARIANT, PersistFormatEnum)
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
}  // namespace fake
