#pragma once

#include <msado15_backcompat.h>
#include <orv_host.h>

#include <string_view>

#include "com/ptr.h"
#include "tools/model/rows.h"

namespace model {

/// An open model, used through the connection of the host contract: statements and transactions.
/// Every failure is raised with the model's own sentence.
class Database {
 public:
  /// Raises kNoModel, with a sentence, when the object is no open model.
  explicit Database(IDispatch* object);

  /// Runs a statement other than a query; the text is UTF-8.
  void execute(std::string_view sql);
  /// Runs a SELECT; the text is UTF-8.
  Rows query(std::string_view sql);

  /// Names the step of the model's history that is being made, unless the user has named it or the
  /// model has no history.
  void name_step(std::string_view name);

  /// The model's object, as it was passed.
  [[nodiscard]] IDispatch* object() const { return object_.get(); }

 private:
  friend class NoTimeLimit;

  com::Ptr<IDispatch> object_;
  com::Ptr<Connection15> connection_;
};

/// Lets statements take as long as they need, which for a large model is longer than a script may
/// wait; at its end the connection has the limit that it had before.
class NoTimeLimit {
 public:
  explicit NoTimeLimit(const Database& database);
  ~NoTimeLimit();
  NoTimeLimit(const NoTimeLimit&) = delete;
  NoTimeLimit& operator=(const NoTimeLimit&) = delete;

 private:
  com::Ptr<Connection15> connection_;
  LONG seconds_ = 0;
};

/// A transaction on a model, rolled back unless it is committed.
class Transaction {
 public:
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit();

 private:
  Database& database_;
  bool open_ = true;
};

}  // namespace model
