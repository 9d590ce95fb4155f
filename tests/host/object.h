#pragma once

#include <gtest/gtest.h>
#include <oaidl.h>

#include <string>
#include <utility>

#include "tests/host/journal.h"

// A member that the server has no business calling.
#define NOT_CALLED(name, ...) \
  STDMETHODIMP name(__VA_ARGS__) override { return this->not_called(#name); }

namespace fake {

/// An object of the fake host behind one dual interface: counted, named in the journal, and
/// answering for error information. Others are further interfaces that the same members serve.
///
/// Its members note themselves with their arguments, and fail when the journal says so:
///   return then(note("Item", index), [&] { *item = items_[index].copy(); });
template <class Interface, class... Others>
class Object : public Interface, public ISupportErrorInfo {
 public:
  Object(Journal& journal, std::string name) : journal_(journal), name_(std::move(name)) {
    ++journal_.live_objects;
    journal_.name(static_cast<Interface*>(this), name_);
  }
  Object(const Object&) = delete;
  virtual ~Object() {
    journal_.forget(static_cast<Interface*>(this));
    --journal_.live_objects;
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    *out = nullptr;
    if (IsEqualIID(iid, __uuidof(ISupportErrorInfo))) {
      *out = static_cast<ISupportErrorInfo*>(this);
    } else if (IsEqualIID(iid, __uuidof(IUnknown)) || IsEqualIID(iid, __uuidof(IDispatch)) ||
               is_own(iid)) {
      *out = static_cast<Interface*>(this);
    } else {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
    return journal_.vouches && is_own(iid) ? S_OK : S_FALSE;
  }

  NOT_CALLED(GetTypeInfoCount, UINT*)
  NOT_CALLED(GetTypeInfo, UINT, LCID, ITypeInfo**)
  NOT_CALLED(GetIDsOfNames, REFIID, LPOLESTR*, UINT, LCID, DISPID*)
  NOT_CALLED(Invoke, DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*)

 protected:
  [[nodiscard]] Journal& journal() const { return journal_; }
  template <class... Arguments>
  HRESULT note(const char* member, const Arguments&... arguments) {
    std::string line = name_ + "." + member;
    ((line += ' ' + journal_.show(arguments)), ...);
    return journal_.note(line);
  }
  /// What a member does when it does not fail.
  template <class Action>
  static HRESULT then(HRESULT noted, Action&& action) {
    if (SUCCEEDED(noted)) action();
    return noted;
  }

  HRESULT not_called(const char* member) {
    ADD_FAILURE() << name_ << '.' << member << " was called";
    return E_NOTIMPL;
  }

 private:
  static bool is_own(REFIID iid) {
    return IsEqualIID(iid, __uuidof(Interface)) || (IsEqualIID(iid, __uuidof(Others)) || ...);
  }

  Journal& journal_;
  std::string name_;
  ULONG references_ = 0;
};

}  // namespace fake
