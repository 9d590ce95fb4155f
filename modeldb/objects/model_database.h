#pragma once

#include <msado15_backcompat.h>

#include <memory>

#include "com/automation.h"
#include "com/free_threaded.h"
#include "modeldb/library.h"
#include "modeldb/objects/inherited.h"
#include "modeldb/objects/model.h"
#include "modeldb/objects/model_access.h"
#include "modeldb/objects/reserved.h"

namespace modeldb {

using ModelDatabaseBase = ReservedDatabaseMembers<
    Inheriting<com::FreeThreaded<com::DispatchObject<IModelDatabaseFile, kLibrary, ModelAccess>>,
               IModelDatabase>>;

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
  /// A new collection with the table's records that meet the condition, in the order of their keys.
  /// When a row cannot be loaded the call fails and names it.
  STDMETHODIMP Load(BSTR bstrCollection, VARIANT vWhere, IDispatch** pVal) override;
  /// The rows of a SELECT, as an ADO recordset that is open. Any other statement is refused.
  STDMETHODIMP Query(BSTR bstrSql, IDispatch** pVal) override;

  // ModelAccess

  STDMETHODIMP open_store(RecordStore** store) override;

 protected:
  void final_release() override;

 private:
  void open(std::wstring_view location);
  void close();
  [[nodiscard]] const std::shared_ptr<Model>& model() const;

  const std::shared_ptr<Turns> turns_ = std::make_shared<Turns>();
  std::shared_ptr<Model> model_;
  com::Ptr<RecordStore> store_;
  com::Ptr<_Connection> connection_;
  com::Ptr<_Command> command_;
};

}  // namespace modeldb
