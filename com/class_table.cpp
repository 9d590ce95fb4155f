#include "com/class_table.h"

#include <algorithm>

#include "com/class_factory.h"

namespace com {
namespace {

std::span<ClassEntry> attached;

IUnknown* class_object_of(ClassEntry& entry) {
  if (IUnknown* const made = entry.class_object.load(std::memory_order_acquire)) return made;
  const std::lock_guard lock(Module::instance().shared_state_lock());
  if (IUnknown* const made = entry.class_object.load(std::memory_order_relaxed)) return made;
  auto* const made = new ClassFactory(entry.create);
  entry.class_object.store(made, std::memory_order_release);
  return made;
}

}  // namespace

std::span<ClassEntry> module_classes() { return attached; }

void attach_classes(std::span<ClassEntry> table) { attached = table; }

HRESULT get_class_object(std::span<ClassEntry> table, REFCLSID clsid, REFIID iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (!Module::instance().is_attached()) return E_UNEXPECTED;
  const auto entry = std::ranges::find_if(
      table, [&](const ClassEntry& candidate) { return IsEqualCLSID(candidate.clsid, clsid); });
  if (entry == table.end()) return CLASS_E_CLASSNOTAVAILABLE;
  return boundary([&] { return class_object_of(*entry)->QueryInterface(iid, out); });
}

void release_class_objects(std::span<ClassEntry> table) {
  for (ClassEntry& entry : table) {
    if (IUnknown* const made = entry.class_object.exchange(nullptr)) made->Release();
  }
}

}  // namespace com
