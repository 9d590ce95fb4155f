#pragma once

namespace modeldb {

/// While a model is open, the module's own classes and ADO's Recordset are created without a look
/// into the registry in every apartment that uses the model: records create several objects each,
/// and the recordsets of those that are being loaded must be this module's.
///
/// An apartment's class objects can be revoked by its own threads only. Those of an apartment other
/// than the one that closes the last model stay until a model is closed there or the apartment
/// ends. They change nothing meanwhile: the module's classes are the registered ones, and of
/// recordsets none is taken.
class Activation {
 public:
  /// Registers the class objects in the current apartment.
  Activation();
  Activation(const Activation&) = delete;
  Activation& operator=(const Activation&) = delete;
  /// When no other one lives, revokes the class objects of the current apartment. For any thread.
  ~Activation();

  /// Registers the class objects in the current apartment, if they are not there yet.
  static void in_this_apartment();
};

}  // namespace modeldb
