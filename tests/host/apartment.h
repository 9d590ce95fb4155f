#pragma once

#include <objbase.h>

#include <functional>

namespace server {

/// A thread's membership in an apartment, for as long as this lives.
class Apartment {
 public:
  explicit Apartment(DWORD model = COINIT_APARTMENTTHREADED) { CoInitializeEx(nullptr, model); }
  ~Apartment() { CoUninitialize(); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
};

inline DWORD WINAPI run_in_multithreaded_apartment(void* action) {
  const Apartment apartment(COINIT_MULTITHREADED);
  (*static_cast<std::function<void()>*>(action))();
  return 0;
}

/// Waits for the handle, and serves calls into this apartment meanwhile.
inline void serve_until(HANDLE handle) {
  DWORD signalled = 0;
  CoWaitForMultipleHandles(0, INFINITE, 1, &handle, &signalled);
}

/// Runs `action` in the multithreaded apartment, in a thread of its own, and waits for it.
inline void in_other_apartment(std::function<void()> action) {
  HANDLE thread = CreateThread(nullptr, 0, &run_in_multithreaded_apartment, &action, 0, nullptr);
  serve_until(thread);
  CloseHandle(thread);
}

}  // namespace server
