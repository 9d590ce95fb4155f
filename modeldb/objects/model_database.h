#pragma once

#include <msado15_backcompat.h>

#include <memory>

#include "com/aliased.h"
#include "com/automation.h"
#include "com/free_threaded.h"
#include "modeldb/base/library.h"
#include "modeldb/model/model.h"
#include "modeldb/model/reserved.h"
#include "modeldb/store/record_store.h"

namespace modeldb {

/// Tells the module's own model databases from others.
inline constexpr IID kOwnModelDatabase = {
    0x7131684A, 0xC538, 0x4CFD, {0x9E, 0xC6, 0x72, 0xDE, 0x5E, 0xEA, 0x4C, 0x04}};

using ModelDatabaseBase = ReservedDatabaseMembers<com::Aliased<
    com::FreeThreaded<com::DispatchObject<IModelDatabaseFile, kLibrary>>, IModelDatabaseFile,
    com::NamesOf<IModelDatabase>, com::OwnName<kOwnModelDatabase>>>;

/// A model database file as scripts open it, and as records and collections are passed it.
///
/// Every member that needs an open model fails with a sentence when none is open. What comes from a
/// model (record store, connection, command, recordsets) fails likewise once it is closed. All of
/// them may be called from any thread; the calls are put in line.
class ModelDatabase : public ModelDatabaseBase {
 public:
  // IDispatch
  STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) override;

  // IModelDatabase

  /// The model's one command, with which records write their links.
  STDMETHODIMP get_Command(IDispatch** pVal) override;
  /// The model's one connection: runs statements, begins and ends transactions.
  STDMETHODIMP get_Connection(IDispatch** pVal) override;
  /// 0 counts the model as unmodified from here on. Anything else does nothing: the database knows
  /// by itself which rows changed.
  STDMETHODIMP SetModified(long newVal) override;
  STDMETHODIMP get_RecordStore(IRecordStore** pVal) override;

  // IModelDatabaseFile

  /// Opens the file at the path, or makes it when there is none. Fails, with a sentence, when a
  /// model is open already, or when the path is that of anything else than a model; then nothing
  /// has changed, neither here nor in the file.
  STDMETHODIMP Open(BSTR bstrLocation) override;
  /// Closes the model, if one is open. A transaction that is open is rolled back.
  STDMETHODIMP Close() override;
  STDMETHODIMP get_IsOpen(VARIANT_BOOL* pVal) override;
  STDMETHODIMP get_Location(BSTR* pVal) override;
  STDMETHODIMP get_Modified(VARIANT_BOOL* pVal) override;
  /// Whether the open model's file or folder is write-protected: then every change is refused.
  STDMETHODIMP get_IsReadOnly(VARIANT_BOOL* pVal) override;
  /// A new collection with the table's records that meet the condition, in the order given, or else
  /// in that of their keys. When a row cannot be loaded the call fails and names it.
  STDMETHODIMP Load(BSTR bstrCollection, VARIANT vWhere, VARIANT vOrder, IDispatch** pVal) override;
  /// The rows of a SELECT, as an ADO recordset that is open. Any other statement is refused.
  STDMETHODIMP Query(BSTR bstrSql, IDispatch** pVal) override;
  /// What failed of the collection that was saved or deleted last, in this model.
  STDMETHODIMP get_Failures(IFailures** pVal) override;
  // The set of that name, saved as a new one when the model has none. Fail, with a sentence, when
  // there is no name, or several sets have it.
  STDMETHODIMP LoadSet(BSTR bstrName, ILoadSet** pVal) override;
  STDMETHODIMP ConstraintSet(BSTR bstrName, IConstraintSet** pVal) override;
  STDMETHODIMP DesignScenario(BSTR bstrName, IDesignScenario** pVal) override;
  /// A new object, not saved, with the values of a record, set or vertex. The copy of a record is
  /// in the same sets, and stands on the same vertex by an object of its own.
  STDMETHODIMP Copy(IDispatch* pRecord, IDispatch** pVal) override;
  /// See append_rows. The keys come as an array of variants, which every script can index.
  STDMETHODIMP AppendRows(BSTR bstrTable, VARIANT vColumns, VARIANT vRows, VARIANT* pVal) override;
  /// The rows of a SELECT as an array (row, column) with the lower bounds 0; when `vNames` is true,
  /// the names of the columns stand in its first row. Any other statement is refused.
  STDMETHODIMP Rows(BSTR bstrSql, VARIANT vNames, VARIANT* pVal) override;
  /// The name of the step that is made next, or is being made; it is gone with that.
  STDMETHODIMP get_Step(BSTR* pVal) override;
  STDMETHODIMP put_Step(BSTR newVal) override;
  /// The steps as they are now.
  STDMETHODIMP get_History(IHistory** pVal) override;
  // See History. The step is one of the history or its number. Listeners are told when all is done.
  STDMETHODIMP Undo(VARIANT vStep) override;
  STDMETHODIMP Redo(VARIANT vStep) override;

  /// Where several people change a model at the same time, a record is refused whose row is not
  /// what it was when the record was loaded; unless this is true. False in a model that was just
  /// opened.
  STDMETHODIMP get_Overwrite(VARIANT_BOOL* pVal) override;
  STDMETHODIMP put_Overwrite(VARIANT_BOOL newVal) override;
  /// See copy_model.
  STDMETHODIMP CopyTo(BSTR bstrLocation, long* pRows) override;
  /// See RecordStore::hear_others.
  STDMETHODIMP Poll(long* pCalls) override;

  /// The record store of the open model; empty when none is open.
  [[nodiscard]] com::Ptr<RecordStore> store() const;

 protected:
  void final_release() override;

 private:
  void open(std::wstring_view location);
  void close();
  [[nodiscard]] const std::shared_ptr<Model>& model() const;

  const std::shared_ptr<Turns> turns_ = std::make_shared<Turns>();
  // What its models have rolled back, in closing too, of records that may be saved again.
  const std::shared_ptr<RevertedRows> reverted_ = std::make_shared<RevertedRows>();
  std::shared_ptr<Model> model_;
  com::Ptr<RecordStore> store_;
  com::Ptr<_Connection> connection_;
  com::Ptr<_Command> command_;
};

}  // namespace modeldb
