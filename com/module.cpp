#include "com/module.h"

#include "com/type_info.h"

namespace __gnu_cxx {
// Of GCC's runtime, which declares it in no header: frees the memory that is kept for exceptions
// when there is no other.
void __freeres();
}  // namespace __gnu_cxx

namespace com {

Module& Module::instance() {
  static constinit Module module;
  return module;
}

void Module::detach() {
  TypeInfo::release_all();
  __gnu_cxx::__freeres();
}

std::wstring Module::path() const {
  // The platform tells truncation only by a full buffer.
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(handle_, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace com
