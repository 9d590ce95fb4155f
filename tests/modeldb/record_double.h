#pragma once

#include <orv_host.h>
#include <orv_node.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "com/bstr.h"
#include "tests/modeldb/owned_by_test.h"

namespace model_test {

/// A record that answers what a test tells it to, and notes what it is asked.
class RecordDouble final : public OwnedByTest<IPersistentObject, INodalForce> {
 public:
  long id = 0;
  long dirty = 1;
  std::wstring description = L"d";
  std::map<long, std::wstring> texts = {
      {1, L"NodalForces"},
      {2, L"NodalForceID"},
      {3, L"Description, VertexID, MultiplierTableID, Magnitude, Vx, Vy, Vz, CoordinateSystemID"},
      {4, L"'d', 12, 1, 250, 0, 0, -1, 0"},
      {6,
       L"Description = 'd', VertexID = 12, MultiplierTableID = 1, Magnitude = 250, Vx = 0, "
       L"Vy = 0, Vz = -1, CoordinateSystemID = 0"}};
  /// What FileOpHelper does and answers, by its code.
  std::map<long, std::function<HRESULT(IDispatch* database)>> file_operations;
  /// What it does when its ID is put.
  std::function<void()> on_put_id = [] {};

  std::vector<std::string> calls;

  STDMETHODIMP get_ID(long* value) override {
    *value = id;
    return S_OK;
  }
  STDMETHODIMP put_ID(long value) override {
    calls.push_back("ID=" + std::to_string(value));
    id = value;
    on_put_id();
    return S_OK;
  }
  STDMETHODIMP get_IsDirty(long* value) override {
    *value = dirty;
    return S_OK;
  }
  STDMETHODIMP put_IsDirty(long value) override {
    calls.push_back("IsDirty=" + std::to_string(value));
    dirty = value;
    return S_OK;
  }
  STDMETHODIMP LoadFromCurrentRecordsetPosition(IDispatch*, IDispatch*, BSTR) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Save(IDispatch*, VARIANT, VARIANT) override { return E_NOTIMPL; }
  STDMETHODIMP Delete(IDispatch*) override { return E_NOTIMPL; }
  STDMETHODIMP get_SqlString(long code, BSTR* value) override {
    calls.push_back("SqlString " + std::to_string(code));
    *value = com::Bstr(texts[code]).detach();
    return S_OK;
  }
  STDMETHODIMP FileOpHelper(IDispatch* database, long code, VARIANT down, VARIANT up) override {
    calls.push_back("FileOpHelper " + std::to_string(code) + " " + flag(down) + " " + flag(up));
    return file_operations.contains(code) ? file_operations[code](database) : S_OK;
  }
  STDMETHODIMP get_EventObjectType(long* value) override {
    *value = 19;
    return S_OK;
  }
  STDMETHODIMP get_Description(BSTR* value) override {
    *value = com::Bstr(description).detach();
    return S_OK;
  }
  STDMETHODIMP put_Description(BSTR) override { return E_NOTIMPL; }

 private:
  static std::string flag(const VARIANT& value) {
    if (value.vt != VT_BOOL) return "type " + std::to_string(value.vt);
    return value.boolVal == VARIANT_TRUE    ? "true"
           : value.boolVal == VARIANT_FALSE ? "false"
                                            : "odd";
  }
};

}  // namespace model_test
