#include "modeldb/model/activation.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <mutex>

#include "com/class_table.h"
#include "modeldb/ado/recordset_class.h"

namespace modeldb {
namespace {

/// The class objects of one apartment.
class Registrations : public RecordsetClass {
 public:
  explicit Registrations(Registrations*& place) : place_(place) {}

  void add_all();
  void revoke_all();

 protected:
  /// When they were revoked, or the apartment has ended: the platform then lets go of them.
  void final_release() override {
    if (place_ == this) place_ = nullptr;
  }

 private:
  static constexpr std::size_t kMaximum = 16;

  void add(REFCLSID clsid, IUnknown* class_object);

  Registrations*& place_;
  std::size_t count_ = 0;
  std::array<DWORD, kMaximum> cookies_{};
};

// Those of the current thread's single-threaded apartment, and of the multithreaded one. Without
// destructor: a thread may outlive the module.
thread_local Registrations* of_this_thread = nullptr;
Registrations* of_multithreaded = nullptr;
com::Lock multithreaded_lock;

std::atomic<int> models = 0;

void Registrations::add_all() {
  try {
    const auto classes = com::module_classes();
    for (const com::ClassEntry& entry : classes) {
      com::Ptr<IUnknown> class_object;
      com::check(
          com::get_class_object(classes, entry.clsid, IID_IUnknown, class_object.put_void()));
      add(entry.clsid, class_object.get());
    }
    add(CLSID_Recordset, static_cast<IClassFactory*>(this));
  } catch (...) {
    revoke_all();
    throw;
  }
}

void Registrations::add(REFCLSID clsid, IUnknown* class_object) {
  DWORD cookie = 0;
  com::check(CoRegisterClassObject(clsid, class_object, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                   &cookie));
  // Without a cookie somebody else has registered the class, and goes on serving it.
  if (cookie) cookies_.at(count_++) = cookie;
}

void Registrations::revoke_all() {
  const com::Ptr<IUnknown> alive(static_cast<IClassFactory*>(this));
  while (count_ > 0) CoRevokeClassObject(cookies_[--count_]);
}

/// Calls `work` with the place of the current apartment's registrations; not at all on a thread
/// that is in none.
template <class Work>
void with_current_place(Work work) {
  APTTYPE type{};
  APTTYPEQUALIFIER qualifier{};
  if (FAILED(CoGetApartmentType(&type, &qualifier))) return;
  if (type != APTTYPE_MTA) return work(of_this_thread);
  const std::lock_guard lock(multithreaded_lock);
  work(of_multithreaded);
}

void register_in(Registrations*& place) {
  if (place) return;
  const auto registrations = com::make<Registrations>(place);
  registrations->add_all();
  place = registrations.get();
}

void revoke_in(Registrations*& place) {
  if (Registrations* const registrations = std::exchange(place, nullptr)) {
    registrations->revoke_all();
  }
}

}  // namespace

Activation::Activation() {
  in_this_apartment();
  ++models;
}

Activation::~Activation() {
  if (--models == 0) with_current_place(revoke_in);
}

void Activation::in_this_apartment() {
  if (!of_this_thread) with_current_place(register_in);
}

}  // namespace modeldb
