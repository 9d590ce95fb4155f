// Properties reached by name, against the platform's own Scripting.Dictionary.

#include "bench/model.h"
#include "bench/sections.h"

namespace bench {
namespace {

constexpr long kCalls = 2'000;  // a round

com::Ptr<IDispatch> create(const wchar_t* progid) {
  CLSID clsid;
  com::check(CLSIDFromProgID(progid, &clsid));
  return Factory<IDispatch>(clsid).create();
}

DISPID id_of(IDispatch& object, const wchar_t* member) {
  auto* name = const_cast<LPOLESTR>(member);
  DISPID id = DISPID_UNKNOWN;
  com::check(object.GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id));
  return id;
}

com::Variant get(IDispatch& object, DISPID member) {
  DISPPARAMS none{};
  com::Variant value;
  com::check(object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                           value.put(), nullptr, nullptr));
  return value;
}

void put(IDispatch& object, DISPID member, const com::Variant& value) {
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{com::mutable_address(value), &named, 1, 1};
  com::check(object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters,
                           nullptr, nullptr, nullptr));
}

}  // namespace

void run_late_binding(const Options&) {
  const auto force = create(L"Orv_Node.NodalForce");
  const auto dictionary = create(L"Scripting.Dictionary");
  IDispatch& ours = *force.get();
  IDispatch& theirs = *dictionary.get();
  const com::Variant magnitude(250.0);
  const com::Variant mode(1);

  print_heading("Late-bound property of a force / Scripting.Dictionary");
  compare("get Magnitude / Count, by name", 1,
          repeat(kCalls, [&] { get(ours, id_of(ours, L"Magnitude")); }),
          repeat(kCalls, [&] { get(theirs, id_of(theirs, L"Count")); }));
  compare("put Magnitude / CompareMode, by name", 1,
          repeat(kCalls, [&] { put(ours, id_of(ours, L"Magnitude"), magnitude); }),
          repeat(kCalls, [&] { put(theirs, id_of(theirs, L"CompareMode"), mode); }));

  // The two halves of these.
  const DISPID magnitude_id = id_of(ours, L"Magnitude");
  const DISPID count_id = id_of(theirs, L"Count");
  const DISPID mode_id = id_of(theirs, L"CompareMode");
  compare("GetIDsOfNames", kNothingWanted, repeat(kCalls, [&] { id_of(ours, L"Magnitude"); }),
          repeat(kCalls, [&] { id_of(theirs, L"CompareMode"); }));
  compare("Invoke, get", kNothingWanted, repeat(kCalls, [&] { get(ours, magnitude_id); }),
          repeat(kCalls, [&] { get(theirs, count_id); }));
  compare("Invoke, put", kNothingWanted,
          repeat(kCalls, [&] { put(ours, magnitude_id, magnitude); }),
          repeat(kCalls, [&] { put(theirs, mode_id, mode); }));
}

}  // namespace bench
