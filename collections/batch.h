#pragma once

#include "records/host.h"

namespace orv {

/// One transaction on the host's connection in which a collection saves or deletes its records,
/// and the one notification of the host that replaces those record by record.
///
/// Nothing is undone on failure: the host sees what happened and decides.
class Batch {
 public:
  /// E_POINTER: no model database.
  explicit Batch(IDispatch* model_database);

  /// Suspends notification record by record and begins the transaction.
  /// E_POINTER: the model database has no record store or no connection.
  void begin() const;
  void commit() const;
  void resume_events() const;

  void notify_saved(long event, const com::Variant& ids) const;
  void notify_deleted(long event, const com::Variant& ids) const;

 private:
  void execute(std::wstring_view statement) const;

  com::Ptr<IRecordStore> store_;
  com::Ptr<Connection15> connection_;
};

}  // namespace orv
