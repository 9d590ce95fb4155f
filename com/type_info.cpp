#include "com/type_info.h"

#include <mutex>
#include <utility>

#include "com/error.h"
#include "com/module.h"
#include "com/type_description.h"

namespace com {
namespace {

Ptr<ITypeInfo> default_interface(ITypeInfo* type_class) {
  HREFTYPE reference = 0;
  check(type_class->GetRefTypeOfImplType(0, &reference));
  Ptr<ITypeInfo> result;
  check(type_class->GetRefTypeInfo(reference, result.put()));
  return result;
}

/// The library's class whose first interface, which is its default, is `iid`.
Ptr<ITypeInfo> class_of(const Ptr<ITypeLib>& library, REFIID iid) {
  for (UINT index = 0; index < library->GetTypeInfoCount(); ++index) {
    TYPEKIND kind = TKIND_MAX;
    check(library->GetTypeInfoType(index, &kind));
    if (kind != TKIND_COCLASS) continue;
    Ptr<ITypeInfo> found;
    check(library->GetTypeInfo(index, found.put()));
    if (IsEqualIID(TypeAttributes(default_interface(found.get()))->guid, iid)) return found;
  }
  throw Error(TYPE_E_ELEMENTNOTFOUND);
}

}  // namespace

Ptr<ITypeLib> load_type_library(const TypeLibrary& library, LCID locale) {
  Ptr<ITypeLib> result;
  if (SUCCEEDED(LoadRegTypeLib(library.id, library.major, library.minor, locale, result.put()))) {
    return result;
  }
  check(LoadTypeLibEx(Module::instance().path().c_str(), REGKIND_NONE, result.put()));
  return result;
}

Ptr<ITypeInfo> TypeInfo::find(LCID locale) const {
  Ptr<ITypeInfo> info;
  Ptr<ITypeLib> library;
  const TypeLibrary::Successor& successor = library_.successor;
  if (successor.id &&
      FAILED(LoadRegTypeLib(library_.id, library_.major, library_.minor, locale, library.put())) &&
      SUCCEEDED(
          LoadRegTypeLib(*successor.id, successor.major, successor.minor, locale, library.put()))) {
    check(library->GetTypeInfoOfGuid(successor.identifier(iid_), info.put()));
    return info;
  }
  library = load_type_library(library_, locale);
  if (of_ == Of::kClass) return class_of(library, iid_);
  check(library->GetTypeInfoOfGuid(iid_, info.put()));
  return info;
}

TypeInfo::Loaded& TypeInfo::load(LCID locale) {
  if (Loaded* const loaded = loaded_.load(std::memory_order_acquire)) return *loaded;
  const std::lock_guard lock(Module::instance().shared_state_lock());
  if (Loaded* const loaded = loaded_.load(std::memory_order_relaxed)) return *loaded;
  auto* const loaded = new Loaded{find(locale), {}};
  loaded_before_ = std::exchange(loaded_last_, this);
  loaded_.store(loaded, std::memory_order_release);
  return *loaded;
}

HRESULT TypeInfo::ids_of_names(LPOLESTR* names, UINT count, LCID locale, DISPID* ids) {
  Loaded& loaded = load(locale);
  // Further names are those of arguments; whatever is unusual is the platform's.
  if (count != 1 || !names || !names[0] || !ids) {
    return loaded.info->GetIDsOfNames(names, count, ids);
  }
  const std::lock_guard lock(Module::instance().shared_state_lock());
  if (const auto id = loaded.names.find(names[0])) {
    *ids = *id;
    return S_OK;
  }
  const HRESULT result = loaded.info->GetIDsOfNames(names, count, ids);
  if (result == S_OK) loaded.names.remember(names[0], *ids);
  return result;
}

void TypeInfo::release_all() {
  for (TypeInfo* each = std::exchange(loaded_last_, nullptr); each; each = each->loaded_before_) {
    delete each->loaded_.exchange(nullptr);
  }
}

}  // namespace com
