#include "modeldb/schema/catalogue.h"

#include <algorithm>
#include <utility>

#include "modeldb/base/ascii.h"
#include "modeldb/schema/host_kinds.h"
#include "modeldb/schema/server_kinds.h"

namespace modeldb {

const Catalogue& Catalogue::instance() {
  // An attempt that fails is made again at the next call: the user may register the server now.
  static const Catalogue catalogue;
  return catalogue;
}

Catalogue::Catalogue() {
  for (const Kind* const kind :
       {&vertex_kind(), &load_set_kind(), &constraint_set_kind(), &design_scenario_kind()}) {
    tables_.emplace_back(*kind);
  }
  for (Kind& kind : server_kinds()) tables_.emplace_back(std::move(kind));
}

const Table* Catalogue::find(std::wstring_view name) const {
  const auto found = std::ranges::find_if(
      tables_, [&](const Table& table) { return same_name(table.kind().table, name); });
  return found == tables_.end() ? nullptr : &*found;
}

}  // namespace modeldb
