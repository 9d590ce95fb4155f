#pragma once

#include <windows.h>

#include <cstdint>

namespace com {

/// A number of each thread, 0 at first. The toolchain's thread_local takes a lock and memory, which
/// is felt where every call of a member asks for it.
class ThreadValue {
 public:
  ThreadValue() : slot_(TlsAlloc()) {}
  ThreadValue(const ThreadValue&) = delete;
  ThreadValue& operator=(const ThreadValue&) = delete;
  ~ThreadValue() { TlsFree(slot_); }

  [[nodiscard]] std::intptr_t get() const {
    return reinterpret_cast<std::intptr_t>(TlsGetValue(slot_));
  }
  void set(std::intptr_t value) { TlsSetValue(slot_, reinterpret_cast<void*>(value)); }

 private:
  DWORD slot_;
};

}  // namespace com
