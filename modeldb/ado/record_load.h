#pragma once

namespace modeldb {

/// Tells a record that is being loaded from everybody else who creates ADO's Recordset: it asks the
/// model for the connection, creates its collection of sets and then a recordset, with no other
/// call of a model in between. Kept for each thread.
class RecordLoad {
 public:
  /// The connection was asked for through the interface of the host contract.
  static void connection_asked_for();
  /// A collection of sets was created.
  static void sets_created();
  /// Whether the recordset that is created now is a record's; the next one is not.
  static bool takes_recordset();
  static void forget();

  /// Any other call of a model, which a load does not make there.
  class OtherCall {
   public:
    OtherCall() { forget(); }
    ~OtherCall() { forget(); }
    OtherCall(const OtherCall&) = delete;
    OtherCall& operator=(const OtherCall&) = delete;
  };
};

}  // namespace modeldb
