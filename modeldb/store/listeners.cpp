#include "modeldb/store/listeners.h"

#include <dispex.h>

#include <algorithm>

namespace modeldb {
namespace {

bool same_object(const Listener& left, IDispatch* right) {
  return left.object().query<IUnknown>().get() ==
         com::Ptr<IDispatch>(right).query<IUnknown>().get();
}

/// Calls a method of an object that a script engine made; false when it has none of that name.
/// Wine's VBScript knows the members of its objects by this interface alone.
bool call_script(IDispatchEx& listener, const com::Bstr& method, DISPPARAMS& parameters) {
  DISPID member = DISPID_UNKNOWN;
  if (FAILED(listener.GetDispID(method.get(), fdexNameCaseInsensitive, &member))) return false;
  listener.InvokeEx(member, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                    nullptr);
  return true;
}

void call(const com::Ptr<IDispatch>& listener, const com::Bstr& method, DISPPARAMS& parameters) {
  if (!listener) return;
  if (const auto script = listener.query<IDispatchEx>()) {
    if (call_script(*script, method, parameters)) return;
  }
  BSTR name = method.get();
  DISPID member = DISPID_UNKNOWN;
  if (FAILED(listener->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &member))) return;
  listener->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                   nullptr, nullptr);
}

}  // namespace

Listener::Listener(IDispatch* object) : object_(object), thread_(GetCurrentThreadId()) {
  com::check(CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER,
                              __uuidof(IGlobalInterfaceTable), table_.put_void()));
  com::check(table_->RegisterInterfaceInGlobal(object, __uuidof(IDispatch), &entry_));
}

Listener::~Listener() { table_->RevokeInterfaceFromGlobal(entry_); }

com::Ptr<IDispatch> Listener::object() const {
  if (GetCurrentThreadId() == thread_) return object_;
  com::Ptr<IDispatch> object;
  table_->GetInterfaceFromGlobal(entry_, __uuidof(IDispatch), object.put_void());
  return object;
}

void Listeners::add(IDispatch* listener) {
  const auto known = std::ranges::any_of(
      listeners_, [&](const auto& candidate) { return same_object(*candidate, listener); });
  if (!known) listeners_.push_back(std::make_shared<const Listener>(listener));
}

bool Listeners::remove(IDispatch* listener) {
  return std::erase_if(listeners_, [&](const auto& candidate) {
           return same_object(*candidate, listener);
         }) > 0;
}

void Listeners::notify(const wchar_t* method, long object_type, const com::Variant& subject) {
  if (depth_ == kMaximumDepth) return;
  const com::Bstr name(method);
  // Arguments stand in reverse order.
  VARIANT arguments[] = {subject.get(), com::Variant(object_type).get()};
  DISPPARAMS parameters{arguments, nullptr, std::size(arguments), 0};
  // A listener may come or go, or close the model, while it is called.
  const auto listeners = listeners_;
  ++depth_;
  for (const auto& listener : listeners) call(listener->object(), name, parameters);
  --depth_;
}

}  // namespace modeldb
