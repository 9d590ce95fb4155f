#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/deck/deck.h"
#include "tools/deck/kinds.h"

namespace deck {

/// Cards that one set stands for: those of a step with the same keyword and parameters.
struct Place {
  int step = 0;
  std::string keyword;
  std::vector<Parameter> parameters;

  /// "OP=NEW, AMPLITUDE=A1"
  [[nodiscard]] std::string parameters_text() const;
  /// The name of the set: "Step 2, BOUNDARY, AMPLITUDE=A1", "Model, BOUNDARY", "Initial".
  [[nodiscard]] std::string name() const;
  /// Equal for places that are the same; the order of parameters does not matter.
  [[nodiscard]] std::string key() const;
  /// "*CLOAD, AMPLITUDE=A1"
  [[nodiscard]] std::string keyword_line() const;

  /// The same place with another amplitude, or none if the name is empty. It is a card of its own,
  /// never the first of its step, so that it has no OP.
  [[nodiscard]] Place with_amplitude(const std::string& name) const;
};

Place place_of(const Card& card);
std::vector<Parameter> parameters_from(std::string_view text);

/// The keyword under which a kind is written in a step, or in the model part.
std::string_view keyword_of(Kind kind, bool is_initial);

/// Which step a set means whose name begins with "Step 2", "Model" or "Initial".
struct NamedStep {
  int step = 0;
  bool is_initial = false;
  bool is_unclear = false;  ///< "Step 0", "Step 1x": a number that is none of a step
  std::string_view rest{};  ///< what follows, without comma and blanks
};
std::optional<NamedStep> step_in_name(std::string_view name);

}  // namespace deck
