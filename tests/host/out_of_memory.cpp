#include "tests/host/out_of_memory.h"

#include <objbase.h>
#include <oleauto.h>

#include <cstdlib>
#include <string_view>

#include "tests/host/server.h"

namespace server {
namespace {

struct State {
  bool counting = false;
  std::size_t allocations = 0;
  std::size_t first = 0;
  std::size_t last = 0;
} state;

bool fails() {
  if (!state.counting) return false;
  const std::size_t number = ++state.allocations;
  return number >= state.first && number <= state.last;
}

// What the module's imports are replaced by.

void* allocate(std::size_t size) { return fails() ? nullptr : std::malloc(size); }

void* allocate_zeros(std::size_t count, std::size_t size) {
  return fails() ? nullptr : std::calloc(count, size);
}

void* reallocate(void* memory, std::size_t size) {
  return fails() ? nullptr : std::realloc(memory, size);
}

BSTR WINAPI allocate_string(const OLECHAR* text, UINT length) {
  return fails() ? nullptr : SysAllocStringLen(text, length);
}

SAFEARRAY* WINAPI allocate_array(VARTYPE type, LONG first, ULONG count) {
  return fails() ? nullptr : SafeArrayCreateVector(type, first, count);
}

HRESULT WINAPI copy(VARIANTARG* to, const VARIANTARG* from) {
  return fails() ? E_OUTOFMEMORY : VariantCopy(to, const_cast<VARIANTARG*>(from));
}

HRESULT WINAPI make_marshaler(IUnknown* outer, IUnknown** marshaler) {
  return fails() ? E_OUTOFMEMORY : CoCreateFreeThreadedMarshaler(outer, marshaler);
}

struct Replacement {
  std::string_view name;
  void* function;
  void* original = nullptr;
};

template <class Function>
void* address(Function* function) {
  return reinterpret_cast<void*>(function);
}

Replacement replacements[] = {
    {"malloc", address(allocate)},
    {"calloc", address(allocate_zeros)},
    {"realloc", address(reallocate)},
    {"SysAllocStringLen", address(allocate_string)},
    {"SafeArrayCreateVector", address(allocate_array)},
    {"VariantCopy", address(copy)},
    {"CoCreateFreeThreadedMarshaler", address(make_marshaler)},
};

/// Calls `visit` with the name and the place of the address of everything that the module imports.
template <class Visit>
void for_each_import(Visit&& visit) {
  const auto base = reinterpret_cast<ULONG_PTR>(module().handle());
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* const headers =
      reinterpret_cast<const IMAGE_NT_HEADERS*>(base + static_cast<ULONG_PTR>(dos->e_lfanew));
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* library =
      reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
  for (; library->Name != 0; ++library) {
    auto* name = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
    auto* place = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++place) {
      if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
      const auto* const import =
          reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
      visit(std::string_view(reinterpret_cast<const char*>(import->Name)),
            reinterpret_cast<void**>(&place->u1.Function));
    }
  }
}

void write_address(void** place, void* value) {
  DWORD protection;
  VirtualProtect(place, sizeof *place, PAGE_READWRITE, &protection);
  *place = value;
  VirtualProtect(place, sizeof *place, protection, &protection);
}

/// The platform keeps freed strings for reuse, which would look like leaks. What turns that off is
/// missing from the 32-bit import library.
void keep_no_freed_strings() {
  static const auto set_no_cache = reinterpret_cast<void(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"oleaut32"), "SetOaNoCache")));
  set_no_cache();
}

}  // namespace

OutOfMemory::OutOfMemory(std::size_t first, std::size_t last) {
  keep_no_freed_strings();
  state = {.first = first, .last = last};
  for_each_import([](std::string_view name, void** place) {
    for (Replacement& replacement : replacements) {
      if (replacement.name != name) continue;
      replacement.original = *place;
      write_address(place, replacement.function);
    }
  });
}

OutOfMemory::~OutOfMemory() {
  for_each_import([](std::string_view, void** place) {
    for (const Replacement& replacement : replacements) {
      if (*place == replacement.function) write_address(place, replacement.original);
    }
  });
}

bool OutOfMemory::ran_out() const { return state.allocations >= state.first; }
void OutOfMemory::start() { state.counting = true; }
void OutOfMemory::stop() { state.counting = false; }

}  // namespace server
