#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <unordered_map>
#include <vector>

#include "tools/checks/schedule.h"
#include "tools/checks/statements.h"

namespace checks {

/// The record that said something, and when.
struct Origin {
  const Batch* batch = nullptr;
  std::size_t record = 0;  ///< index into the batch's table
};

/// What acts on a degree of freedom.
struct Action {
  Statement what;  ///< values of forces are the sum of those of a step
  int step = 0;    ///< in which it was said; it may be an earlier one
  int load_case = 1;
  std::vector<Origin> from;  ///< several, where records of a step add up
};

/// What acts in a step by the solver's rules:
///
/// - What a step does not change goes on from the step before.
/// - OP=NEW on the first card of its keyword in a step ends what earlier steps said with that
///   keyword; of *CLOAD it ends *CFLUX too, and of *BOUNDARY also what stands before the first
///   step.
/// - Forces and heat on the same degree of freedom add up within a step, and take the place of
/// those
///   of earlier steps.
/// - Of supports and displacements the last one counts, and of temperatures likewise.
class Acting {
 public:
  /// `before` acts already, or was said by the same step, when `now` says something of the same
  /// degree of freedom.
  using Clash = std::function<void(const Action& before, const Statement& now, const Origin& from)>;

  /// Nothing acts before the first call of enter().
  Acting(const Subject& subject, const Schedule& schedule);

  /// Goes on to the next step, at first to the part before the first one, which is step 0.
  void enter_next(const Clash& clash = {});
  /// Goes on from the beginning to a step that is to come.
  void enter(int step);
  [[nodiscard]] int step() const { return step_; }

  /// Calls `use` for each action: forces, heat, supports and displacements, temperatures, others;
  /// each in the order in which they were said.
  void each(const std::function<void(const Action&)>& use) const;
  /// The support or displacement of a degree of freedom, or nothing.
  [[nodiscard]] const Action* support_at(content::Key node, int freedom, int load_case) const;

 private:
  struct Spot {
    content::Key node;
    content::Key system;
    int freedom;
    int load_case;
    bool operator==(const Spot&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Spot& spot) const;
  };
  struct Group {
    std::vector<Action> actions;
    std::unordered_map<Spot, std::size_t, Hash> at;
    void clear();
  };
  enum GroupIndex : std::uint8_t { kForces, kHeat, kSupports, kTemperatures, kOthers, kGroups };

  static GroupIndex group_of(Effect effect);
  void turn_into_system_of_node(std::vector<Statement>& statements) const;
  void end_earlier(const std::string& keyword);
  void read(const Batch& batch, const Clash& clash);
  void put(const Statement& now, const Origin& from, const Clash& clash);

  const Subject& subject_;
  const Schedule& schedule_;
  std::unordered_map<content::Key, content::Key> system_of_node_;
  std::array<Group, kGroups> groups_;
  int step_ = -1;
  std::size_t next_batch_ = 0;
};

}  // namespace checks
