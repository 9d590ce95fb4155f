// A module with no classes, only what every module of ours has of the compiler's runtime: the
// measure for what that runtime leaves behind.

#include "com/module.h"

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_DETACH) com::Module::instance().detach();
  return TRUE;
}
