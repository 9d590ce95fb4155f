#include "tests/host/host.h"

#include <objbase.h>

#include <utility>

namespace fake {

OfferedClass::OfferedClass(Journal& journal, REFCLSID clsid, std::string name, Maker make)
    : journal_(journal), name_(std::move(name)), make_(std::move(make)) {
  CoRegisterClassObject(clsid, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registration_);
}

STDMETHODIMP OfferedClass::QueryInterface(REFIID iid, void** out) {
  const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory);
  *out = known ? this : nullptr;
  return known ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP OfferedClass::CreateInstance(IUnknown*, REFIID iid, void** out) {
  *out = nullptr;
  if (const HRESULT result = journal_.note("new " + name_); FAILED(result)) return result;
  return com::Ptr<IDispatch>(make_())->QueryInterface(iid, out);
}

template <class Set>
void Host::offer_set(REFCLSID clsid, const std::string& name) {
  classes_.emplace_back(journal, clsid, name,
                        [this, name] { return new Persistent<Set>(journal, name); });
}

template <class Interface, class Set>
void Host::offer_sets(REFCLSID clsid, const std::string& set_name) {
  classes_.emplace_back(journal, clsid, set_name + "s", [this, set_name] {
    auto* const made = new Collection<Interface, Set>(journal, set_name);
    newest_sets_ = made;
    return made->dispatch();
  });
}

Host::Host()
    : database(new ModelDatabase(journal)),
      store(new RecordStore(journal)),
      command(new Command(journal)),
      connection(new Connection(journal)) {
  database->command = command;
  database->connection = connection;
  database->store = store;
  own_objects_ = journal.live_objects;

  offer_set<IVertex>(__uuidof(HostVertex), "Vertex");
  offer_set<ILoadSet>(__uuidof(HostLoadSet), "LoadSet");
  offer_set<IConstraintSet>(__uuidof(HostConstraintSet), "ConstraintSet");
  offer_sets<ILoadSets, ILoadSet>(__uuidof(HostLoadSets), "LoadSet");
  offer_sets<IConstraintSets, IConstraintSet>(__uuidof(HostConstraintSets), "ConstraintSet");
  offer_sets<IDesignScenarios, IDesignScenario>(__uuidof(HostDesignScenarios), "DesignScenario");
  classes_.emplace_back(journal, CLSID_Recordset, "Recordset",
                        [this] { return new Recordset(journal, "Recordset", query_rows); });
}

com::Ptr<IDispatch> Host::recordset(Row row) {
  return com::Ptr<IDispatch>(new Recordset(journal, "Row", {std::move(row)}));
}

}  // namespace fake
