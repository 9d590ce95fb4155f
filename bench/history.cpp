// What it costs that changes can be undone: saving and deleting forces with a history and without.

#include "bench/model.h"
#include "bench/sections.h"

namespace bench {
namespace {

constexpr int kRounds = 7;

struct Times {
  double save;
  double change;
  double remove;
};

/// New forces with new vertices are saved, saved once more with another size, and deleted.
Times times(long count, bool keeps_history) {
  const ScratchFile file;
  const Model model(file, keeps_history);
  const auto forces = make_new_forces(model, count);
  const com::Variant whole = com::Variant::omitted();
  Times result{};
  result.save = nanoseconds_each(count, [&] { save_all(model, *forces.get(), whole); });
  for (long index = 0; index < count; ++index) item(*forces.get(), index)->put_Magnitude(0.5);
  result.change = nanoseconds_each(count, [&] { save_all(model, *forces.get(), whole); });
  result.remove = nanoseconds_each(count, [&] { delete_all(model, *forces.get()); });
  return result;
}

}  // namespace

void run_history(const Options& options) {
  print_heading("Forces saved with a history / without");
  const Samples samples("history", kRounds, [&] {
    const Times with = times(options.saved_forces, true);
    const Times without = times(options.saved_forces, false);
    return std::vector<double>{with.save,      without.save, with.change,
                               without.change, with.remove,  without.remove};
  });
  // Measurements stand in pairs, each beside the one without.
  const auto print = [&](std::string_view name, std::size_t with, double wanted) {
    print_pair(name, samples, with, with + 1, wanted);
  };
  print("Save, new forces with new vertices", 0, 1.15);
  print("Save, forces that have changed", 2, kNothingWanted);
  print("Delete", 4, kNothingWanted);
}

}  // namespace bench
