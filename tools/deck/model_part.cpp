#include "tools/deck/model_part.h"

#include <algorithm>
#include <string>

#include "tools/deck/element_types.h"
#include "tools/deck/fields.h"
#include "tools/deck/limits.h"

namespace deck {
namespace {

bool is_node_card(const Card& card) {
  return card.is("NODE") && !card.is("NODEP") && !card.is("NODEF") && !card.is("NODEO");
}

bool is_element_card(const Card& card) { return card.is("ELEMENT") && !card.is("ELEMENTO"); }

class ModelPartReader {
 public:
  explicit ModelPartReader(Deck& deck) : deck_(deck) {}

  void read() {
    nodes_of_card_.resize(deck_.cards.size());
    for (std::size_t i = 0; i < deck_.cards.size(); ++i) {
      const Card& card = deck_.cards[i];
      if (is_node_card(card)) read_nodes(card, nodes_of_card_[i]);
      if (is_element_card(card)) read_elements(card);
      if (card.is("AMPLITUDE")) read_amplitude(card);
    }
    // A range may reach up to the highest node of all, so that sets come after the nodes.
    for (std::size_t i = 0; i < deck_.cards.size(); ++i) {
      const Card& card = deck_.cards[i];
      if (const std::string* name = card.find("NSET"); name != nullptr && is_node_card(card)) {
        add(deck_.sets[*name].nodes, nodes_of_card_[i], card.first);
      }
      if (card.is("NSET")) read_set(card);
    }
    for (const Card& card : deck_.cards) {
      if (card.is("TRANSFORM") && !card.is("TRANSFORMF")) read_transform(card);
    }
  }

 private:
  [[noreturn]] void refuse(std::size_t line, const std::string& reason) const {
    throw Error(deck_.remark_at(line, reason).text());
  }

  /// Once for all pieces of a long line.
  void remark(std::size_t line, std::string reason) {
    Remark remark = deck_.remark_at(line, std::move(reason));
    const bool is_known = !deck_.remarks.empty() && deck_.remarks.back() == remark;
    if (!is_known) deck_.remarks.push_back(std::move(remark));
  }

  template <class Action>
  void each_data_line(const Card& card, Action action) {
    for (std::size_t line = card.first + 1; line < card.end; ++line) {
      if (!deck_.lines[line].is_data) continue;
      fields_.split(deck_.lines[line].text());
      action(line);
    }
  }

  std::int32_t number_or_refuse(std::size_t line, std::string_view field, const char* of_what) {
    const auto number = whole_number(field);
    if (number && *number >= 0) return *number;
    refuse(line, quoted(field) + " is not the number of " + of_what + ".");
  }

  // --- Nodes ---

  void read_nodes(const Card& card, std::vector<std::int32_t>& nodes) {
    std::size_t cut_numbers = 0;
    std::size_t first_cut = 0;
    const bool has_set = card.find("NSET") != nullptr;
    each_data_line(card, [&](std::size_t line) {
      const std::int32_t node = number_or_refuse(line, fields_[0], "a node");
      if (node == 0) refuse(line, "Node numbers begin with 1.");
      std::array<double, 3> place{};
      for (std::size_t axis = 0; axis < 3; ++axis) {
        const Reading reading = read_number(fields_[axis + 1], place[axis]);
        if (reading == Reading::kCut && cut_numbers++ == 0) first_cut = line;
        if (reading == Reading::kNoNumber || reading == Reading::kNotFinite) {
          refuse(line, quoted(fields_[axis + 1]) + " is not a coordinate.");
        }
      }
      put_node(node, place);
      if (has_set) nodes.push_back(node);
    });
    if (cut_numbers == 0) return;
    remark(first_cut,
           "The solver reads the first 20 characters of a coordinate, and so does this "
           "import; " +
               std::to_string(cut_numbers) + " of this card are longer and lose by it.");
  }

  void put_node(std::int32_t node, const std::array<double, 3>& place) {
    const std::size_t next = deck_.mesh.node_ids.size();
    const std::size_t index = deck_.index_of_node.insert(node, next);
    if (index == next) {
      deck_.mesh.node_ids.push_back(node);
      deck_.mesh.coordinates.push_back(place);
      deck_.highest_node = std::max(deck_.highest_node, node);
    } else {
      deck_.mesh.coordinates[index] = place;
    }
  }

  // --- Elements ---

  mesh::Block& block_of(const std::string& type, std::size_t nodes) {
    const auto found = std::find_if(deck_.mesh.blocks.begin(), deck_.mesh.blocks.end(),
                                    [&](const mesh::Block& block) { return block.type == type; });
    if (found != deck_.mesh.blocks.end()) return *found;
    deck_.mesh.blocks.push_back({type, nodes, {}, {}});
    return deck_.mesh.blocks.back();
  }

  void read_elements(const Card& card) {
    const std::string* type = card.find("TYPE");
    const std::string name = type == nullptr ? "" : *type;
    const std::size_t nodes = nodes_per_element(name);
    if (nodes == 0) {
      remark(card.first, "The elements of type " + quoted(name) +
                             " are not known here and left out "
                             "of the mesh.");
      if (is_network_or_flow(name)) read_network_nodes(card);
      return;
    }
    mesh::Block& block = block_of(name, nodes);
    std::size_t missing = 0;  // nodes of the element that is being read
    std::size_t last_line = card.first;
    each_data_line(card, [&](std::size_t line) {
      std::size_t field = 0;
      if (missing == 0) {
        block.ids.push_back(number_or_refuse(line, fields_[field++], "an element"));
        missing = nodes;
      }
      for (; field < fields_.size() && missing > 0; ++field) {
        const bool is_line_end = field + 1 == fields_.size() && fields_[field].empty();
        if (is_line_end) continue;
        const bool may_be_empty = name == "D" && fields_[field].empty();
        block.nodes.push_back(may_be_empty ? 0 : number_or_refuse(line, fields_[field], "a node"));
        --missing;
      }
      last_line = line;
    });
    if (missing > 0) {
      refuse(last_line, "Element " + std::to_string(block.ids.back()) + " has " +
                            std::to_string(nodes - missing) + " nodes; " + name + " has " +
                            std::to_string(nodes) + ".");
    }
    if (is_network_or_flow(name)) {
      deck_.network_nodes.insert(block.nodes.begin(), block.nodes.end());
    }
  }

  /// Elements of a network whose type is not known: any number behind the first is a node.
  void read_network_nodes(const Card& card) {
    each_data_line(card, [&](std::size_t) {
      for (std::size_t field = 1; field < fields_.size(); ++field) {
        if (const auto node = whole_number(fields_[field])) deck_.network_nodes.insert(*node);
      }
    });
  }

  // --- Sets ---

  void add(std::vector<std::int32_t>& nodes, const std::vector<std::int32_t>& more,
           std::size_t line) {
    nodes_in_sets_ += more.size();
    if (nodes_in_sets_ > kMostNodesInSets) {
      refuse(line, "The sets of the deck have more than " + std::to_string(kMostNodesInSets) +
                       " nodes together.");
    }
    nodes.insert(nodes.end(), more.begin(), more.end());
  }

  void read_set(const Card& card) {
    const std::string* name = card.find("NSET");
    if (name == nullptr || name->empty()) {
      remark(card.first, "*NSET without the name of the set, NSET=.");
      return;
    }
    if (card.find("ELSET") != nullptr) {
      remark(card.first, "The solver makes an empty set of *NSET with ELSET.");
      deck_.sets[*name];
      return;
    }
    // Counts as a set of its own until the card ends: a set that names itself adds nothing.
    std::vector<std::int32_t> nodes;
    std::string doubt;
    const bool is_range = card.find("GENERATE") != nullptr;
    each_data_line(card, [&](std::size_t line) {
      const std::string trouble =
          is_range ? add_range(nodes, line) : add_members(nodes, *name, line);
      if (trouble.empty()) return;
      remark(line, trouble);
      doubt = "The set " + quoted(*name) + " is not clear: see " + at_line(line) + ".";
    });
    NodeSet& set = deck_.sets[*name];
    if (!doubt.empty()) set.doubt = doubt;
    set.nodes.insert(set.nodes.end(), nodes.begin(), nodes.end());
  }

  std::string at_line(std::size_t line) const {
    return "line " + std::to_string(deck_.lines[line].number) + " of " +
           deck_.files[deck_.lines[line].file]->path;
  }

  /// Returns what is wrong with the line.
  std::string add_range(std::vector<std::int32_t>& nodes, std::size_t line) {
    const auto first = whole_number(fields_[0]);
    const auto last = whole_number(fields_[1]);
    const auto step = fields_[2].empty() ? 1 : whole_number(fields_[2]);
    if (!first || !last || !step || *first < 1 || *step < 1) {
      return "*NSET with GENERATE needs the first node, the last one and a step of 1 or more.";
    }
    std::vector<std::int32_t> range;
    const std::int64_t end = std::min<std::int64_t>(*last, deck_.highest_node);
    if ((end - *first) / *step > static_cast<std::int64_t>(deck_.mesh.node_ids.size())) {
      // Most of the range are no nodes, and the solver drops what is on them.
      for (const std::int32_t node : deck_.mesh.node_ids) {
        if (node >= *first && node <= end && (node - *first) % *step == 0) range.push_back(node);
      }
      std::sort(range.begin(), range.end());
    } else {
      for (std::int64_t node = *first; node <= end; node += *step) {
        const auto number = static_cast<std::int32_t>(node);
        if (deck_.index_of_node.contains(number)) range.push_back(number);
      }
    }
    add(nodes, range, line);
    return {};
  }

  std::string add_members(std::vector<std::int32_t>& nodes, const std::string& name,
                          std::size_t line) {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
      const std::string_view field = fields_[i];
      if (field.empty()) {
        if (i + 1 == fields_.size()) continue;
        return "A field of this line is empty, at which the solver was seen to crash.";
      }
      if (looks_like_whole_number(field)) {
        const auto node = whole_number(field);
        if (!node || *node < 1) return "The solver does not read " + quoted(field) + " as a node.";
        add(nodes, {*node}, line);
        continue;
      }
      const auto member = deck_.sets.find(std::string(field));
      if (member == deck_.sets.end()) {
        remark(line, field == name
                         ? "The set " + quoted(name) + " names itself, which adds nothing."
                         : "The solver drops the set " + quoted(field) +
                               ", which is not defined before this line.");
        continue;
      }
      if (!member->second.doubt.empty()) return member->second.doubt;
      if (field == name) {
        remark(line, "The set " + quoted(name) + " names itself, which adds nothing.");
        continue;
      }
      add(nodes, member->second.nodes, line);
    }
    return {};
  }

  // --- Amplitudes and transforms ---

  void read_amplitude(const Card& card) {
    const std::string* name = card.find("NAME");
    if (name == nullptr || name->empty()) return;
    if (known_amplitudes_.insert(*name).second) deck_.amplitudes.push_back({card.first, *name});
  }

  void read_transform(const Card& card) {
    Transform transform;
    transform.line = card.first;
    const std::string* set = card.find("NSET");
    const std::string* type = card.find("TYPE");
    transform.set = set == nullptr ? "" : *set;
    transform.system.is_cylindrical = type != nullptr && type->starts_with("C");
    each_data_line(card, [&](std::size_t line) {
      for (std::size_t i = 0; i < 6; ++i) {
        content::Vector& point = i < 3 ? transform.system.a : transform.system.b;
        const Reading reading = read_number(fields_[i], point.at(i % 3));
        if (reading != Reading::kNumber) {
          refuse(line, quoted(fields_[i]) + " is not a coordinate that the solver reads whole.");
        }
      }
    });
    deck_.transforms.push_back(transform);
    const auto number = static_cast<std::int32_t>(deck_.transforms.size());
    const auto found = deck_.sets.find(transform.set);
    if (found == deck_.sets.end()) {
      remark(card.first, "The set " + quoted(transform.set) + " of *TRANSFORM is not defined.");
      return;
    }
    for (const std::int32_t node : found->second.nodes) deck_.transform_of_node[node] = number;
  }

  Deck& deck_;
  Fields fields_;
  std::vector<std::vector<std::int32_t>> nodes_of_card_;
  std::unordered_set<std::string> known_amplitudes_;
  std::size_t nodes_in_sets_ = 0;
};

}  // namespace

void read_model_part(Deck& deck) { ModelPartReader(deck).read(); }

}  // namespace deck
