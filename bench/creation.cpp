// Creation of a record against the sum of what it must create.

#include <memory>

#include "bench/model.h"
#include "bench/sections.h"
#include "com/object.h"
#include "kinds/structural/force.h"

namespace bench {
namespace {

constexpr long kObjects = 2'000;  // a round

/// What a record is made of besides the host's objects.
void create_own_parts() {
  const auto memory = std::make_unique<std::byte[]>(sizeof(com::Instance<orv::CNodalForce>));
  const com::Bstr description{std::wstring_view()};
  const com::Bstr saved_description{std::wstring_view()};
  com::Ptr<IUnknown> marshaler;
  com::check(CoCreateFreeThreadedMarshaler(nullptr, marshaler.put()));
}

/// As quickly as the platform lets who does not hold on to the class object, and with it to the
/// module that it is in.
void create_by_class_object(REFCLSID clsid) {
  com::Ptr<IClassFactory> class_object;
  com::check(CoGetClassObject(clsid, CLSCTX_ALL, nullptr, __uuidof(IClassFactory),
                              class_object.put_void()));
  com::Ptr<IUnknown> object;
  com::check(class_object->CreateInstance(nullptr, __uuidof(IUnknown), object.put_void()));
}

void create_anew(REFCLSID clsid) {
  com::Ptr<IUnknown> object;
  com::check(CoCreateInstance(clsid, nullptr, CLSCTX_ALL, __uuidof(IUnknown), object.put_void()));
}

}  // namespace

void run_creation(const Options&) {
  const ScratchFile file;
  const Model model(file);
  const Factory<INodalForce> forces(__uuidof(NodalForce));

  const Factory<IVertex> vertices(__uuidof(HostVertex));
  const Factory<ILoadSets> load_sets(__uuidof(HostLoadSets));

  const Samples samples("creation", 21,
                        {repeat(kObjects, [&] { (void)forces.create(); }),
                         repeat(kObjects,
                                [] {
                                  create_own_parts();
                                  create_by_class_object(__uuidof(HostVertex));
                                  create_by_class_object(__uuidof(HostLoadSets));
                                }),
                         repeat(kObjects,
                                [&] {
                                  create_own_parts();
                                  (void)vertices.create();
                                  (void)load_sets.create();
                                }),
                         repeat(kObjects, [] {
                           create_own_parts();
                           create_anew(__uuidof(HostVertex));
                           create_anew(__uuidof(HostLoadSets));
                         })});
  print_heading("Creation and release of a force");
  print_comparison("force / its parts, by CoGetClassObject", samples, 1, 1.3);
  print_comparison("force / its parts, from class objects at hand", samples, 2);
  print_comparison("force / its parts, by CoCreateInstance", samples, 3);
}

}  // namespace bench
