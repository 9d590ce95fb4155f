#pragma once

#include <objbase.h>

#include <functional>

namespace server {

inline DWORD WINAPI run_in_multithreaded_apartment(void* action) {
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  (*static_cast<std::function<void()>*>(action))();
  CoUninitialize();
  return 0;
}

/// Runs `action` in the multithreaded apartment, in a thread of its own, and waits for it. Calls
/// from there into this apartment are served meanwhile.
inline void in_other_apartment(std::function<void()> action) {
  HANDLE thread = CreateThread(nullptr, 0, &run_in_multithreaded_apartment, &action, 0, nullptr);
  DWORD signalled = 0;
  CoWaitForMultipleHandles(0, INFINITE, 1, &thread, &signalled);
  CloseHandle(thread);
}

}  // namespace server
