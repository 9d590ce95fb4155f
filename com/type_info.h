#pragma once

#include <oaidl.h>
#include <windows.h>

#include <atomic>

#include "com/member_names.h"
#include "com/ptr.h"

namespace com {

/// The type library that describes a module's classes and interfaces.
struct TypeLibrary {
  GUID id;
  WORD major;
  WORD minor;
  LCID locale;
  /// Where it is not registered: a library of the same interfaces under identifiers of its own.
  struct Successor {
    const GUID* id = nullptr;
    WORD major = 0;
    WORD minor = 0;
    GUID (*identifier)(REFGUID) = nullptr;  // of an interface, by that in the library itself
  } successor = {};
};

/// Type information of one interface, or of the class whose default interface it is: loaded on
/// first use, kept for the module's life. Safe for concurrent use.
class TypeInfo {
 public:
  enum class Of { kInterface, kClass };

  constexpr TypeInfo(const TypeLibrary& library, REFIID iid, Of of = Of::kInterface)
      : library_(library), iid_(iid), of_(of) {}

  /// Borrowed type information, from the registered library, or else from a registered successor,
  /// or else from the module's own copy.
  /// Raises the platform's failure when neither has it.
  ITypeInfo* get(LCID locale) { return load(locale).info.get(); }

  /// As ITypeInfo::GetIDsOfNames; raises as above.
  HRESULT ids_of_names(LPOLESTR* names, UINT count, LCID locale, DISPID* ids);

  /// Releases all that was loaded; for the module's detachment only.
  static void release_all();

 private:
  struct Loaded {
    Ptr<ITypeInfo> info;
    MemberNames names;  // under the module's lock
  };

  Loaded& load(LCID locale);
  [[nodiscard]] Ptr<ITypeInfo> find(LCID locale) const;

  const TypeLibrary& library_;
  const IID& iid_;
  const Of of_;
  std::atomic<Loaded*> loaded_ = nullptr;
  // All that are loaded, each naming the one loaded before it.
  TypeInfo* loaded_before_ = nullptr;
  static inline TypeInfo* loaded_last_ = nullptr;
};

/// The library as registered, or else the one that the module carries as resource 1. A module that
/// is activated without registration has only the latter.
Ptr<ITypeLib> load_type_library(const TypeLibrary& library, LCID locale);

}  // namespace com
