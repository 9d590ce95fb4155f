#include "tools/deck/import.h"

#include <map>
#include <string>
#include <utility>

#include "tools/deck/carried.h"

namespace deck {
namespace {

using content::Key;

/// What scripts write for a truth value.
constexpr double kTrue = -1;

const std::array<std::vector<std::string>, kKinds>& columns() {
  static const std::vector<std::string> load{"MultiplierTableID", "Magnitude", "Vx", "Vy", "Vz",
                                             "CoordinateSystemID"};
  static const std::array<std::vector<std::string>, kKinds> all{{
      load,
      load,
      {"Tx", "Ty", "Tz", "Rx", "Ry", "Rz"},
      {"IsRotation", "Direction", "MultiplierTableID", "ActiveRangeID", "Magnitude", "Vx", "Vy",
       "Vz"},
      {"MultiplierTableID", "Magnitude", "Stiffness", "Scale", "ActivationTime", "IsTimeVarying"},
      {"Magnitude"},
      {"MultiplierTableID", "Magnitude", "ActivationTime"},
  }};
  return all;
}

class Importer {
 public:
  explicit Importer(const Deck& deck) : deck_(deck) {
    auto& tables = result_.content.tables;
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
      tables.push_back({});
      tables.back().name = kKindNames[kind].table;
      tables.back().sets = kKindNames[kind].sets;
      tables.back().columns = columns()[kind];
    }
    result_.content.set_tables = {{"LoadSets", {}}, {"ConstraintSets", {}}};
  }

  Imported run() {
    result_.content.vertices.ids = deck_.mesh.node_ids;
    result_.content.vertices.coordinates = deck_.mesh.coordinates;
    name_source();
    Carried carried = read_cards(deck_);
    for (const CarriedCard& card : carried.cards) add(card);
    result_.remarks = deck_.remarks;
    result_.remarks.insert(result_.remarks.end(), carried.remarks.begin(), carried.remarks.end());
    return std::move(result_);
  }

 private:
  void name_source() {
    content::Source& source = result_.source;
    source.deck = deck_.files.front()->path;
    source.checksum = deck_.checksum();
    for (const auto& [line, name] : deck_.amplitudes) {
      source.amplitudes.push_back(
          {deck_.number_of_amplitude(name), name, deck_.number_of_line(line)});
    }
    for (const Transform& transform : deck_.transforms) {
      source.transforms.push_back({static_cast<Key>(source.transforms.size()) + 1, transform.set,
                                   deck_.number_of_line(transform.line)});
    }
  }

  void add(const CarriedCard& card) {
    const bool is_boundary = card.place.keyword == "BOUNDARY";
    if (card.rows.empty()) set_for(card, is_boundary ? Kind::kSupport : Kind::kForce);
    for (const Row& row : card.rows) {
      content::Table& table = result_.content.tables[index_of(row.kind)];
      table.ids.push_back(0);
      table.vertices.push_back(row.node);
      table.set_ids.push_back({set_for(card, row.kind)});
      add_values(row, table.values);
    }
  }

  /// The set of a card's place, in the table to which the kind's sets belong.
  Key set_for(const CarriedCard& card, Kind kind) {
    const std::string table(kKindNames[index_of(kind)].sets);
    if (last_card_ == &card && last_table_ == table) return last_set_;
    last_card_ = &card;
    last_table_ = table;
    Key& known = sets_[{table, card.place.key()}];
    if (known == 0) {
      auto& sets = result_.content.set_tables[table == "LoadSets" ? 0 : 1].sets;
      known = static_cast<Key>(sets.size()) + 1;
      sets.push_back({known, card.place.name()});
      result_.source.sets.push_back({table, known, card.place.step, card.place.keyword,
                                     card.place.parameters_text(),
                                     deck_.number_of_line(card.card->first)});
    }
    last_set_ = known;
    return known;
  }

  void add_values(const Row& row, std::vector<double>& values) const {
    const double multiplier = row.amplitude == 0 ? 1 : row.amplitude;
    const auto put = [&values](std::initializer_list<double> more) {
      values.insert(values.end(), more);
    };
    switch (row.kind) {
      case Kind::kForce:
      case Kind::kMoment: {
        const int axis = (row.first - 1) % 3;
        const auto found = deck_.transform_of_node.find(row.node);
        const double system = found == deck_.transform_of_node.end() ? 0 : found->second;
        put({multiplier, row.value, axis == 0 ? 1. : 0., axis == 1 ? 1. : 0., axis == 2 ? 1. : 0.,
             system});
        break;
      }
      case Kind::kSupport:
        for (int freedom = 1; freedom <= 6; ++freedom) {
          put({freedom >= row.first && freedom <= row.last ? kTrue : 0});
        }
        break;
      case Kind::kDisplacement:
        put({row.first > 3 ? kTrue : 0, static_cast<double>((row.first - 1) % 3), multiplier, 0,
             row.value, 0, 0, 0});
        break;
      case Kind::kAppliedTemperature:
        put({multiplier, row.value, 0, 0, 0, 0});
        break;
      case Kind::kTemperature:
        put({row.value});
        break;
      case Kind::kHeatSource:
        put({multiplier, row.value, 0});
        break;
    }
  }

  const Deck& deck_;
  Imported result_;
  std::map<std::pair<std::string, std::string>, Key> sets_;  ///< by table and place
  const CarriedCard* last_card_ = nullptr;
  std::string last_table_;
  Key last_set_ = 0;
};

}  // namespace

Imported import(const Deck& deck) { return Importer(deck).run(); }

}  // namespace deck
