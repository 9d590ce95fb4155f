#pragma once

#include <string>

#include "modeldb/ado/ado_object.h"

namespace modeldb {

/// The members of a recordset that need rows which can be changed, counted or visited again.
class UnavailableRecordset
    : public AdoObject<_Recordset, Recordset21, Recordset20, Recordset15, _ADO> {
 public:
  // _ADO
  STDMETHODIMP get_Properties(Properties**) override { return refuse(L"Properties"); }

  // Recordset15
  STDMETHODIMP get_AbsolutePosition(PositionEnum_Param*) override {
    return refuse(L"AbsolutePosition");
  }
  STDMETHODIMP put_AbsolutePosition(PositionEnum_Param) override {
    return refuse(L"AbsolutePosition");
  }
  STDMETHODIMP get_Bookmark(VARIANT*) override { return refuse(L"Bookmark"); }
  STDMETHODIMP put_Bookmark(VARIANT) override { return refuse(L"Bookmark"); }
  STDMETHODIMP get_CacheSize(LONG*) override { return refuse(L"CacheSize"); }
  STDMETHODIMP put_CacheSize(LONG) override { return refuse(L"CacheSize"); }
  STDMETHODIMP put_CursorType(CursorTypeEnum) override { return refuse(L"CursorType"); }
  STDMETHODIMP put_LockType(LockTypeEnum) override { return refuse(L"LockType"); }
  STDMETHODIMP get_MaxRecords(ADO_LONGPTR*) override { return refuse(L"MaxRecords"); }
  STDMETHODIMP put_MaxRecords(ADO_LONGPTR) override { return refuse(L"MaxRecords"); }
  STDMETHODIMP putref_Source(IDispatch*) override { return refuse(L"Source"); }
  STDMETHODIMP AddNew(VARIANT, VARIANT) override { return refuse(L"AddNew"); }
  STDMETHODIMP CancelUpdate() override { return refuse(L"CancelUpdate"); }
  STDMETHODIMP Delete(AffectEnum) override { return refuse(L"Delete"); }
  STDMETHODIMP Move(ADO_LONGPTR, VARIANT) override { return refuse(L"Move"); }
  STDMETHODIMP MovePrevious() override { return refuse(L"MovePrevious"); }
  STDMETHODIMP MoveLast() override { return refuse(L"MoveLast"); }
  STDMETHODIMP _xResync(AffectEnum) override { return refuse(L"_xResync"); }
  STDMETHODIMP Update(VARIANT, VARIANT) override { return refuse(L"Update"); }
  STDMETHODIMP get_AbsolutePage(PositionEnum_Param*) override { return refuse(L"AbsolutePage"); }
  STDMETHODIMP put_AbsolutePage(PositionEnum_Param) override { return refuse(L"AbsolutePage"); }
  STDMETHODIMP get_EditMode(EditModeEnum*) override { return refuse(L"EditMode"); }
  STDMETHODIMP get_Filter(VARIANT*) override { return refuse(L"Filter"); }
  STDMETHODIMP put_Filter(VARIANT) override { return refuse(L"Filter"); }
  STDMETHODIMP get_PageCount(ADO_LONGPTR*) override { return refuse(L"PageCount"); }
  STDMETHODIMP get_PageSize(LONG*) override { return refuse(L"PageSize"); }
  STDMETHODIMP put_PageSize(LONG) override { return refuse(L"PageSize"); }
  STDMETHODIMP get_Sort(BSTR*) override { return refuse(L"Sort"); }
  STDMETHODIMP put_Sort(BSTR) override { return refuse(L"Sort"); }
  STDMETHODIMP get_Status(LONG*) override { return refuse(L"Status"); }
  STDMETHODIMP _xClone(_Recordset**) override { return refuse(L"_xClone"); }
  STDMETHODIMP UpdateBatch(AffectEnum) override { return refuse(L"UpdateBatch"); }
  STDMETHODIMP CancelBatch(AffectEnum) override { return refuse(L"CancelBatch"); }
  STDMETHODIMP put_CursorLocation(CursorLocationEnum) override { return refuse(L"CursorLocation"); }
  STDMETHODIMP NextRecordset(VARIANT*, _Recordset**) override { return refuse(L"NextRecordset"); }
  STDMETHODIMP put_Collect(VARIANT, VARIANT) override { return refuse(L"Collect"); }
  STDMETHODIMP get_MarshalOptions(MarshalOptionsEnum*) override {
    return refuse(L"MarshalOptions");
  }
  STDMETHODIMP put_MarshalOptions(MarshalOptionsEnum) override { return refuse(L"MarshalOptions"); }
  STDMETHODIMP Find(BSTR, LONG, SearchDirectionEnum, VARIANT) override { return refuse(L"Find"); }

  // Recordset20
  STDMETHODIMP Cancel() override { return refuse(L"Cancel"); }
  STDMETHODIMP get_DataSource(IUnknown**) override { return refuse(L"DataSource"); }
  STDMETHODIMP putref_DataSource(IUnknown*) override { return refuse(L"DataSource"); }
  STDMETHODIMP _xSave(BSTR, PersistFormatEnum) override { return refuse(L"_xSave"); }
  STDMETHODIMP get_ActiveCommand(IDispatch**) override { return refuse(L"ActiveCommand"); }
  STDMETHODIMP put_StayInSync(VARIANT_BOOL) override { return refuse(L"StayInSync"); }
  STDMETHODIMP get_StayInSync(VARIANT_BOOL*) override { return refuse(L"StayInSync"); }
  STDMETHODIMP GetString(StringFormatEnum, LONG, BSTR, BSTR, BSTR, BSTR*) override {
    return refuse(L"GetString");
  }
  STDMETHODIMP get_DataMember(BSTR*) override { return refuse(L"DataMember"); }
  STDMETHODIMP put_DataMember(BSTR) override { return refuse(L"DataMember"); }
  STDMETHODIMP CompareBookmarks(VARIANT, VARIANT, CompareEnum*) override {
    return refuse(L"CompareBookmarks");
  }
  STDMETHODIMP Clone(LockTypeEnum, _Recordset**) override { return refuse(L"Clone"); }
  STDMETHODIMP Resync(AffectEnum, ResyncEnum) override { return refuse(L"Resync"); }

  // Recordset21
  STDMETHODIMP Seek(VARIANT, SeekEnum) override { return refuse(L"Seek"); }
  STDMETHODIMP put_Index(BSTR) override { return refuse(L"Index"); }
  STDMETHODIMP get_Index(BSTR*) override { return refuse(L"Index"); }

  // _Recordset
  STDMETHODIMP Save(VARIANT, PersistFormatEnum) override { return refuse(L"Save"); }

 private:
  static HRESULT refuse(std::wstring_view member) {
    return not_available(
        L"Recordset." + std::wstring(member),
        L"its rows are read only, once, from the first to the last. Order, filter and "
        L"change rows by SQL statements.");
  }
};

}  // namespace modeldb
