#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/checks/subject.h"

namespace checks {

/// Records of a table that a card of a step stands for, or would stand for.
struct Batch {
  int step = 0;           ///< 0: the part before the first step
  std::int32_t line = 0;  ///< of the card; cards to be written stand behind all others
  std::string keyword;    ///< in capitals without blanks; empty of kinds that decks do not have
  bool is_new = false;    ///< the card has OP=NEW
  int load_case = 1;
  content::Key multiplier = 0;            ///< amplitude of the card
  const content::Table* table = nullptr;  ///< nothing, if the card has no records
  content::Key set = 0;
  std::string set_name;
  std::vector<std::size_t> records;
};

/// Why the records of a set never act.
struct Idle {
  enum class Why : std::uint8_t {
    no_step,  ///< the model has several, and nothing names one
    no_such_step,
    not_before_steps,  ///< only supports and displacements may stand before the first step
    not_initial,       ///< only temperatures may be initial
  };
  Why why;
  const content::Table* table = nullptr;
  content::Key set = 0;  ///< 0: in no set
  std::string set_name;
  std::vector<std::size_t> records;
};

/// A set that belongs to a step.
struct SetStep {
  std::string table;
  content::Key set = 0;
  int step = 0;  ///< 0 of initial conditions, too
};

/// When a deck of the model would say what: its batches in the order in which the solver reads
/// them.
struct Schedule {
  int steps = 1;
  std::vector<Batch> batches;  ///< initial temperatures are not among them
  std::vector<Idle> idle;
  std::vector<SetStep> sets;  ///< those that belong to a step
};

/// Whether each record of a table belongs to a step: what a model of one step says without a step
/// belongs to that one.
std::vector<bool> records_in_step(const Schedule& schedule, const content::Table& table, int step);

Schedule schedule_of(const Subject& subject);

}  // namespace checks
