#include "collections/batch.h"

namespace orv {
namespace {

// The record store's switch for notification record by record.
constexpr long kSuspend = 0;
constexpr long kResume = -1;

}  // namespace

Batch::Batch(IDispatch* argument) {
  const auto database = model_database(argument);
  // What an accessor fails to give is missed only where it is needed.
  database->get_RecordStore(store_.put());
  com::Ptr<IDispatch> connection;
  database->get_Connection(connection.put());
  connection_ = connection.query<Connection15>();
}

void Batch::begin() const {
  call(store_, [](IRecordStore& store) { return store.EventsEnabled(kSuspend); });
  execute(begin_);
}

void Batch::commit() const { execute(commit_); }

void Batch::resume_events() const {
  call(store_, [](IRecordStore& store) { return store.EventsEnabled(kResume); });
}

void Batch::notify_saved(long event, const com::Variant& ids) const {
  call(store_, [&](IRecordStore& store) { return store.RecordsSaved(event, ids); });
}

void Batch::notify_deleted(long event, const com::Variant& ids) const {
  call(store_, [&](IRecordStore& store) { return store.RecordsDeleted(event, ids); });
}

void Batch::execute(const com::Bstr& statement) const {
  com::Ptr<_Recordset> ignored;
  call(connection_, [&](Connection15& connection) {
    return connection.Execute(statement.get(), nullptr, adExecuteNoRecords, ignored.put());
  });
}

}  // namespace orv
