#include <cmath>

#include "tools/checks/places.h"
#include "tools/checks/single_checks.h"

namespace checks {

void check_vertices(const Subject& subject, Findings& findings) {
  const Places places(subject.content.vertices);
  for (const content::Table& table : subject.content.tables) {
    for (std::size_t record = 0; record < table.size(); ++record) {
      const content::Key vertex = table.vertices[record];
      if (vertex == 0) {
        findings.add(Code::no_vertex, table, record);
      } else if (places.of(vertex) == nullptr) {
        findings.add(Code::no_coordinates, table, record);
      }
    }
  }
}

}  // namespace checks
