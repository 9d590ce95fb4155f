#include "tests/kinds/kind.h"

#include <orv_node.h>

#include <algorithm>
#include <stdexcept>

#include "kinds/kinds.h"

namespace {

Kind to_kind(Class record, Class collection) {
  const auto expected = std::ranges::find(expected_kinds(), record.name, &ExpectedKind::record);
  if (expected == expected_kinds().end()) throw std::out_of_range("nothing is expected of a kind");
  return {record, collection, *expected};
}

}  // namespace

std::vector<Kind> all_kinds() {
#define KIND(name, collection, script)                       \
  to_kind({#name, __uuidof(name), __uuidof(I##name), false}, \
          {#collection, __uuidof(collection), __uuidof(I##collection), true}),
  return {FOR_EACH_KIND(KIND)};
#undef KIND
}

std::vector<Class> all_classes() {
  std::vector<Class> classes;
  for (const Kind& kind : all_kinds()) {
    classes.push_back(kind.record);
    classes.push_back(kind.collection);
  }
  return classes;
}
