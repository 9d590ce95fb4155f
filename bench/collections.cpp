// Collections of growing size. The time per record tells whether an operation is linear.

#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "bench/model.h"
#include "bench/sections.h"

namespace bench {
namespace {

constexpr int kRounds = 5;
constexpr long kSmallest = 10'000;
// Adding it over and over touches every record once in an order that no cache foresees: it is a
// prime, and the sizes have none but small factors.
constexpr long long kStride = 7919;

using Forces = std::vector<com::Ptr<INodalForce>>;

/// Forces with the IDs 1, 2, ...
Forces make_forces(long count) {
  const Factory<INodalForce> factory(__uuidof(NodalForce));
  Forces forces;
  forces.reserve(static_cast<std::size_t>(count));
  for (long id = 1; id <= count; ++id) {
    forces.push_back(factory.create());
    forces.back()->put_ID(id);
  }
  return forces;
}

void add_all(INodalForces& collection, const Forces& forces) {
  for (const auto& force : forces) collection.Add(force.get());
}

void read_items(INodalForces& collection, long count) {
  for (long index = 0; index < count; ++index) item(collection, index);
}

/// What For Each does.
void enumerate(INodalForces& collection) {
  com::Ptr<IUnknown> unknown;
  com::check(collection.get__NewEnum(unknown.put()), &collection);
  const auto enumerator = unknown.query<IEnumVARIANT>();
  com::Variant element;
  while (enumerator->Next(1, element.put(), nullptr) == S_OK) {
  }
}

void look_up_all(INodalForces& collection, long count) {
  for (long step = 0; step < count; ++step) {
    long index = 0;
    collection.GetIndexById(static_cast<long>(step * kStride % count) + 1, &index);
  }
}

void release_all(Forces& forces) {
  for (auto& force : forces) force.reset();
}

enum MemoryOperation : std::size_t { kAdd, kItem, kForEach, kGetIndexById, kClear, kRelease };

/// Every operation once, in nanoseconds per record.
std::vector<double> measure_in_memory(long count) {
  const ScratchFile file;
  const Model model(file);
  const auto owner = Factory<INodalForces>(__uuidof(NodalForces)).create();
  INodalForces& collection = *owner.get();
  std::vector<double> times;
  const auto measure = [&](auto&& work) { times.push_back(nanoseconds_each(count, work)); };
  {
    const Forces forces = make_forces(count);
    measure([&] { add_all(collection, forces); });
    // From here on the collection alone holds the forces.
  }
  measure([&] { read_items(collection, count); });
  measure([&] { enumerate(collection); });
  measure([&] { look_up_all(collection, count); });
  measure([&] { collection.Clear(); });
  Forces forces = make_forces(count);
  measure([&] { release_all(forces); });
  return times;
}

enum DatabaseOperation : std::size_t { kSave, kLoad, kDelete, kOwnSave, kOwnLoad, kOwnDelete };

/// Every operation once, in nanoseconds per record; then their own processor time, likewise.
std::array<double, 6> measure_once_in_database(long count) {
  const ScratchFile file;
  const Model model(file);
  const auto forces = make_new_forces(model, count);
  com::Ptr<INodalForces> loaded;
  std::array<double, 6> times{};
  const auto measure = [&](DatabaseOperation operation, DatabaseOperation own, auto&& work) {
    const double before = own_nanoseconds();
    times[operation] = nanoseconds_each(count, work);
    times[own] = (own_nanoseconds() - before) / static_cast<double>(count);
  };
  measure(kSave, kOwnSave, [&] { save_all(model, *forces.get(), com::Variant::omitted()); });
  measure(kLoad, kOwnLoad, [&] { loaded = load_all(model); });
  measure(kDelete, kOwnDelete, [&] { delete_all(model, *loaded.get()); });
  return times;
}

/// The mean of as many small collections as the steps of the processor time call for.
std::vector<double> measure_in_database(long count) {
  constexpr long kRecords = 200'000;
  const long times = std::max(kRecords / count, 1L);
  std::vector<double> mean(6);
  for (long time = 0; time < times; ++time) {
    const auto once = measure_once_in_database(count);
    for (std::size_t i = 0; i < mean.size(); ++i) {
      mean[i] += once[i] / static_cast<double>(times);
    }
  }
  return mean;
}

/// One line of the table: the time of an operation, or its ratio to that of another.
struct Line {
  std::string_view name;
  std::size_t operation;
  std::optional<std::size_t> other = std::nullopt;
  double wanted_growth = kNothingWanted;

  [[nodiscard]] double value(const Samples& samples) const {
    return other ? samples.ratio(operation, *other) : samples.time(operation);
  }
};

constexpr Line kMemoryLines[] = {
    {"Add", kAdd},
    {"Item", kItem},
    {"For Each", kForEach},
    {"GetIndexById", kGetIndexById},
    {"Clear", kClear},
    {"release one by one", kRelease},
    {"Clear / release one by one", kClear, kRelease},
};
constexpr Line kDatabaseLines[] = {
    {"Save", kSave},
    {"Load", kLoad},
    {"Delete", kDelete},
    {"Save, own processor time", kOwnSave, std::nullopt, 1.2},
    {"Load, own processor time", kOwnLoad, std::nullopt, 1.2},
    {"Delete, own processor time", kOwnDelete, std::nullopt, 1.2},
};

void print_line(const Line& line, const std::vector<Samples>& by_size) {
  std::printf("  %-38.*s", static_cast<int>(line.name.size()), line.name.data());
  for (const Samples& samples : by_size) {
    std::printf(" %11.*f", line.other ? 2 : 0, line.value(samples));
  }
  if (!line.other) {
    std::printf(" %7.2f", line.value(by_size.back()) / line.value(by_size.front()));
  }
  if (line.wanted_growth != kNothingWanted) std::printf(" %7.2f", line.wanted_growth);
  std::printf("\n");
}

/// Measures collections of each size and prints the lines of what was measured.
void print_table(std::string_view title, const std::vector<long>& sizes,
                 std::vector<double> (*measure)(long), std::span<const Line> lines) {
  std::printf("\n%-40.*s", static_cast<int>(title.size()), title.data());
  for (const long size : sizes) std::printf(" %11ld", size);
  std::printf(" %7s %7s\n", "growth", "wanted");

  std::vector<Samples> by_size;
  for (const long size : sizes) {
    by_size.emplace_back("collection of " + std::to_string(size), kRounds,
                         [=] { return measure(size); });
  }
  for (const Line& line : lines) print_line(line, by_size);
}

/// The largest size, and smaller ones by tenths.
std::vector<long> sizes_up_to(long largest) {
  std::vector<long> sizes{largest};
  while (sizes.front() / 10 >= kSmallest) sizes.insert(sizes.begin(), sizes.front() / 10);
  return sizes;
}

}  // namespace

void run_collections(const Options& options) {
  const std::vector<long> sizes = sizes_up_to(options.largest_collection);
  print_table("In memory, ns for each record of", sizes, measure_in_memory, kMemoryLines);
  print_table("In a model database, ns for each of", sizes, measure_in_database, kDatabaseLines);
}

}  // namespace bench
