#include "com/class_factory.h"

namespace com {

STDMETHODIMP ClassFactory::QueryInterface(REFIID iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory)) return E_NOINTERFACE;
  AddRef();
  *out = static_cast<IClassFactory*>(this);
  return S_OK;
}

STDMETHODIMP_(ULONG) ClassFactory::AddRef() {
  const long count = ++references_;
  if (count == 2) Module::instance().lock();
  return static_cast<ULONG>(count);
}

STDMETHODIMP_(ULONG) ClassFactory::Release() {
  const long count = --references_;
  if (count == 1) Module::instance().unlock();
  if (count == 0) delete this;
  return static_cast<ULONG>(count);
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  // The first thing that an outer object asks for must be the inner unknown, which it keeps.
  if (outer && !IsEqualIID(iid, IID_IUnknown)) return CLASS_E_NOAGGREGATION;
  return create_(outer, iid, out);
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) {
  lock ? Module::instance().lock() : Module::instance().unlock();
  return S_OK;
}

}  // namespace com
