#include "tools/deck/carried.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_set>
#include <utility>

#include "tools/deck/fields.h"
#include "tools/deck/limits.h"

namespace deck {
namespace {

struct Unsupported {
  std::string_view keyword;
  std::string_view reason;
};

/// Other cards that load or hold the model.
constexpr auto kUnsupported = std::to_array<Unsupported>({
    {"DLOAD", "*DLOAD loads elements, and the records hold loads of nodes."},
    {"DFLUX", "*DFLUX heats elements, and the records hold loads of nodes."},
    {"FILM", "*FILM belongs to faces of elements, and the records hold loads of nodes."},
    {"RADIATE", "*RADIATE belongs to faces of elements, and the records hold loads of nodes."},
    {"BOUNDARYF",
     "*BOUNDARYF belongs to faces of elements, and the records hold supports of nodes."},
    {"MASSFLOW", "*MASS FLOW belongs to faces of elements, and the records hold loads of nodes."},
    {"BASEMOTION", "*BASE MOTION moves all supports together, which no record does."},
    {"EQUATION", "*EQUATION ties nodes to one another, which no record does."},
    {"MPC", "*MPC ties nodes to one another, which no record does."},
    {"RIGIDBODY", "*RIGID BODY ties nodes to one another, which no record does."},
});

/// Why a card or a line stays in the deck; empty if it does not.
using Reason = std::string;

bool is_one_of(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

class CardReader {
 public:
  CardReader(const Deck& deck, Carried& carried) : deck_(deck), carried_(carried) {}

  void read(const Card& card) {
    if (!is_nodal(card)) {
      note_unsupported(card);
      return;
    }
    card_ = {};
    card_.card = &card;
    card_.place = place_of(card);
    stays_at_ = card.first;
    const Reason reason = read_card(card);
    if (!reason.empty()) {
      carried_.remarks.push_back(
          deck_.remark_at(stays_at_, reason + " The card stays in the deck as it is."));
      return;
    }
    rows_ += card_.rows.size();
    carried_.cards.push_back(std::move(card_));
  }

 private:
  static bool is_nodal(const Card& card) {
    return card.is("CLOAD") || (card.is("BOUNDARY") && !card.is("BOUNDARYF")) ||
           card.is("TEMPERATURE") || card.is("INITIALCONDITIONS") || card.is("CFLUX");
  }

  void note_unsupported(const Card& card) {
    const auto found =
        std::find_if(kUnsupported.begin(), kUnsupported.end(),
                     [&card](const Unsupported& each) { return card.is(each.keyword); });
    if (found == kUnsupported.end()) return;
    carried_.remarks.push_back(deck_.remark_at(
        card.first, std::string(found->reason) + " The card stays in the deck as it is."));
  }

  Reason read_card(const Card& card) {
    for (Reason reason : {reason_of_position(card), reason_of_parameters(card)}) {
      if (!reason.empty()) return reason;
    }
    for (std::size_t line = card.first + 1; line < card.end; ++line) {
      if (!deck_.lines[line].is_data) continue;
      stays_at_ = line;
      fields_.split(deck_.lines[line].text());
      Reason reason = read_line(line);
      if (!reason.empty()) return reason;
    }
    stays_at_ = card.first;
    return reason_of_conflict();
  }

  // --- The card as a whole ---

  Reason reason_of_position(const Card& card) const {
    if (deck_.lines[card.first].file != 0) return "The card stands in an included file.";
    for (std::size_t line = card.first + 1; line < card.end; ++line) {
      if (deck_.lines[line].is_data && deck_.lines[line].file != 0) {
        return "Lines of the card stand in the included file " +
               deck_.files[deck_.lines[line].file]->path + ".";
      }
    }
    if (card.is("INITIALCONDITIONS")) {
      return card.step == 0 ? "" : "Initial conditions stand before the first step.";
    }
    if (card.step == 0 && !card.is("BOUNDARY")) {
      return "The solver refuses the card before the first step.";
    }
    return card.step == 0 || card.within_step ? "" : "The card stands between two steps.";
  }

  Reason reason_of_parameters(const Card& card) {
    for (const Parameter& parameter : card.parameters) {
      Reason reason = card.is("INITIALCONDITIONS") ? reason_of_initial(parameter)
                                                   : reason_of_parameter(card, parameter);
      if (!reason.empty()) return reason;
    }
    if (card.is("INITIALCONDITIONS") && card.parameters.empty()) {
      return "*INITIAL CONDITIONS names no TYPE.";
    }
    return {};
  }

  static Reason reason_of_initial(const Parameter& parameter) {
    if (parameter.name != "TYPE") return "No record holds the parameter " + parameter.name + ".";
    if (parameter.value == "TEMPERATURE") return {};
    return "Records hold initial temperatures, and no initial condition of type " +
           parameter.value + ".";
  }

  Reason reason_of_parameter(const Card& card, const Parameter& parameter) {
    if (parameter.name == "AMPLITUDE") {
      card_.amplitude = deck_.number_of_amplitude(parameter.value);
      if (card_.amplitude != 0) return {};
      return "The deck has no amplitude " + quoted(parameter.value) + ".";
    }
    if (parameter.name == "OP" && is_one_of(parameter.value, {"NEW", "MOD"})) return {};
    if (parameter.name == "TIMEDELAY") return {};
    if (parameter.name == "LOADCASE" && (card.is("CLOAD") || card.is("BOUNDARY"))) return {};
    return "No record holds the parameter " + parameter.name +
           (parameter.value.empty() ? "" : "=" + parameter.value) + ".";
  }

  /// Supports and displacements are different records, so that their order would be lost.
  Reason reason_of_conflict() const {
    std::unordered_set<std::uint64_t> held;
    bool has_displacement = false;
    for (const Row& row : card_.rows) has_displacement |= row.kind == Kind::kDisplacement;
    if (!has_displacement) return {};
    const auto key = [](const Row& row, unsigned freedom) {
      return static_cast<std::uint64_t>(row.node) << 8 | freedom;
    };
    for (const Row& row : card_.rows) {
      if (row.kind != Kind::kSupport) continue;
      for (unsigned freedom = row.first; freedom <= row.last; ++freedom) {
        held.insert(key(row, freedom));
      }
    }
    for (const Row& row : card_.rows) {
      if (row.kind == Kind::kDisplacement && held.contains(key(row, row.first))) {
        return "The card holds degree of freedom " + std::to_string(row.first) + " of node " +
               std::to_string(row.node) + " and moves it as well; the last line wins.";
      }
    }
    return {};
  }

  // --- Data lines ---

  Reason read_line(std::size_t line) {
    Reason reason = read_nodes();
    if (!reason.empty()) return reason;
    Row row;
    row.amplitude = card_.amplitude;
    std::size_t each = 1;  // rows for a node
    const Card& card = *card_.card;
    if (card.is("CLOAD")) {
      reason = read_load(row);
    } else if (card.is("CFLUX")) {
      reason = read_heat(row);
    } else if (card.is("BOUNDARY")) {
      reason = read_boundary(row, each);
    } else {
      reason = read_temperature(row);
    }
    if (!reason.empty()) return reason;
    if (rows_ + card_.rows.size() + nodes_->size() * each > kMostRows) {
      return "The cards of the deck have more than " + std::to_string(kMostRows) +
             " rows together.";
    }
    const std::size_t begin = card_.rows.size();
    for (const std::int32_t node : *nodes_) {
      row.node = node;
      const std::uint8_t first = row.first;
      for (std::size_t i = 0; i < each; ++i, ++row.first) {
        if (each > 1) row.last = row.first;
        card_.rows.push_back(row);
      }
      row.first = first;
    }
    card_.lines.push_back({line, begin, card_.rows.size(), row.kind});
    return {};
  }

  /// The first field: a node, or a set.
  Reason read_nodes() {
    const std::string_view field = fields_[0];
    if (looks_like_whole_number(field)) {
      const auto node = whole_number(field);
      if (!node) {
        return "The solver reads ten characters of a node number, and another node than " +
               quoted(field) + " from them.";
      }
      one_node_.assign(1, *node);
      nodes_ = &one_node_;
    } else {
      const auto set = deck_.sets.find(std::string(field));
      if (set == deck_.sets.end()) return "The deck has no set " + quoted(field) + ".";
      if (!set->second.doubt.empty()) return set->second.doubt;
      nodes_ = &set->second.nodes;
    }
    const Card& card = *card_.card;
    const bool may_be_network = !card.is("CLOAD") && !card.is("BOUNDARY");
    for (const std::int32_t node : *nodes_) {
      if (!deck_.index_of_node.contains(node)) {
        return "The deck does not define node " + std::to_string(node) +
               "; the solver drops what stands there, or refuses it.";
      }
      if (!may_be_network && deck_.network_nodes.contains(node)) {
        return "Node " + std::to_string(node) +
               " belongs to a network or flow element, where the degrees of freedom are flows and "
               "pressures.";
      }
    }
    return {};
  }

  Reason read_value(std::string_view field, double& value) const {
    switch (read_number(field, value)) {
      case Reading::kNumber:
        return {};
      case Reading::kCut:
        return "The solver reads the first 20 characters of " + quoted(field) +
               ", which are another number.";
      case Reading::kNotFinite:
        return quoted(field) + " is not a finite number.";
      default:
        return quoted(field) + " is not a number that the solver reads.";
    }
  }

  Reason read_load(Row& row) const {
    const auto freedom = whole_number(fields_[1]);
    if (!freedom || *freedom < 1 || *freedom > 6) {
      return "Forces and moments have the degrees of freedom 1 to 6, and not " +
             quoted(fields_[1]) + ".";
    }
    row.kind = *freedom > 3 ? Kind::kMoment : Kind::kForce;
    row.first = row.last = static_cast<std::uint8_t>(*freedom);
    return read_value(fields_[2], row.value);
  }

  Reason read_heat(Row& row) const {
    const auto freedom = whole_number(fields_[1]);
    if (!freedom || (*freedom != 0 && *freedom != kTemperatureFreedom)) {
      return "Heat has the degree of freedom 11, and not " + quoted(fields_[1]) + ".";
    }
    row.kind = Kind::kHeatSource;
    row.first = row.last = kTemperatureFreedom;
    return read_value(fields_[2], row.value);
  }

  Reason read_temperature(Row& row) const {
    for (std::size_t field = 2; field < fields_.size(); ++field) {
      if (!fields_[field].empty()) return "Records hold no temperature gradient through a shell.";
    }
    row.kind = Kind::kTemperature;
    return read_value(fields_[1], row.value);
  }

  Reason read_boundary(Row& row, std::size_t& each) const {
    const auto first = whole_number(fields_[1]);
    const auto last = fields_[2].empty() ? first : whole_number(fields_[2]);
    if (!first || !last || *last < *first) {
      return quoted(fields_[1]) + " to " + quoted(fields_[2]) +
             " is no range of degrees of freedom.";
    }
    for (std::size_t field = 4; field < fields_.size(); ++field) {
      if (!fields_[field].empty()) return "Records hold no fifth field of *BOUNDARY.";
    }
    Reason reason = read_value(fields_[3], row.value);
    if (!reason.empty()) return reason;
    if (*first == *last && (*first == 0 || *first == kTemperatureFreedom)) {
      row.kind = Kind::kAppliedTemperature;
      row.first = row.last = kTemperatureFreedom;
      return {};
    }
    if (*first < 1 || *last > 6) {
      return "Records hold the degrees of freedom 1 to 6 and 11, and not " +
             std::to_string(*first) + " to " + std::to_string(*last) + ".";
    }
    row.first = static_cast<std::uint8_t>(*first);
    row.last = static_cast<std::uint8_t>(*last);
    row.kind = row.value == 0 ? Kind::kSupport : Kind::kDisplacement;
    if (row.kind == Kind::kSupport) row.value = 0;
    if (row.kind == Kind::kDisplacement) each = static_cast<std::size_t>(*last - *first) + 1;
    return {};
  }

  const Deck& deck_;
  Carried& carried_;
  Fields fields_;
  CarriedCard card_;
  std::size_t stays_at_ = 0;  ///< the line that a remark names
  std::size_t rows_ = 0;
  std::vector<std::int32_t> one_node_;
  const std::vector<std::int32_t>* nodes_ = nullptr;
};

}  // namespace

Carried read_cards(const Deck& deck) {
  Carried carried;
  CardReader reader(deck, carried);
  for (const Card& card : deck.cards) reader.read(card);
  return carried;
}

}  // namespace deck
