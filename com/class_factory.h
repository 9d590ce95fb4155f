#pragma once

#include <unknwn.h>
#include <windows.h>

#include <atomic>

#include "com/class_table.h"

namespace com {

/// The class object of one class. It is born with the reference that its keeper, the class table,
/// holds; only references beyond that one keep the module loaded. Safe for concurrent use.
class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(ClassEntry::Creator create) : create_(create) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) override;
  STDMETHODIMP LockServer(BOOL lock) override;

 private:
  ~ClassFactory() = default;

  ClassEntry::Creator create_;
  std::atomic<long> references_ = 1;
};

}  // namespace com
