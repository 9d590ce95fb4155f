#pragma once

#include <cstdint>
#include <vector>

#include "tools/content/content.h"

namespace checks {

enum class Effect : std::uint8_t {
  force,        ///< on degree of freedom 1 to 3, a moment on 4 to 6
  heat,         ///< on degree of freedom 11
  held,         ///< the degree of freedom stays where it is
  moved,        ///< the degree of freedom takes a value
  temperature,  ///< that the node has, as other analyses found out
  other,        ///< of a kind that decks do not have, or along no axis
};

/// What a record says of one degree of freedom of its node.
struct Statement {
  content::Key node = 0;
  Effect effect = Effect::other;
  std::uint8_t freedom = 0;     ///< from 1; 0 where it concerns none or several
  double value = 0;             ///< 0 of what is held, and of `other`
  content::Key system = 0;      ///< coordinate system of a force
  content::Key multiplier = 0;  ///< amplitude; 0: none
};

/// Replaces `statements` by what the record says; nothing, for a force without a direction.
void read_statements(const content::Table& table, std::size_t record,
                     std::vector<Statement>& statements);

/// Whether the table's records load a model with forces or moments.
bool has_forces(const content::Table& table);

}  // namespace checks
