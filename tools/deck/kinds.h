#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "tools/content/content.h"

namespace deck {

/// The kinds of records that the cards of a deck can carry.
enum class Kind : std::uint8_t {
  kForce,
  kMoment,
  kSupport,
  kDisplacement,
  kAppliedTemperature,
  kTemperature,
  kHeatSource,
};

inline constexpr std::size_t kKinds = 7;

struct KindNames {
  std::string_view table;
  std::string_view sets;
};

inline constexpr std::array<KindNames, kKinds> kKindNames{{
    {"NodalForces", "LoadSets"},
    {"NodalMoments", "LoadSets"},
    {"NodalBoundaryConditions", "ConstraintSets"},
    {"NodalPrescribedDisplacements", "LoadSets"},
    {"NodalAppliedTemperatures", "LoadSets"},
    {"NodalTemperatures", "LoadSets"},
    {"NodalHeatSources", "LoadSets"},
}};

constexpr std::size_t index_of(Kind kind) { return static_cast<std::size_t>(kind); }

/// The degree of freedom of temperatures and heat.
inline constexpr std::uint8_t kTemperatureFreedom = 11;

/// What a data line says of one node.
struct Row {
  std::int32_t node = 0;
  Kind kind = Kind::kForce;
  std::uint8_t first = 0;  ///< degrees of freedom, from 1; 0 where the card has none
  std::uint8_t last = 0;
  content::Key amplitude = 0;  ///< number of the amplitude, 0 if there is none
  double value = 0;            ///< 0 of a support
};

}  // namespace deck
