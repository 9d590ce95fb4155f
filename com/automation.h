#pragma once

#include <oaidl.h>
#include <ocidl.h>

#include "com/object.h"
#include "com/type_info.h"

namespace com {

/// An object reached through one dual interface that a type library describes: IDispatch from that
/// library, and the answer for error information. Further interfaces follow.
template <class Interface, const TypeLibrary& library, class... Further>
class Dispatch : public Object<Interface, ISupportErrorInfo, Further...> {
 public:
  // IDispatch
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    if (!count) return E_POINTER;
    *count = 1;
    return S_OK;
  }

  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** out) override {
    if (index != 0) return TYPE_E_ELEMENTNOTFOUND;
    return copy_out(interface_info_, locale, out);
  }

  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale,
                             DISPID* ids) override {
    return boundary([&] { return interface_info_.ids_of_names(names, count, locale, ids); });
  }

  STDMETHODIMP Invoke(DISPID member, REFIID, LCID locale, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) override {
    // Wine's JScript asks for the enumerator, which is a property, as a method only.
    if (member == DISPID_NEWENUM) flags |= DISPATCH_PROPERTYGET;
    return boundary([&] {
      return interface_info_.get(locale)->Invoke(static_cast<Interface*>(this), member, flags,
                                                 parameters, result, exception, bad_argument);
    });
  }

  // ISupportErrorInfo
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
    return IsEqualIID(iid, __uuidof(Interface)) ? S_OK : S_FALSE;
  }

 protected:
  static HRESULT copy_out(TypeInfo& info, LCID locale, ITypeInfo** out) {
    if (!out) return E_POINTER;
    *out = nullptr;
    return boundary([&] { *out = Ptr<ITypeInfo>(info.get(locale)).detach(); });
  }

 private:
  static inline TypeInfo interface_info_{library, __uuidof(Interface)};
};

/// A dispatch object that also tells the type information of its class: the class of the library
/// whose default interface is Interface.
template <class Interface, const TypeLibrary& library, class... Further>
class DispatchObject : public Dispatch<Interface, library, IProvideClassInfo2, Further...> {
 public:
  // IProvideClassInfo2. The object names its own dispatch interface as its default source
  // interface although it fires no events: hosts look its interface up this way.
  STDMETHODIMP GetClassInfo(ITypeInfo** out) override {
    return this->copy_out(class_info_, LOCALE_NEUTRAL, out);
  }

  STDMETHODIMP GetGUID(DWORD kind, GUID* out) override {
    if (!out) return E_POINTER;
    *out = GUID_NULL;
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
    *out = __uuidof(Interface);
    return S_OK;
  }

 private:
  static inline TypeInfo class_info_{library, __uuidof(Interface), TypeInfo::Of::kClass};
};

/// A dispatch object that may be handed to another apartment of the process as a direct pointer:
/// it aggregates the platform's free-threaded marshaler.
template <class Interface, const TypeLibrary& library, class... Further>
class AutomationObject : public DispatchObject<Interface, library, Further...> {
 protected:
  void final_construct() override {
    check(CoCreateFreeThreadedMarshaler(this->controlling_unknown(), marshaler_.put()));
  }

  void final_release() override { marshaler_.reset(); }

  HRESULT query_other(REFIID iid, void** out) override {
    if (!IsEqualIID(iid, IID_IMarshal)) {
      *out = nullptr;
      return E_NOINTERFACE;
    }
    return marshaler_->QueryInterface(iid, out);
  }

 private:
  Ptr<IUnknown> marshaler_;
};

}  // namespace com
