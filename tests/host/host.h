#pragma once

#include <string>
#include <vector>

#include "tests/host/class_object.h"
#include "tests/host/model.h"

namespace fake {

/// A host application: while it lives, the server finds the host's classes and ADO's recordset in
/// this process, and every call of the server stands in the journal.
class Host {
 public:
  Host();
  ~Host();
  Host(const Host&) = delete;

  Journal journal;
  /// The rows that the queries of the server yield.
  std::vector<Row> query_rows;
  com::Ptr<ModelDatabase> database;
  com::Ptr<RecordStore> store;
  com::Ptr<IDispatch> command;
  com::Ptr<IDispatch> connection;

  /// A recordset such as a host positions for a record to load itself from.
  [[nodiscard]] com::Ptr<IDispatch> recordset(Row row);

  /// The collection of sets that was made last; it must still be alive.
  [[nodiscard]] Sets& newest_sets() const { return *newest_sets_; }

  /// Objects of the host that somebody other than the host keeps alive.
  [[nodiscard]] long objects_kept_by_others() const { return journal.live_objects - own_objects_; }

 private:
  template <class Set>
  void offer_set(REFCLSID clsid, const std::string& name);
  template <class Interface, class Set>
  void offer_sets(REFCLSID clsid, const std::string& set_name);

  std::vector<ClassObject> classes_;
  Sets* newest_sets_ = nullptr;
  long own_objects_ = 0;
};

}  // namespace fake
