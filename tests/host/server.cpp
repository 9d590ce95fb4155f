#include "tests/host/server.h"

#include <objbase.h>

#include <cstdio>
#include <cstdlib>

#include "com/bstr.h"

namespace server {
namespace {

HMODULE load() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const wchar_t* const folder = _wgetenv(L"ORV_OUT_DIR");
  const std::wstring path = std::wstring(folder ? folder : L".") + L"\\orv_node.dll";
  const HMODULE module = LoadLibraryW(path.c_str());
  if (!module) {
    std::fprintf(stderr, "%s cannot be loaded; ORV_OUT_DIR names the folder of the modules\n",
                 fake::narrow(path).c_str());
    std::exit(EXIT_FAILURE);
  }
  return module;
}

template <class Function>
Function* entry_point(const char* name) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module(), name)));
}

}  // namespace

HMODULE module() {
  static const HMODULE loaded = load();
  return loaded;
}

com::Ptr<IUnknown> make(REFCLSID clsid) {
  static const auto get_class_object =
      entry_point<decltype(DllGetClassObject)>("DllGetClassObject");
  com::Ptr<IClassFactory> factory;
  com::Ptr<IUnknown> object;
  if (SUCCEEDED(get_class_object(clsid, IID_IClassFactory, factory.put_void()))) {
    factory->CreateInstance(nullptr, IID_IUnknown, object.put_void());
  }
  return object;
}

bool is_unused() {
  static const auto can_unload_now = entry_point<decltype(DllCanUnloadNow)>("DllCanUnloadNow");
  return can_unload_now() == S_OK;
}

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

HRESULT LateBound::put(const wchar_t* name, const VARIANT& value) const {
  return invoke(name, DISPATCH_PROPERTYPUT, &value, nullptr);
}

HRESULT LateBound::put_reference(const wchar_t* name, IDispatch* object) const {
  const com::Variant reference(object);
  return invoke(name, DISPATCH_PROPERTYPUTREF, &reference.get(), nullptr);
}

HRESULT LateBound::get(const wchar_t* name, com::Variant& value) const {
  return invoke(name, DISPATCH_PROPERTYGET, nullptr, value.put());
}

HRESULT LateBound::invoke(const wchar_t* name, WORD flags, const VARIANT* argument,
                          VARIANT* result) const {
  DISPID member;
  auto* names = const_cast<wchar_t*>(name);
  const HRESULT known = object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &member);
  if (FAILED(known)) return known;
  DISPID value = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{};
  if (argument) {
    parameters = {const_cast<VARIANT*>(argument), &value, 1, 1};
  }
  EXCEPINFO exception{};
  const HRESULT done = object_->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                       result, &exception, nullptr);
  const com::Bstr owned[] = {com::Bstr::adopt(exception.bstrSource),
                             com::Bstr::adopt(exception.bstrDescription),
                             com::Bstr::adopt(exception.bstrHelpFile)};
  return done == DISP_E_EXCEPTION ? exception.scode : done;
}

Test::~Test() {
  EXPECT_EQ(host.objects_kept_by_others(), 0) << "objects of the host are still held";
  EXPECT_TRUE(is_unused()) << "objects of the server are still alive";
}

}  // namespace server
