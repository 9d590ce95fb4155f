#include "modeldb/objects/activation.h"

#include <windows.h>

#include <array>

#include "modeldb/classes.h"

namespace modeldb {
namespace {

/// The class objects registered for the apartment of the calling thread. No destructor: the thread
/// may outlive the module.
struct Registrations {
  static constexpr std::size_t kMaximum = 16;

  int uses = 0;
  std::size_t count = 0;
  std::array<DWORD, kMaximum> cookies{};

  void add(std::span<com::ClassEntry> table);
  void revoke_all();
};

thread_local Registrations registered;

void Registrations::add(std::span<com::ClassEntry> table) {
  for (const com::ClassEntry& entry : table) {
    com::Ptr<IUnknown> class_object;
    com::check(com::get_class_object(table, entry.clsid, IID_IUnknown, class_object.put_void()));
    DWORD cookie = 0;
    com::check(CoRegisterClassObject(entry.clsid, class_object.get(), CLSCTX_INPROC_SERVER,
                                     REGCLS_MULTIPLEUSE, &cookie));
    // Without a cookie somebody else has registered the class, and goes on serving it.
    if (cookie) cookies.at(count++) = cookie;
  }
}

void Registrations::revoke_all() {
  while (count > 0) CoRevokeClassObject(cookies[--count]);
}

}  // namespace

Activation::Activation() {
  if (registered.uses == 0) {
    try {
      registered.add(classes());
      registered.add(ado_classes());
    } catch (...) {
      registered.revoke_all();
      throw;
    }
  }
  ++registered.uses;
}

Activation::~Activation() {
  if (--registered.uses == 0) registered.revoke_all();
}

}  // namespace modeldb
