#pragma once

#include <memory>
#include <optional>
#include <span>

#include "com/aliased.h"
#include "com/automation.h"
#include "com/free_threaded.h"
#include "com/sentence.h"
#include "modeldb/base/library.h"
#include "modeldb/model/model.h"
#include "modeldb/model/reserved.h"
#include "modeldb/store/change_log.h"
#include "modeldb/store/failures.h"
#include "modeldb/store/listeners.h"
#include "modeldb/store/posting.h"
#include "modeldb/store/row_values.h"

namespace modeldb {

using RecordStoreBase = ReservedStoreMembers<
    com::Aliased<com::FreeThreaded<com::DispatchObject<IObservableRecordStore, kLibrary>>,
                 IObservableRecordStore, com::NamesOf<IRecordStore>>>;

/// Writes and deletes the rows of records, each whole or not at all, in the client's transaction or
/// else in one of its own, and tells those who listen once it is done.
class RecordStore : public RecordStoreBase, public TransactionObserver {
 public:
  /// The store of an open model; `owner` is its model database, which calls disconnect() before it
  /// goes. `reverted` is what rollbacks of the stores before it have given back.
  RecordStore(std::shared_ptr<Model> model, IModelDatabase* owner,
              std::shared_ptr<RevertedRows> reverted);

  /// The model is closed: from here on every member fails with a sentence, and nobody listens.
  void disconnect();

  /// The line of those who use the model.
  [[nodiscard]] const std::shared_ptr<Turns>& turns() const { return turns_; }

  /// The open model, for as long as the result is held. Raises when it is closed.
  [[nodiscard]] std::shared_ptr<Model> model() const;

  /// Runs `work`, which saves or deletes objects through this store, as one change. Inside another
  /// change, that is all. Otherwise its notifications one by one are left out; the caller sends one
  /// instead.
  template <class Work>
  void change_together(Work&& work);
  /// The same of work that saves a single object, of which listeners are told as usual.
  template <class Work>
  void change_alone(Work&& work);
  [[nodiscard]] bool is_changing() const { return log_.depth > 0; }

  /// Notes how an object takes back what it is being given, should the change or transaction that
  /// is under way be undone. `undo` may raise; that is passed over.
  void keep_for_undo(ChangeLog::Undo undo);

  /// Whether a record is written over what others have changed since it was loaded.
  [[nodiscard]] bool overwrites() const { return overwrites_; }
  void set_overwrites(bool overwrites) { overwrites_ = overwrites; }

  /// As SaveRecord, of an object of the model database's own, whose row is `row`. Raises what that
  /// returns.
  void save_own(IDispatch* object, const OwnRow& row, const VARIANT& down, const VARIANT& up);

  /// Begins a batch: what fails from here on is its failures.
  void begin_batch();
  /// Runs `work`, which saves or deletes the record as one of a batch; a failure is noted and
  /// raised.
  template <class Work>
  void attempt_in_batch(IDispatch* record, Work&& work);
  /// Notes that rows were added in the change that is under way, though not by records.
  void note_added(long event_type, std::span<const long> keys);
  /// Tells the listeners what other programs have changed since they began to listen, or were told
  /// last. Returns how often each was called.
  long hear_others();
  /// The same; raises when nobody can be asked, though nobody listens.
  long poll();
  /// The same before somebody reads or writes, unless that is a part of something.
  void hear_first();
  /// Calls method(number, name) of the listeners for each of the steps.
  void tell_of_steps(const wchar_t* method, const std::vector<Step>& steps);

  /// The failures of the batch that began last.
  [[nodiscard]] const com::Ptr<Failures>& failures() const { return failures_; }

  // IRecordStore

  /// Inserts the row of a record whose ID is 0 and gives it its key; otherwise updates the row with
  /// that ID or, when there is none, such as after a deletion or in another model, inserts it under
  /// that ID. Writes vertex, links and sets as the flags say; an omitted flag is true.
  STDMETHODIMP SaveRecord(IDispatch* record, VARIANT vCascadeDown, VARIANT vCascadeUp) override;
  /// Deletes the row and its links. The record keeps its ID. Fails when the model has no such row.
  STDMETHODIMP DeleteRecord(IDispatch* record) override;
  STDMETHODIMP RecordsSaved(long eventObjectType, VARIANT ids) override;
  STDMETHODIMP RecordsDeleted(long eventObjectType, VARIANT ids) override;
  /// 0 begins a batch and suspends notification record by record, anything else resumes it. A
  /// suspension ends at the latest when a transaction ends, or fails to begin.
  STDMETHODIMP EventsEnabled(long flag) override;

  // TransactionObserver

  void on_begin() override { log_.begin_transaction(); }
  /// A collection suspends notification for its transaction and resumes it after; when it fails in
  /// between it leaves it suspended. So a suspension ends here too. What a transaction that is
  /// rolled back gave to records, keys above all, is taken back with their rows.
  void on_end(TransactionEnd end, bool outermost) noexcept override;

  // IObservableRecordStore

  STDMETHODIMP Advise(IDispatch* pListener) override;
  STDMETHODIMP Unadvise(IDispatch* pListener) override;

 private:
  /// `row` is null unless the record is an object of the model database's own.
  void save(IDispatch* record, const OwnRow* row, const VARIANT& down, const VARIANT& up);
  void save(Model& model, const Record& record, const OwnRow* row, bool cascade_down,
            bool cascade_up);
  [[nodiscard]] std::wstring saved_values(Database& database, const Record& record) const;
  long write_row(Model& model, const Record& record, const OwnRow* row, const std::wstring& saved);
  void read_row(const Record& record, const OwnRow* row);
  [[nodiscard]] static bool is_known_as_missing(Database& database, const Record& record);
  void insert_under(Database& database, const Record& record, long id);
  void note_seen(Model& model, const Table& table, long id, bool is_there);
  bool update_row(Model& model, const Record& record, const std::wstring& saved);
  void remove(Model& model, const Record& record);
  bool remove_row(Model& model, const Record& record);
  bool remove_own_row(Database& database, const Record& record);

  /// Decides, before an outermost change begins, whether it is notified of record by record.
  /// kIllegalOperation: an earlier change is just being undone.
  void begin_change(bool record_by_record);
  /// Notes a notification that is due once the outermost change is kept.
  void queue(Event::Type type, const Record& record, long id);
  void send_queued();
  /// Runs `work`, which saves or deletes a record that a client passed.
  template <class Work>
  void run_for_client(IDispatch* record, Work&& work);
  /// Tells the listeners what failed of the batch, and what was saved or deleted.
  void send_batch(const wchar_t* method, long object_type, const VARIANT& ids);

  const std::shared_ptr<Turns> turns_;
  std::shared_ptr<Model> model_;
  IModelDatabase* owner_;
  RecordFinder finder_;
  RowValues values_;
  ChangeLog log_;
  std::optional<Posting> posting_;  // where other programs want to know
  bool overwrites_ = false;
  bool suspended_ = false;  // notification record by record, until a transaction ends
  bool record_by_record_ = false;
  com::Ptr<Failures> failures_ = com::make<Failures>();
  bool is_batch_told_ = true;
  Listeners listeners_;
};

template <class Work>
void RecordStore::attempt_in_batch(IDispatch* record, Work&& work) {
  try {
    work();
  } catch (const com::Error& error) {
    failures_->add(record, error.result(), sentence_of(error));
    throw;
  } catch (const std::bad_alloc&) {
    failures_->add(record, E_OUTOFMEMORY, L"There is not enough memory.");
    throw;
  }
}

template <class Work>
void RecordStore::change_alone(Work&& work) {
  const auto open_model = model();
  hear_first();
  if (is_changing()) return work();
  begin_change(true);
  {
    Change change(log_, *open_model->database());
    work();
    change.keep();
  }
  send_queued();
}

template <class Work>
void RecordStore::change_together(Work&& work) {
  const auto open_model = model();
  if (is_changing()) return work();
  begin_change(false);
  Change change(log_, *open_model->database());
  work();
  change.keep();
}

}  // namespace modeldb
