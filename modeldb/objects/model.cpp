#include "modeldb/objects/model.h"

#include "modeldb/engine/ascii.h"
#include "modeldb/engine/failure.h"
#include "modeldb/schema/link_keeper.h"
#include "modeldb/schema/tables.h"
#include "modeldb/schema/vertex_guard.h"

namespace modeldb {
namespace {

std::shared_ptr<Database> open_database(std::wstring_view location) {
  if (has_prefix(location, L"odbc:")) {
    fail(kFeatureNotAvailable,
         L"Models behind ODBC cannot be opened by this version. Pass the path "
         L"of a model database file.");
  }
  return Database::open(location, kSchemaVersion);
}

}  // namespace

Model::Model(std::wstring_view location)
    : catalogue_(Catalogue::instance()), database_(open_database(location)) {
  try {
    make_tables(*database_, catalogue_);
    guard_vertices(*database_, catalogue_);
    keep_links_with_records(*database_, catalogue_);
    path_ = std::make_shared<const std::wstring>(database_->path());
    database_->mark_unchanged();
  } catch (...) {
    database_->discard();
    throw;
  }
}

}  // namespace modeldb
