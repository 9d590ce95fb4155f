// A module with no classes, only what every module of ours has of the compiler's runtime: the
// measure for what that runtime leaves behind even when it is told to free what it can.

#include <windows.h>

namespace __gnu_cxx {
// Of GCC's runtime, which declares it in no header.
void __freeres();
}  // namespace __gnu_cxx

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_DETACH) __gnu_cxx::__freeres();
  return TRUE;
}
