#include "tests/host/server.h"

#include <objbase.h>

#include <cstdio>
#include <cstdlib>

#include "com/bstr.h"

namespace server {

const LoadedModule& module() {
  static const LoadedModule& loaded = []() -> const LoadedModule& {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    // Never freed: objects of tests may outlive any other static value.
    const auto& module = *new LoadedModule;
    if (!module.handle()) {
      std::fputs("orv_node.dll is not in the folder that ORV_OUT_DIR names\n", stderr);
      std::exit(EXIT_FAILURE);
    }
    return module;
  }();
  return loaded;
}

com::Ptr<IUnknown> make(REFCLSID clsid) { return module().create<IUnknown>(clsid); }

com::Ptr<IPersistentObject> as_record(IUnknown* object, REFIID own_interface) {
  com::Ptr<IPersistentObject> record;
  object->QueryInterface(own_interface, record.put_void());
  return record;
}

std::string sql(IPersistentObject& record, long piece) {
  com::Bstr text;
  const HRESULT result = record.get_SqlString(piece, text.put());
  if (SUCCEEDED(result)) return text ? fake::narrow(text.view()) : "null";
  char code[11];
  std::snprintf(code, sizeof code, "0x%08lX", result);
  return code;
}

HRESULT Test::load(IPersistentObject& record, const fake::Row& row) {
  const auto rows = host.recordset(row);
  return record.LoadFromCurrentRecordsetPosition(host.database.get(), rows.get(), nullptr);
}

Test::~Test() {
  EXPECT_EQ(host.objects_kept_by_others(), 0) << "objects of the host are still held";
  EXPECT_EQ(module().can_unload_now(), S_OK) << "objects of the server are still alive";
}

}  // namespace server
