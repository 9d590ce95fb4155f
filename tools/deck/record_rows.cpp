#include "tools/deck/record_rows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>

#include "tools/content/record_name.h"
#include "tools/deck/fields.h"
#include "tools/deck/systems.h"

namespace deck {
namespace {

using content::Key;
using content::Vector;

/// What a rotation into another system leaves of a component that is none.
constexpr double kRotationNoise = 1e-15;

std::string plain(double value) { return number_text(value).text; }

/// What the rows are made of.
enum class Column : std::uint8_t {
  kMultiplier,
  kMagnitude,
  kVx,
  kVy,
  kVz,
  kSystem,
  kTx,
  kTy,
  kTz,
  kRx,
  kRy,
  kRz,
  kIsRotation,
  kDirection,
  kActiveRange,
  kStiffness,
  kScale,
  kActivationTime,
  kIsTimeVarying,
};

constexpr auto kColumnNames = std::to_array<std::string_view>(
    {"MultiplierTableID", "Magnitude", "Vx", "Vy", "Vz", "CoordinateSystemID", "Tx", "Ty", "Tz",
     "Rx", "Ry", "Rz", "IsRotation", "Direction", "ActiveRangeID", "Stiffness", "Scale",
     "ActivationTime", "IsTimeVarying"});

constexpr std::string_view text_of(Column column) {
  return kColumnNames[static_cast<std::size_t>(column)];
}

/// Where the records of a set belong.
struct Target {
  int step = 0;
  bool is_initial = false;
  bool is_model = false;
  std::optional<Place> place;  ///< the cards that the set came from
  std::string refusal;         ///< why there is none, to follow the name of a record
};

class RowMaker {
 public:
  RowMaker(const Deck& deck, const Carried& carried, const content::Content& content,
           const content::Source& source)
      : deck_(deck),
        carried_(carried),
        content_(content),
        source_(source),
        local_axes_(axes_of(deck)) {}

  RecordRows run() {
    find_targets();
    for (const content::Table& table : content_.tables) {
      const auto kind =
          std::find_if(kKindNames.begin(), kKindNames.end(),
                       [&](const KindNames& each) { return each.table == table.name; });
      if (kind == kKindNames.end()) {
        note_other_kind(table);
      } else {
        kind_ = static_cast<Kind>(kind - kKindNames.begin());
        add_table(table);
      }
    }
    return std::move(result_);
  }

 private:
  // --- Sets ---

  void find_targets() {
    for (const CarriedCard& card : carried_.cards) place_of_name_[card.place.name()] = card.place;
    for (const content::SetTable& table : content_.set_tables) {
      if (table.name == "DesignScenarios") continue;
      for (const content::Set& set : table.sets) {
        Target target = target_of(table.name, set);
        if (target.place) rows_at(*target.place);
        targets_[{table.name, set.id}] = std::move(target);
      }
    }
  }

  Target target_of(const std::string& table, const content::Set& set) const {
    for (const content::SetSource& origin : source_.sets) {
      if (origin.table != table || origin.set != set.id) continue;
      return at_place({origin.step, origin.keyword, parameters_from(origin.parameters)});
    }
    const auto named_place = place_of_name_.find(set.name);
    if (named_place != place_of_name_.end()) return at_place(named_place->second);

    const auto named = step_in_name(set.name);
    if (!named) return target_of_only_step("the set '" + set.name + "', whose name tells no step");
    Target target;
    target.step = named->step;
    target.is_initial = named->is_initial;
    target.is_model = named->step == 0 && !named->is_initial;
    if (named->is_unclear) {
      target.refusal = "is in the set '" + set.name +
                       "', whose name begins like that of a step and tells the number of none. "
                       "Name it 'Step 1', for example.";
    } else if (named->step > deck_.step_count()) {
      target.refusal = "is in the set '" + set.name + "', and the deck has " +
                       std::to_string(deck_.step_count()) + " steps.";
    } else if (named->rest.find('=') != std::string_view::npos) {
      target.refusal = "is in the set '" + set.name +
                       "', and the deck has no card with these parameters. Name the set 'Step " +
                       std::to_string(named->step) + "' alone.";
    }
    return target;
  }

  Target at_place(const Place& place) const {
    Target target;
    target.step = place.step;
    target.is_initial = place.keyword == "INITIALCONDITIONS";
    target.is_model = place.step == 0 && !target.is_initial;
    target.place = place;
    if (place.step > deck_.step_count()) {
      target.refusal = "belongs to step " + std::to_string(place.step) + ", and the deck has " +
                       std::to_string(deck_.step_count()) + ".";
    }
    return target;
  }

  /// Where the deck has one step, nothing need name it.
  Target target_of_only_step(const std::string& where) const {
    Target target;
    target.step = 1;
    if (deck_.step_count() != 1) {
      target.refusal = "is in " + where + ", and the deck has " +
                       std::to_string(deck_.step_count()) +
                       " steps. Put it into a set whose name begins with 'Step 1', for example.";
    }
    return target;
  }

  PlaceRows& rows_at(const Place& place) {
    const std::string key = place.key();
    const auto [found, is_new] = result_.places.try_emplace(key);
    if (is_new) {
      found->second.place = place;
      result_.keys.push_back(key);
    }
    return found->second;
  }

  // --- Records ---

  void note_other_kind(const content::Table& table) {
    if (table.size() == 0) return;
    result_.remarks.push_back(std::to_string(table.size()) + " " + table.name +
                              " are not written, since no nodal card of a deck carries them; the "
                              "first is " +
                              content::name_of(table, 0) + ".");
  }

  void refuse(const std::string& why) {
    result_.refusals.push_back(content::name_of(*table_, record_) + " " + why);
  }

  /// 0 if the table has no such column.
  double value_of(Column column) const {
    const std::size_t width = table_->columns.size();
    const std::size_t at = column_at_[static_cast<std::size_t>(column)];
    return at == width ? 0 : table_->values[record_ * width + at];
  }

  void find_columns() {
    const auto& columns = table_->columns;
    for (std::size_t i = 0; i < kColumnNames.size(); ++i) {
      const auto found = std::find(columns.begin(), columns.end(), kColumnNames[i]);
      column_at_[i] = static_cast<std::size_t>(found - columns.begin());
    }
  }

  void add_table(const content::Table& table) {
    table_ = &table;
    find_columns();
    static const std::vector<Key> no_sets;
    for (record_ = 0; record_ < table.size(); ++record_) {
      rows_.clear();
      if (!make_rows()) continue;
      const auto& sets = record_ < table.set_ids.size() ? table.set_ids[record_] : no_sets;
      if (sets.empty()) add_rows(target_of_only_step("no set"));
      for (const Key set : sets) {
        const auto target = targets_.find({table.sets, set});
        if (target == targets_.end()) {
          refuse("is in set " + std::to_string(set) + ", which the model does not have.");
        } else {
          add_rows(target->second);
        }
      }
    }
  }

  void add_rows(const Target& target) {
    if (!target.refusal.empty()) {
      refuse(target.refusal);
      return;
    }
    const std::string_view keyword = keyword_of(kind_, target.is_initial);
    if (target.is_initial && kind_ != Kind::kTemperature) {
      refuse("is in a set of initial conditions, which holds temperatures only.");
      return;
    }
    if (target.is_model && keyword != "BOUNDARY") {
      refuse(
          "is in a set of the model part, where a deck has supports only. Put it into the set "
          "of a step.");
      return;
    }
    const bool is_own = target.place && target.place->keyword == keyword;
    Place place = is_own ? *target.place : Place{target.step, std::string(keyword), {}};
    if (!is_own && target.is_initial) place.parameters = {{"TYPE", "TEMPERATURE"}};
    const Key of_place = amplitude_of(place);
    for (RecordRow row : rows_) {
      // Supports and temperatures have no multiplier of their own.
      const bool has_own = kind_ != Kind::kSupport && kind_ != Kind::kTemperature;
      if (!has_own) row.row.amplitude = of_place;
      if (row.row.amplitude == of_place) {
        rows_at(place).rows[index_of(kind_)].push_back(row);
      } else {
        const auto number = static_cast<std::size_t>(row.row.amplitude);
        rows_at(place.with_amplitude(number == 0 ? "" : deck_.amplitudes[number - 2].name))
            .rows[index_of(kind_)]
            .push_back(row);
      }
    }
  }

  Key amplitude_of(const Place& place) const {
    for (const Parameter& parameter : place.parameters) {
      if (parameter.name == "AMPLITUDE") return deck_.number_of_amplitude(parameter.value);
    }
    return 0;
  }

  /// The deck's number of the record's amplitude; nothing, and a refusal, if there is none.
  std::optional<Key> amplitude() {
    const double multiplier = value_of(Column::kMultiplier);
    if (multiplier == 0 || multiplier == 1) return 0;
    for (const content::Numbered& each : source_.amplitudes) {
      if (each.number != multiplier) continue;
      if (const Key number = deck_.number_of_amplitude(each.name); number != 0) return number;
      refuse("follows the amplitude " + each.name + ", which the deck does not have.");
      return std::nullopt;
    }
    refuse("has the MultiplierID " + plain(multiplier) +
           ", which is no amplitude of the deck; 1 means none.");
    return std::nullopt;
  }

  /// Fills rows_ with what the record asks for; false if it was refused.
  bool make_rows() {
    for (std::size_t i = 0; i < table_->columns.size(); ++i) {
      const double value = table_->values[record_ * table_->columns.size() + i];
      if (std::isfinite(value)) continue;
      refuse("has a " + table_->columns[i] + " that is not a finite number.");
      return false;
    }
    Row row;
    row.kind = kind_;
    row.node = table_->vertices[record_];
    switch (kind_) {
      case Kind::kForce:
      case Kind::kMoment:
        return make_load(row);
      case Kind::kSupport:
        return make_support(row);
      case Kind::kDisplacement:
        return make_displacement(row);
      case Kind::kAppliedTemperature:
      case Kind::kHeatSource:
        return make_thermal(row);
      case Kind::kTemperature:
        row.value = value_of(Column::kMagnitude);
        put(row);
        return true;
    }
    return false;
  }

  void put(const Row& row) { rows_.push_back({row, table_, record_}); }

  bool make_load(Row& row) {
    const auto number = amplitude();
    if (!number) return false;
    row.amplitude = *number;
    const double magnitude = value_of(Column::kMagnitude);
    Vector vector{value_of(Column::kVx), value_of(Column::kVy), value_of(Column::kVz)};
    const double length = std::hypot(vector[0], vector[1], vector[2]);
    if (!(length > 0) || !std::isfinite(length)) {
      refuse("has no direction: its vector is (" + plain(vector[0]) + ", " + plain(vector[1]) +
             ", " + plain(vector[2]) + ").");
      return false;
    }
    const auto noise = turn_to_node(row.node, vector);
    if (!noise) return false;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (std::abs(vector[axis]) <= *noise * length) continue;
      row.first = row.last = static_cast<std::uint8_t>(axis + (kind_ == Kind::kMoment ? 4 : 1));
      row.value = magnitude * (vector[axis] / length);
      if (!std::isfinite(row.value)) {
        refuse("is too large for a number of a deck.");
        return false;
      }
      put(row);
    }
    return true;
  }

  /// Turns the record's vector into the system of its node. Returns how much of the vector's length
  /// that may leave in a component that is none; nothing, and a refusal, if it cannot be turned.
  std::optional<double> turn_to_node(std::int32_t node, Vector& vector) {
    const auto found = deck_.transform_of_node.find(node);
    const Key of_node = found == deck_.transform_of_node.end() ? 0 : found->second;
    const double system = value_of(Column::kSystem);
    if (system == of_node) return 0;
    if (system != 0) {
      refuse("has the CoordinateSystemID " + plain(system) + ", and node " + std::to_string(node) +
             " is in " +
             (of_node == 0 ? "no *TRANSFORM" : "*TRANSFORM " + std::to_string(of_node)) + ".");
      return std::nullopt;
    }
    const auto axes = local_axes_(of_node, node);
    if (!axes) {
      refuse("is on node " + std::to_string(node) + ", whose *TRANSFORM has no axes there.");
      return std::nullopt;
    }
    const Vector global = vector;
    for (std::size_t i = 0; i < 3; ++i) {
      const Vector& axis = axes->at(i);
      vector.at(i) = global[0] * axis[0] + global[1] * axis[1] + global[2] * axis[2];
    }
    return kRotationNoise;
  }

  bool make_support(Row& row) {
    constexpr std::array flags{Column::kTx, Column::kTy, Column::kTz,
                               Column::kRx, Column::kRy, Column::kRz};
    for (std::uint8_t freedom = 1; freedom <= 6; ++freedom) {
      if (value_of(flags[freedom - 1U]) == 0) continue;
      row.first = freedom;
      while (freedom < 6 && value_of(flags[freedom]) != 0) ++freedom;
      row.last = freedom;
      put(row);
    }
    if (rows_.empty()) {
      result_.remarks.push_back(content::name_of(*table_, record_) +
                                " holds no degree of freedom and is not written.");
    }
    return true;
  }

  bool make_displacement(Row& row) {
    const auto number = amplitude();
    if (!number) return false;
    row.amplitude = *number;
    if (value_of(Column::kActiveRange) != 0) {
      refuse("has the ActiveRangeID " + plain(value_of(Column::kActiveRange)) +
             ", which *BOUNDARY cannot say.");
      return false;
    }
    const auto direction = signed_axis(row.node);
    if (!direction) return false;
    const auto [axis, sign] = *direction;
    const int first = axis + (value_of(Column::kIsRotation) != 0 ? 4 : 1);
    row.first = row.last = static_cast<std::uint8_t>(first);
    row.value = sign * value_of(Column::kMagnitude);
    put(row);
    return true;
  }

  struct SignedAxis {
    int axis = 0;  ///< 0 to 2
    double sign = 1;
  };

  /// Where the record's displacement goes; nothing, and a refusal, if that is along no axis.
  std::optional<SignedAxis> signed_axis(std::int32_t node) {
    const double direction = value_of(Column::kDirection);
    if (direction == 0 || direction == 1 || direction == 2) {
      return SignedAxis{.axis = static_cast<int>(direction)};
    }
    if (direction != 3) {
      refuse("has the Direction " + plain(direction) + ", which is none of 0 to 3.");
      return std::nullopt;
    }
    const Vector vector{value_of(Column::kVx), value_of(Column::kVy), value_of(Column::kVz)};
    const auto is_there = [](double component) { return component != 0; };
    if (std::ranges::count_if(vector, is_there) != 1) {
      refuse("goes along (" + plain(vector[0]) + ", " + plain(vector[1]) + ", " + plain(vector[2]) +
             "), which is no axis; *BOUNDARY moves along axes.");
      return std::nullopt;
    }
    if (deck_.transform_of_node.contains(node)) {
      refuse("goes along a vector on node " + std::to_string(node) +
             ", which is in a *TRANSFORM. Give it a Direction from 0 to 2 of that system.");
      return std::nullopt;
    }
    const auto* const component = std::ranges::find_if(vector, is_there);
    return SignedAxis{.axis = static_cast<int>(component - vector.begin()),
                      .sign = *component < 0 ? -1. : 1.};
  }

  bool make_thermal(Row& row) {
    const auto number = amplitude();
    if (!number) return false;
    row.amplitude = *number;
    for (const Column column :
         {Column::kStiffness, Column::kScale, Column::kActivationTime, Column::kIsTimeVarying}) {
      if (value_of(column) == 0) continue;
      refuse("has the " + std::string(text_of(column)) + " " + plain(value_of(column)) +
             ", which *" + std::string(keyword_of(kind_, false)) + " cannot say.");
      return false;
    }
    row.first = row.last = kTemperatureFreedom;
    row.value = value_of(Column::kMagnitude);
    put(row);
    return true;
  }

  const Deck& deck_;
  const Carried& carried_;
  const content::Content& content_;
  const content::Source& source_;
  const content::LocalAxes local_axes_;
  RecordRows result_;
  std::map<std::string, Place> place_of_name_;
  std::map<std::pair<std::string, Key>, Target> targets_;
  Kind kind_ = Kind::kForce;
  const content::Table* table_ = nullptr;
  std::array<std::size_t, kColumnNames.size()> column_at_{};  ///< in the table, by Column
  std::size_t record_ = 0;
  std::vector<RecordRow> rows_;  ///< of the record
};

}  // namespace

RecordRows rows_of(const Deck& deck, const Carried& carried, const content::Content& content,
                   const content::Source& source) {
  return RowMaker(deck, carried, content, source).run();
}

}  // namespace deck
