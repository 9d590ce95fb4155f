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
  void execute(const com::Bstr& statement) const;
  /// Calls an object of the host, and raises its failure. What an earlier failure left on the
  /// thread, such as that of a record that was passed over, is not taken for words of this one.
  template <class Object, class Call>
  static void call(const com::Ptr<Object>& object, Call&& member) {
    SetErrorInfo(0, nullptr);
    com::check(member(*com::require(object)), object);
  }

  com::Ptr<IRecordStore> store_;
  com::Ptr<Connection15> connection_;
  // Made beforehand: a transaction must not stay open for want of memory to end it.
  com::Bstr begin_{L"BEGIN TRANSACTION"};
  com::Bstr commit_{L"COMMIT TRANSACTION"};
};

}  // namespace orv
