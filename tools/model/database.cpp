#include "tools/model/database.h"

#include <orv_modeldb.h>

#include "com/bstr.h"
#include "com/error.h"
#include "tools/text/failure.h"
#include "tools/text/utf8.h"

namespace model {

Database::Database(IDispatch* object) : object_(object) {
  const auto host = object_.query<IModelDatabase>();
  if (!host) {
    text::fail(text::kInvalidArgument,
               "The object is no model database. Pass one such as Orv_ModelDb.ModelDatabase, with "
               "a model opened.");
  }
  com::Ptr<IDispatch> connection;
  com::check(host->get_Connection(connection.put()), host);
  connection_ = connection.query<Connection15>();
  if (!connection_) {
    text::fail(text::kInvalidArgument, "The model database has no ADO connection.");
  }
}

void Database::execute(std::string_view sql) {
  com::Ptr<_Recordset> none;
  com::check(connection_->Execute(com::Bstr(text::to_wide(sql)).get(), nullptr,
                                  static_cast<LONG>(adCmdText) | adExecuteNoRecords, none.put()),
             connection_);
}

void Database::name_step(std::string_view name) {
  const auto model = object_.query<IModelDatabaseFile>();
  if (!model) return;
  com::Bstr given;
  com::check(model->get_Step(given.put()), model);
  if (given.view().empty()) {
    com::check(model->put_Step(com::Bstr(text::to_wide(name)).get()), model);
  }
}

Rows Database::query(std::string_view sql) {
  com::Ptr<_Recordset> rows;
  com::check(
      connection_->Execute(com::Bstr(text::to_wide(sql)).get(), nullptr, adCmdText, rows.put()),
      connection_);
  return Rows(std::move(rows));
}

NoTimeLimit::NoTimeLimit(const Database& database) : connection_(database.connection_) {
  com::check(connection_->get_CommandTimeout(&seconds_), connection_);
  com::check(connection_->put_CommandTimeout(0), connection_);
}

// The model may have been closed.
NoTimeLimit::~NoTimeLimit() { connection_->put_CommandTimeout(seconds_); }

Transaction::Transaction(Database& database) : database_(database) {
  database_.execute("BEGIN TRANSACTION");
}

Transaction::~Transaction() {
  if (!open_) return;
  try {
    database_.execute("ROLLBACK TRANSACTION");
  } catch (const com::Error&) {
    // The model has been closed, or rolled back by itself.
  }
}

void Transaction::commit() {
  // A commit that fails has rolled back.
  open_ = false;
  database_.execute("COMMIT TRANSACTION");
}

}  // namespace model
