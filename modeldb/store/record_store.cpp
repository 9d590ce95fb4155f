#include "modeldb/store/record_store.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "modeldb/ado/model_call.h"
#include "modeldb/base/failure.h"
#include "modeldb/schema/definition.h"
#include "modeldb/schema/host_kinds.h"
#include "modeldb/store/refusal.h"
#include "modeldb/store/script_array.h"

namespace modeldb {
namespace {

/// The keys of a batch, in an array that VBScript can index.
com::Variant for_scripts(const VARIANT& ids) {
  if (ids.vt != (VT_ARRAY | VT_I4) || SafeArrayGetDim(ids.parray) != 1) return com::Variant(ids);
  return script_array(
      {static_cast<const long*>(ids.parray->pvData), ids.parray->rgsabound[0].cElements});
}

/// Whether the saved values are those of a row: every saved record stands on a vertex.
bool was_saved(const Kind& kind, const std::vector<Literal>& saved) {
  const auto column = std::ranges::find(kind.columns, vertex_kind().key, &Column::name);
  const auto* const vertex = std::get_if<std::int64_t>(&saved[column - kind.columns.begin()]);
  return !vertex || *vertex != 0;
}

}  // namespace

RecordStore::RecordStore(std::shared_ptr<Model> model, IModelDatabase* owner,
                         std::shared_ptr<RevertedRows> reverted)
    : turns_(model->database()->turns()),
      model_(std::move(model)),
      owner_(owner),
      finder_(model_->catalogue()) {
  log_.reverted = std::move(reverted);
  Database& database = *model_->database();
  ChangeBoard* const board = database.engine().change_board();
  if (board) database.transactions().accompany(posting_.emplace(*board, log_));
}

void RecordStore::disconnect() {
  model_.reset();
  owner_ = nullptr;
  listeners_.clear();
}

std::shared_ptr<Model> RecordStore::model() const {
  if (!model_) {
    fail(kObjectClosed,
         L"The model of this record store is closed. Open it anew and take the "
         L"RecordStore of the model database.");
  }
  return model_;
}

STDMETHODIMP RecordStore::SaveRecord(IDispatch* record, VARIANT vCascadeDown, VARIANT vCascadeUp) {
  return model_call(turns_, [&] { save(record, nullptr, vCascadeDown, vCascadeUp); });
}

void RecordStore::save_own(IDispatch* object, const OwnRow& row, const VARIANT& down,
                           const VARIANT& up) {
  const Turn turn(turns_);
  save(object, &row, down, up);
}

void RecordStore::save(IDispatch* record, const OwnRow* row, const VARIANT& down,
                       const VARIANT& up) {
  const auto open_model = model();
  run_for_client(record, [&] {
    const Record found = finder_.find(record);
    save(*open_model, found, row, com::OptionalFlag(down).value, com::OptionalFlag(up).value);
  });
}

template <class Work>
void RecordStore::run_for_client(IDispatch* record, Work&& work) {
  hear_first();
  // A vertex or set that a record saves is part of the record.
  if (suspended_ && !is_changing()) {
    attempt_in_batch(record, work);
  } else {
    work();
  }
  send_queued();
}

void RecordStore::save(Model& model, const Record& record, const OwnRow* row, bool cascade_down,
                       bool cascade_up) {
  // The record calls the model database back; neither may go meanwhile.
  const com::Ptr<IModelDatabase> database(owner_);
  begin_change(true);
  Change change(log_, *model.database());
  const long dirty_before = record.dirty();
  const auto take_part = [&](host::FileOp operation) {
    if (row) {
      row->take_part(*this, operation);
    } else {
      record.file_operation(database.get(), operation, cascade_down, cascade_up);
    }
  };
  take_part(host::FileOp::kBeforeSave);
  std::wstring saved = saved_values(*model.database(), record);
  const long id = write_row(model, record, row, saved);
  auto kept = saved.empty() ? nullptr : std::make_unique<const std::wstring>(std::move(saved));
  log_.touched.emplace_back(ChangeLog::Touched{record, id, dirty_before, std::move(kept)});
  if (record.id() == 0) record.set_id(id);
  try {
    take_part(host::FileOp::kAfterSave);
  } catch (const com::Error& error) {
    fail_to_link(error, *model.database(), model.catalogue(), record);
  }
  record.set_dirty(0);
  queue(Event::Type::kSaved, record, id);
  change.keep();
}

/// What the record's row was when it was read or written last, where others may have changed it
/// since; empty otherwise.
std::wstring RecordStore::saved_values(Database& database, const Record& record) const {
  // A vertex keeps to what was put, and a set has only its name.
  if (!database.engine().is_shared() || record.id() == 0 || !stands_on_vertex(record.kind())) {
    return {};
  }
  return log_.reverted->saved_values(record);
}

long RecordStore::write_row(Model& model, const Record& record, const OwnRow* row,
                            const std::wstring& saved) {
  Database& database = *model.database();
  long id = record.id();
  read_row(record, row);
  if (id == 0) {
    id = record.table().insert(database, 0, values_.get());
  } else {
    if (is_known_as_missing(database, record) || !update_row(model, record, saved)) {
      insert_under(database, record, id);
    }
    if (!saved.empty()) log_.reverted->forget(record);
  }
  note_seen(model, record.table(), id, true);
  return id;
}

/// A node or set of which it was just asked whether it is there.
bool RecordStore::is_known_as_missing(Database& database, const Record& record) {
  return database.engine().is_shared() && !stands_on_vertex(record.kind()) &&
         !record.table().find(database, record.id());
}

/// Nodes and sets of a number are the same ones to everybody; records are not.
void RecordStore::insert_under(Database& database, const Record& record, long id) {
  if (stands_on_vertex(record.kind())) {
    record.table().insert(database, id, values_.get());
  } else {
    record.table().provide(database, id, values_.get());
  }
}

void RecordStore::read_row(const Record& record, const OwnRow* row) {
  if (row) {
    values_.read_own(record, *row);
  } else if (record.id() == 0) {
    values_.read_for_insert(record);
  } else {
    values_.read_for_update(record);
  }
}

/// Notes that the row was written or deleted, until the change that does so is taken back.
void RecordStore::note_seen(Model& model, const Table& table, long id, bool is_there) {
  const auto& rows = model.seen_rows();
  if (!rows) return;
  if (!(is_there ? rows->add(table, id) : rows->forget(table, id))) return;
  log_.touched.emplace_back(ChangeLog::Undo([rows, &table, id, is_there] {
    if (is_there) {
      rows->forget(table, id);
    } else {
      rows->add(table, id);
    }
  }));
}

/// Writes the row over that of the record's ID; false when there is none.
bool RecordStore::update_row(Model& model, const Record& record, const std::wstring& saved) {
  Database& database = *model.database();
  const Table& table = record.table();
  const long id = record.id();
  if (saved.empty() || overwrites_) return table.update(database, id, values_.get());
  values_.read_saved(record, saved);
  if (table.update_unchanged(database, id, values_.get(), values_.saved())) return true;
  if (!table.find(database, id)) {
    // Else it is a record of another model, or one that this program has deleted itself.
    if (!model.seen_rows()->has(table, id)) return false;
    fail(kChangedByOthers,
         record.name() +
             L" cannot be saved: its row has been deleted since, by somebody else or by a "
             L"statement. Set its ID to 0 to save it as a new one, or set Overwrite of the model "
             L"database to True to bring it back.");
  }
  fail(kChangedByOthers,
       record.name() +
           L" cannot be saved: its row is not what it was when the record was loaded or "
           L"saved last; somebody else has changed it. Load it anew and make your change "
           L"there, or set Overwrite of the model database to True to write over theirs.");
}

STDMETHODIMP RecordStore::DeleteRecord(IDispatch* record) {
  return model_call(turns_, [&] {
    const auto open_model = model();
    run_for_client(record, [&] { remove(*open_model, finder_.find(record)); });
  });
}

bool RecordStore::remove_row(Model& model, const Record& record) {
  try {
    const bool is_removed = remove_own_row(*model.database(), record);
    if (is_removed) note_seen(model, record.table(), record.id(), false);
    return is_removed;
  } catch (const com::Error& error) {
    fail_to_delete(error, *model.database(), model.catalogue(), record);
  }
}

/// Deletes the row if it is still what the record had read or written last. A record that was
/// neither, but given its ID, stands for whatever has that.
bool RecordStore::remove_own_row(Database& database, const Record& record) {
  const Table& table = record.table();
  const std::wstring saved = saved_values(database, record);
  if (saved.empty() || overwrites_) return table.remove(database, record.id());
  values_.read_saved(record, saved);
  if (!was_saved(record.kind(), values_.saved())) return table.remove(database, record.id());
  if (table.remove_unchanged(database, record.id(), values_.saved())) return true;
  if (!table.find(database, record.id())) return false;
  fail(kChangedByOthers,
       record.name() +
           L" cannot be deleted: its row is not what it was when the record was loaded or saved "
           L"last; somebody else has changed it. Load it anew to see what it is now, or set "
           L"Overwrite of the model database to True to delete it all the same.");
}

void RecordStore::remove(Model& model, const Record& record) {
  const com::Ptr<IModelDatabase> database(owner_);
  require_text(record, host::SqlPiece::kTable, record.kind().table);
  require_text(record, host::SqlPiece::kKeyColumn, record.kind().key);
  begin_change(true);
  Change change(log_, *model.database());
  record.file_operation(database.get(), host::FileOp::kDelete, true, true);
  if (!remove_row(model, record)) {
    fail(kItemNotFound, record.name() + L" is not in the model, so that it cannot be deleted.");
  }
  queue(Event::Type::kDeleted, record, record.id());
  change.keep();
}

void RecordStore::keep_for_undo(ChangeLog::Undo undo) {
  if (is_changing() || model()->database()->transactions().is_open()) {
    log_.touched.emplace_back(std::move(undo));
  }
}

void RecordStore::begin_change(bool record_by_record) {
  if (log_.is_undoing) {
    fail(kIllegalOperation,
         L"A transaction is being rolled back, and its records are given back what they had. "
         L"Nothing can be saved or deleted until that is done.");
  }
  if (is_changing()) return;
  record_by_record_ = record_by_record && !suspended_ && !listeners_.empty();
}

void RecordStore::queue(Event::Type type, const Record& record, long id) {
  if (!record_by_record_ && !posting_) return;
  const Event event{type, record.event_type(), id};
  if (record_by_record_) log_.events.push_back(event);
  if (posting_) log_.written.push_back(event);
}

void RecordStore::note_added(long event_type, std::span<const long> keys) {
  if (!posting_) return;
  for (const long key : keys) log_.written.push_back({Event::Type::kSaved, event_type, key});
}

long RecordStore::hear_others() {
  ChangeBoard* const board = model()->database()->engine().change_board();
  if (!board || listeners_.empty()) return 0;
  const auto changes = board->read();
  // A listener may close the model.
  const com::Ptr<RecordStore> self(this);
  for (const ChangedRecords& records : changes) {
    listeners_.notify(records.are_deleted ? L"RecordsDeleted" : L"RecordsSaved", records.event_type,
                      script_array(records.keys));
  }
  return static_cast<long>(changes.size());
}

long RecordStore::poll() {
  if (listeners_.empty()) model()->database()->engine().require_reachable();
  return hear_others();
}

void RecordStore::hear_first() {
  const bool is_part = suspended_ || is_changing() || log_.is_undoing ||
                       model()->database()->transactions().is_open();
  if (!is_part) (void)hear_others();
}

void RecordStore::send_queued() {
  if (is_changing() || log_.events.empty()) return;
  for (const Event& event : std::exchange(log_.events, {})) {
    const bool saved = event.type == Event::Type::kSaved;
    listeners_.notify(saved ? L"RecordSaved" : L"RecordDeleted", event.object_type,
                      com::Variant(event.id));
  }
}

void RecordStore::begin_batch() {
  failures_ = com::make<Failures>();
  is_batch_told_ = false;
}

void RecordStore::send_batch(const wchar_t* method, long object_type, const VARIANT& ids) {
  // A listener may save a batch of its own; the script asks for the failures of this one.
  const auto failures = failures_;
  if (!std::exchange(is_batch_told_, true)) {
    for (const auto& failure : failures->all()) {
      listeners_.notify(L"RecordFailed", object_type, com::Variant(failure.get()));
    }
  }
  if (!listeners_.empty()) listeners_.notify(method, object_type, for_scripts(ids));
  failures_ = failures;
}

void RecordStore::tell_of_steps(const wchar_t* method, const std::vector<Step>& steps) {
  if (listeners_.empty()) return;
  for (const Step& step : steps) {
    listeners_.notify(method, step.number, com::Variant(com::Bstr(step.name)));
  }
}

STDMETHODIMP RecordStore::RecordsSaved(long eventObjectType, VARIANT ids) {
  return model_call(turns_, [&] {
    hear_first();
    send_batch(L"RecordsSaved", eventObjectType, ids);
  });
}

STDMETHODIMP RecordStore::RecordsDeleted(long eventObjectType, VARIANT ids) {
  return model_call(turns_, [&] {
    hear_first();
    send_batch(L"RecordsDeleted", eventObjectType, ids);
  });
}

STDMETHODIMP RecordStore::EventsEnabled(long flag) {
  return model_call(turns_, [&] {
    (void)model();
    if (flag == 0) begin_batch();
    suspended_ = flag == 0;
  });
}

void RecordStore::on_end(TransactionEnd end, bool outermost) noexcept {
  // A record that is given its ID back may close the model, which lets its store go.
  const com::Ptr<RecordStore> self(this);
  suspended_ = false;
  log_.end_transaction(end, outermost);
}

STDMETHODIMP RecordStore::Advise(IDispatch* pListener) {
  return model_call(turns_, [&] {
    (void)model();
    if (!pListener) fail(E_POINTER, L"Advise was given no object to notify.");
    if (com::Ptr<IDispatch>(pListener).query<IRecordStore>()) {
      fail(kInvalidArgument,
           L"Advise was given a record store, which would notify itself without end. Pass an "
           L"object of your own with methods such as RecordSaved.");
    }
    if (ChangeBoard* const board = model_->database()->engine().change_board()) board->follow();
    listeners_.add(pListener);
  });
}

STDMETHODIMP RecordStore::Unadvise(IDispatch* pListener) {
  return model_call(turns_, [&] {
    (void)model();
    if (!listeners_.remove(pListener)) {
      fail(kItemNotFound, L"The object passed to Unadvise is not being notified.");
    }
  });
}

}  // namespace modeldb
