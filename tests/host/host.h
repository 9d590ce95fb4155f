#pragma once

#include <functional>
#include <list>
#include <string>
#include <vector>

#include "tests/host/model.h"

namespace fake {

/// A class that this process offers for as long as the value lives. Each creation is noted in the
/// journal as "new <name>", and fails when the journal says so. It is its own class object.
class OfferedClass final : public IClassFactory {
 public:
  /// Makes an object that nobody holds yet.
  using Maker = std::function<IDispatch*()>;

  OfferedClass(Journal& journal, REFCLSID clsid, std::string name, Maker make);
  OfferedClass(const OfferedClass&) = delete;
  ~OfferedClass() { CoRevokeClassObject(registration_); }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  // Not counted: the host outlives whoever asks for the class object.
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) override;
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
  Journal& journal_;
  std::string name_;
  Maker make_;
  DWORD registration_ = 0;
};

/// A host application: while it lives, the server finds the host's classes and ADO's recordset in
/// this process, and every call of the server stands in the journal.
class Host {
 public:
  Host();
  ~Host() { SetErrorInfo(0, nullptr); }
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

  std::list<OfferedClass> classes_;
  Sets* newest_sets_ = nullptr;
  long own_objects_ = 0;
};

}  // namespace fake
