#pragma once

namespace modeldb {

/// While one lives, the model's own classes and ADO's Recordset are created on this thread by this
/// module without a look into the registry: records create several objects each, and their
/// recordsets must be those of this module. For the use of one thread.
class Activation {
 public:
  Activation();
  Activation(const Activation&) = delete;
  Activation& operator=(const Activation&) = delete;
  ~Activation();
};

}  // namespace modeldb
