#pragma once

#include <orv_host.h>

#include <functional>
#include <string>
#include <vector>

#include "com/ptr.h"
#include "tests/host/ado.h"
#include "tests/host/object.h"

// The objects of the host contract: vertices, sets, their collections, the record store and the
// model database.

namespace fake {

/// A vertex or a set. One that loads itself takes the column that carries its name and "ID" as its
/// identifier.
template <class Interface>
class Persistent final : public Object<Interface> {
 public:
  Persistent(Journal& journal, const std::string& name, long id = 0)
      : Object<Interface>(journal, name), key_column_(name.begin(), name.end()), id_(id) {
    key_column_ += L"ID";
  }

  STDMETHODIMP get_ID(long* id) override {
    return this->then(this->note("ID"), [&] { *id = id_; });
  }
  STDMETHODIMP put_ID(long id) override { return id_ = id, S_OK; }
  [[nodiscard]] long id() const { return id_; }
  STDMETHODIMP LoadFromCurrentRecordsetPosition(IDispatch* database, IDispatch* rows,
                                                BSTR alias) override {
    return this->then(this->note("Load", database, rows, alias), [&] {
      const auto* const recordset = dynamic_cast<const Recordset*>(rows);
      if (!recordset) return;
      const auto key = recordset->row().find(key_column_);
      if (key != recordset->row().end()) id_ = key->second.get().lVal;
    });
  }
  STDMETHODIMP Save(IDispatch* database, VARIANT down, VARIANT up) override {
    return this->note("Save", database, down, up);
  }
  NOT_CALLED(get_IsDirty, long*)
  NOT_CALLED(Delete, IDispatch*)
  NOT_CALLED(get_SqlString, long, BSTR*)
  NOT_CALLED(FileOpHelper, IDispatch*, long, VARIANT, VARIANT)
  NOT_CALLED(get_EventObjectType, long*)
  NOT_CALLED(put_IsDirty, long)
  NOT_CALLED(get_Description, BSTR*)
  NOT_CALLED(put_Description, BSTR)

 private:
  std::wstring key_column_;
  long id_;
};

/// A collection of sets as tests see it, whatever the membership.
class Sets {
 public:
  virtual void add(long set_id) = 0;
  /// Something that is listed but cannot be had.
  virtual void add_null() = 0;
  [[nodiscard]] virtual std::vector<long> ids() const = 0;
  [[nodiscard]] virtual IDispatch* dispatch() = 0;

 protected:
  ~Sets() = default;
};

template <class Interface, class Set>
class Collection final : public Object<Interface>, public Sets {
 public:
  /// `set_name` names the sets; an "s" makes it the collection's name.
  Collection(Journal& journal, const std::string& set_name)
      : Object<Interface>(journal, set_name + "s"), set_name_(set_name) {}

  void add(long set_id) override {
    sets_.push_back(new Persistent<Set>(this->journal(), set_name_, set_id));
  }
  void add_null() override { sets_.emplace_back(); }
  std::vector<long> ids() const override {
    std::vector<long> result;
    for (const auto& set : sets_) result.push_back(static_cast<Persistent<Set>*>(set.get())->id());
    return result;
  }
  IDispatch* dispatch() override { return static_cast<Interface*>(this); }

  STDMETHODIMP Item(int index, Set** set) override {
    return this->then(this->note("Item", long{index}),
                      [&] { *set = sets_.at(static_cast<std::size_t>(index)).copy(); });
  }
  STDMETHODIMP Add(Set* set) override {
    return this->then(this->note("Add", set), [&] { sets_.push_back(set); });
  }
  STDMETHODIMP get_Count(long* count) override {
    return this->then(this->note("Count"), [&] { *count = static_cast<long>(sets_.size()); });
  }
  STDMETHODIMP Save(IDispatch* database, VARIANT down, VARIANT up) override {
    return this->note("Save", database, down, up);
  }
  NOT_CALLED(Remove, int)
  NOT_CALLED(get__NewEnum, IUnknown**)
  NOT_CALLED(Delete, IDispatch*)
  NOT_CALLED(GetIndexById, long, long*)
  NOT_CALLED(Clear)

 private:
  std::string set_name_;
  std::vector<com::Ptr<Set>> sets_;
};

class RecordStore final : public Object<IRecordStore> {
 public:
  explicit RecordStore(Journal& journal) : Object(journal, "RecordStore") {}

  /// What the store does with a record that it saves, besides noting it.
  std::function<void(IPersistentObject& record)> on_save = [](IPersistentObject&) {};

  STDMETHODIMP SaveRecord(IDispatch* record, VARIANT down, VARIANT up) override {
    return then(note("Save", record, down, up),
                [&] { on_save(*static_cast<IPersistentObject*>(record)); });
  }
  STDMETHODIMP DeleteRecord(IDispatch* record) override { return note("Delete", record); }
  STDMETHODIMP RecordsSaved(long event, VARIANT ids) override {
    return note("RecordsSaved", event, ids);
  }
  STDMETHODIMP RecordsDeleted(long event, VARIANT ids) override {
    return note("RecordsDeleted", event, ids);
  }
  STDMETHODIMP EventsEnabled(long flag) override { return note("EventsEnabled", flag); }

#define RESERVED(position) NOT_CALLED(Reserved##position)
  // clang-format off
  RESERVED(1) RESERVED(2) RESERVED(3) RESERVED(6) RESERVED(7) RESERVED(8) RESERVED(9) RESERVED(10)
  RESERVED(11) RESERVED(12) RESERVED(13) RESERVED(14) RESERVED(15) RESERVED(16) RESERVED(17)
  RESERVED(18) RESERVED(19) RESERVED(20) RESERVED(21) RESERVED(22) RESERVED(23) RESERVED(24)
  RESERVED(25) RESERVED(26) RESERVED(27) RESERVED(28) RESERVED(29) RESERVED(30)
  // clang-format on
};

class ModelDatabase final : public Object<IModelDatabase> {
 public:
  explicit ModelDatabase(Journal& journal) : Object(journal, "db") {}

  // What the accessors give out; tests take things away.
  com::Ptr<IDispatch> command;
  com::Ptr<IDispatch> connection;
  com::Ptr<IRecordStore> store;
  /// What the database answers when it is asked for its own interface.
  HRESULT interface_query = S_OK;

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    const bool refuses = FAILED(interface_query) && IsEqualIID(iid, __uuidof(IModelDatabase));
    return refuses ? interface_query : Object::QueryInterface(iid, out);
  }
  STDMETHODIMP get_Command(IDispatch** out) override {
    return then(note("Command"), [&] { *out = command.copy(); });
  }
  STDMETHODIMP get_Connection(IDispatch** out) override {
    return then(note("Connection"), [&] { *out = connection.copy(); });
  }
  STDMETHODIMP get_RecordStore(IRecordStore** out) override {
    return then(note("RecordStore"), [&] { *out = store.copy(); });
  }
  STDMETHODIMP SetModified(long flag) override { return note("SetModified", flag); }
  // clang-format off
  RESERVED(1) RESERVED(2) RESERVED(3) RESERVED(4) RESERVED(5) RESERVED(6) RESERVED(9)
  // clang-format on
#undef RESERVED
};

}  // namespace fake
