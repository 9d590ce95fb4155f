#include "tests/host/host.h"

namespace fake {

template <class Set>
void Host::offer_set(REFCLSID clsid, const std::string& name) {
  classes_.emplace_back(journal, clsid, name, [this, name]() -> IDispatch* {
    return new Persistent<Set>(journal, name);
  });
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
  classes_.emplace_back(journal, CLSID_Recordset, "Recordset", [this]() -> IDispatch* {
    return new Recordset(journal, "Recordset", query_rows);
  });
}

Host::~Host() { SetErrorInfo(0, nullptr); }

com::Ptr<IDispatch> Host::recordset(Row row) {
  return com::Ptr<IDispatch>(new Recordset(journal, "Row", {std::move(row)}));
}

}  // namespace fake
