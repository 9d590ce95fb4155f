#include "modeldb/model/model.h"

#include "modeldb/base/ascii.h"
#include "modeldb/odbc/connection_text.h"
#include "modeldb/odbc/odbc_engine.h"
#include "modeldb/schema/history_terms.h"
#include "modeldb/schema/link_keeper.h"
#include "modeldb/schema/make_tables.h"
#include "modeldb/schema/vertex_guard.h"
#include "modeldb/sqlite/sqlite_engine.h"

namespace modeldb {
namespace {

std::shared_ptr<Database> open_database(std::wstring_view location) {
  if (has_prefix(location, kOdbcPrefix)) return open_odbc(location, kSchemaVersion);
  require_no_connection_text(location);
  return open_file(location, kSchemaVersion);
}

}  // namespace

Model::Model(std::wstring_view location)
    : catalogue_(Catalogue::instance()), database_(open_database(location)) {
  try {
    make_tables(*database_, catalogue_);
    guard_vertices(*database_, catalogue_);
    keep_links_with_records(*database_, catalogue_);
    location_ = std::make_shared<const std::wstring>(database_->location());
    history_.emplace(*database_, history_terms(catalogue_));
    if (database_->engine().is_shared()) seen_rows_ = std::make_shared<SeenRows>();
    database_->mark_unchanged();
  } catch (...) {
    database_->discard();
    throw;
  }
}

}  // namespace modeldb
