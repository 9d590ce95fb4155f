#pragma once

#include <oaidl.h>
#include <windows.h>

#include "com/bstr.h"
#include "com/error.h"

namespace com {

/// The attributes of a described type, held for as long as this lives.
class TypeAttributes {
 public:
  explicit TypeAttributes(Ptr<ITypeInfo> info) : info_(std::move(info)) {
    check(info_->GetTypeAttr(&attributes_));
  }
  TypeAttributes(const TypeAttributes&) = delete;
  TypeAttributes& operator=(const TypeAttributes&) = delete;
  ~TypeAttributes() { info_->ReleaseTypeAttr(attributes_); }

  const TYPEATTR* operator->() const { return attributes_; }

 private:
  Ptr<ITypeInfo> info_;
  TYPEATTR* attributes_ = nullptr;
};

/// One function of a described interface, held for as long as this lives.
class FunctionDescription {
 public:
  FunctionDescription(Ptr<ITypeInfo> info, UINT index) : info_(std::move(info)) {
    check(info_->GetFuncDesc(index, &description_));
  }
  FunctionDescription(const FunctionDescription&) = delete;
  FunctionDescription& operator=(const FunctionDescription&) = delete;
  ~FunctionDescription() { info_->ReleaseFuncDesc(description_); }

  const FUNCDESC* operator->() const { return description_; }

 private:
  Ptr<ITypeInfo> info_;
  FUNCDESC* description_ = nullptr;
};

/// The name of a described type, or of one of its members.
inline Bstr name_of(const Ptr<ITypeInfo>& info, MEMBERID member = MEMBERID_NIL) {
  Bstr name;
  check(info->GetDocumentation(member, name.put(), nullptr, nullptr, nullptr));
  return name;
}

/// True when the described interface has a member of this name.
inline bool has_member(const Ptr<ITypeInfo>& info, const wchar_t* name) {
  auto* text = const_cast<LPOLESTR>(name);
  MEMBERID id = MEMBERID_NIL;
  return SUCCEEDED(info->GetIDsOfNames(&text, 1, &id));
}

}  // namespace com
