#include "tools/checks/codes.h"

#include <array>

namespace checks {
namespace {

using enum Severity;

constexpr auto kCodes = std::to_array<CodeWords>({
    {Code::not_finite, "not-finite", error, "has a value that is no finite number.",
     "have a value that is no finite number.",
     "Give it a number: it may come from a division by 0 in a script."},
    {Code::no_vertex, "no-vertex", error, "has no vertex, and so no node on which it acts.",
     "have no vertex, and so no node on which they act.",
     "Assign the Vertex, or its ID, before the record is saved."},
    {Code::no_coordinates, "no-coordinates", error,
     "is on a node of which no coordinates are known.",
     "are on nodes of which no coordinates are known.",
     "Save a vertex with that ID and its coordinates. The solver drops loads on a number that is "
     "no "
     "node without a word."},
    {Code::no_direction, "no-direction", error, "has no direction: its vector is 0.",
     "have no direction: their vectors are 0.",
     "Set Vx, Vy and Vz; their length does not count, and Magnitude tells the size."},
    {Code::no_such_direction, "no-such-direction", error, "has a Direction that is none of 0 to 3.",
     "have a Direction that is none of 0 to 3.",
     "0 to 2 are the axes, and 3 is the vector Vx, Vy, Vz."},
    {Code::dead_set_link, "dead-set-link", error, "is in a set that the model does not have.",
     "are in sets that the model does not have.",
     "Take it out of the set, or add the set again, and save the record."},
    {Code::dead_amplitude_link, "dead-amplitude-link", error,
     "follows an amplitude that the model does not have.",
     "follow amplitudes that the model does not have.",
     "Set MultiplierID to 1, which means none, or to the number of an amplitude: those of a deck "
     "count from 2."},
    {Code::dead_system_link, "dead-system-link", error,
     "has a direction in a coordinate system that is not known at its node.",
     "have directions in coordinate systems that are not known at their nodes.",
     "Set CoordinateSystemID to 0, the global system, or to the number of a *TRANSFORM card, from "
     "1."},
    {Code::no_stiffness, "no-stiffness", error, "has a stiffness of 0 and so holds nothing.",
     "have a stiffness of 0 and so hold nothing.", "Set Stiffness, which is 1e10 in a new record."},
    {Code::two_amplitudes, "two-amplitudes", error,
     "loads a degree of freedom that follows another amplitude in the same step.",
     "load degrees of freedom that follow other amplitudes in the same step.",
     "Give them one amplitude, or load neighbouring nodes: the solver refuses two on the same "
     "degree of freedom."},
    {Code::no_such_step, "no-such-step", error, "belongs to a step that the deck does not have.",
     "belong to a step that the deck does not have.",
     "Put it into a set of one of the deck's steps."},
    {Code::not_before_steps, "not-before-steps", error,
     "stands before the first step, where a deck has supports and displacements only.",
     "stand before the first step, where a deck has supports and displacements only.",
     "Put it into a set of a step, such as 'Step 1'."},
    {Code::not_initial, "not-initial", error,
     "is in a set of initial conditions, which holds temperatures only.",
     "are in a set of initial conditions, which holds temperatures only.",
     "Put it into a set of a step, such as 'Step 1'."},
    {Code::no_step, "no-step", error, "is in no set that names a step, and the model has several.",
     "are in no set that names a step, and the model has several.",
     "Put it into a set whose name begins with 'Step 1', for example."},
    {Code::no_support, "no-support", error, "has forces, and nothing holds the model.", "",
     "Add a NodalBoundaryCondition, unless the deck holds the model in other ways, or it may "
     "move freely."},
    {Code::load_on_support, "load-on-support", warning,
     "acts on a degree of freedom that is held or moved, where it does nothing but change the "
     "reaction.",
     "act on degrees of freedom that are held or moved, where they do nothing but change the "
     "reactions.",
     "Move the load or free the degree of freedom, unless it is meant so."},
    {Code::load_twice, "load-twice", warning,
     "says the same as another one in its step; the two add up.",
     "say the same as others in their step; they add up.",
     "Delete one of them, unless the node carries the load twice."},
    {Code::in_two_sets, "in-two-sets", warning,
     "is in two sets of one step, and so acts twice in it.",
     "are in two sets of one step, and so act twice in it.", "Take it out of one of the sets."},
    {Code::held_and_moved, "held-and-moved", warning,
     "holds and moves a degree of freedom in one step, of which the last counts.",
     "hold and move degrees of freedom in one step, of which the last counts.",
     "Delete one of the two."},
    {Code::moved_twice, "moved-twice", warning,
     "gives a degree of freedom another value than one before it in the step; the last counts.",
     "give degrees of freedom other values than those before them in the step; the last count.",
     "Delete one of the two."},
    {Code::holds_nothing, "holds-nothing", warning, "holds no degree of freedom.",
     "hold no degree of freedom.", "Set the flags of what it holds, or delete it."},
    {Code::no_set, "no-set", warning, "is in no set.", "are in no set.",
     "Add it to a set, so that it can be found and told from others; it goes into the deck's only "
     "step."},
    {Code::empty_set, "empty-set", warning, "is empty.", "are empty.",
     "Delete it, or put the records into it that it was made for."},
    {Code::support_twice, "support-twice", note,
     "holds what another one in its step holds already.",
     "hold what others in their step hold already.", "It does no harm; one of them is enough."},
    {Code::too_long, "too-long", note,
     "has a number that a deck cannot hold: the solver reads 20 characters, and the nearest such "
     "number is written.",
     "have numbers that a deck cannot hold: the solver reads 20 characters, and the nearest such "
     "numbers are written.",
     "Nothing need be done, unless the last digit counts: the error is below 1e-14 of the number."},
});

constexpr bool is_in_order() {
  for (std::size_t i = 0; i < kCodes.size(); ++i) {
    if (kCodes.at(i).code != static_cast<Code>(i)) return false;
  }
  return true;
}
static_assert(is_in_order());

}  // namespace

std::span<const CodeWords> all_codes() { return kCodes; }

const CodeWords& words_of(Code code) { return kCodes.at(static_cast<std::size_t>(code)); }

}  // namespace checks
