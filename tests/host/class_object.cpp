#include "tests/host/class_object.h"

#include <objbase.h>

#include <utility>

#include "com/ptr.h"

namespace fake {
namespace {

class Factory final : public IClassFactory {
 public:
  Factory(Journal& journal, std::string name, ClassObject::Maker make)
      : journal_(journal), name_(std::move(name)), make_(std::move(make)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    *out = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory)) {
      return E_NOINTERFACE;
    }
    AddRef();
    *out = this;
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** out) override {
    *out = nullptr;
    if (const HRESULT result = journal_.note("new " + name_); FAILED(result)) return result;
    return com::Ptr<IDispatch>(make_())->QueryInterface(iid, out);
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
  Journal& journal_;
  std::string name_;
  ClassObject::Maker make_;
  ULONG references_ = 0;
};

}  // namespace

ClassObject::ClassObject(Journal& journal, REFCLSID clsid, std::string name, Maker make) {
  const com::Ptr<IUnknown> factory(new Factory(journal, std::move(name), std::move(make)));
  CoRegisterClassObject(clsid, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                        &registration_);
}

ClassObject::ClassObject(ClassObject&& other) noexcept
    : registration_(std::exchange(other.registration_, 0)) {}

ClassObject::~ClassObject() {
  if (registration_ != 0) CoRevokeClassObject(registration_);
}

}  // namespace fake
