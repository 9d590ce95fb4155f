#include "modeldb/model/activation.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <mutex>

#include "com/class_table.h"
#include "com/thread_value.h"
#include "modeldb/ado/recordset_class.h"

namespace modeldb {
namespace {

class Registrations;

/// Where the class objects of an apartment are to be found.
struct Place {
  Registrations* (*get)();
  void (*set)(Registrations*);
};

/// The class objects of one apartment.
class Registrations : public RecordsetClass {
 public:
  explicit Registrations(const Place& place) : place_(place) {}

  void add_all();
  void revoke_all();

 protected:
  /// When they were revoked, or the apartment has ended: the platform then lets go of them.
  void final_release() override {
    if (place_.get() == this) place_.set(nullptr);
  }

 private:
  static constexpr std::size_t kMaximum = 16;

  void add(REFCLSID clsid, IUnknown* class_object);

  const Place& place_;
  std::size_t count_ = 0;
  std::array<DWORD, kMaximum> cookies_{};
};

// Those of the current thread's single-threaded apartment, and of the multithreaded one.
com::ThreadValue of_this_thread;
Registrations* of_multithreaded = nullptr;
com::Lock multithreaded_lock;

constexpr Place kThisThread{
    [] { return reinterpret_cast<Registrations*>(of_this_thread.get()); },
    [](Registrations* all) { of_this_thread.set(reinterpret_cast<std::intptr_t>(all)); }};
constexpr Place kMultithreaded{[] { return of_multithreaded; },
                               [](Registrations* all) { of_multithreaded = all; }};

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
  if (type != APTTYPE_MTA) return work(kThisThread);
  const std::lock_guard lock(multithreaded_lock);
  work(kMultithreaded);
}

void register_in(const Place& place) {
  if (place.get()) return;
  const auto registrations = com::make<Registrations>(place);
  registrations->add_all();
  place.set(registrations.get());
}

void revoke_in(const Place& place) {
  Registrations* const registrations = place.get();
  if (!registrations) return;
  place.set(nullptr);
  registrations->revoke_all();
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
  if (!kThisThread.get()) with_current_place(register_in);
}

}  // namespace modeldb
