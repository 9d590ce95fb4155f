// How often the model asks a server and waits for its answer, counted by a proxy in between.

#include "bench/round_trips.h"

#include "bench/harness.h"
#include "bench/model.h"
#include "bench/proxy.h"
#include "bench/raw_odbc.h"
#include "bench/server.h"

namespace bench {
namespace {

constexpr int kRounds = 5;
constexpr long kCollection = 1'000;
constexpr double kNanosecondsOfMillisecond = 1e6;

/// Runs the work; its round trips, and its time in milliseconds.
template <class Work>
std::vector<double> trips_and_time(const Proxy& proxy, Work&& work) {
  const long before = proxy.round_trips();
  const double time = nanoseconds(work) / kNanosecondsOfMillisecond;
  return {static_cast<double>(proxy.round_trips() - before), time};
}

void print_trips(std::string_view name, const Samples& samples, double wanted = kNothingWanted) {
  std::printf("  %-50.*s %9.0f %9.1f", static_cast<int>(name.size()), name.data(), samples.time(0),
              samples.time(1));
  if (wanted != kNothingWanted) std::printf(" %15.0f", wanted);
  std::printf("\n");
}

/// `prepare` gives, in every round, the work that is measured.
template <class Prepare>
void measure_trips(std::string_view name, const Proxy& proxy, double wanted, Prepare&& prepare) {
  const Samples samples(name, kRounds, [&] {
    auto work = prepare();
    return trips_and_time(proxy, work);
  });
  print_trips(name, samples, wanted);
}

/// The save of a collection of new forces with new vertices.
auto saving(const Model& model, long count) {
  return [&model, forces = make_new_forces(model, count)] {
    save_all(model, *forces.get(), com::Variant::omitted());
  };
}

/// The save of a collection of new forces on nodes that are put under numbers from `first` on, with
/// coordinates of their own.
auto saving_on_numbers(const Model& model, long first) {
  const auto forces = make_new_forces(model, kCollection);
  static double lifted = 0;
  ++lifted;
  for (long index = 0; index < kCollection; ++index) {
    const auto node = vertex_of(*item(*forces.get(), index).get()).query<ICoordinateVertex>();
    node->put_ID(first + index);
    node->put_Z(lifted);
  }
  return [&model, forces] { save_all(model, *forces.get(), com::Variant::omitted()); };
}

/// The same of a force on its own.
auto saving_one(const Model& model) {
  return [&model, force = item(*make_new_forces(model, 1).get(), 0)] {
    com::check(force->Save(model.argument(), com::Variant::omitted(), com::Variant::omitted()),
               force);
  };
}

void measure_saving(const Proxy& proxy, const ScratchServerModel& scratch) {
  RawConnection connection(scratch.connection_text(proxy.port()));
  RawOdbcStatement one(connection, L"SELECT 1");
  one.run_for_number();
  measure_trips("ODBC alone: a statement that was run before", proxy, 1,
                [&] { return [&] { one.run_for_number(); }; });

  const Model model(scratch.location(proxy.port()));
  const Samples first("the first force of a model", 1,
                      [&] { return trips_and_time(proxy, saving_one(model)); });
  print_trips("Save of a force, the first since Open", first);
  measure_trips("Save of a force", proxy, 3, [&] { return saving_one(model); });
  measure_trips("Save of a collection of 1,000 forces", proxy, 100,
                [&] { return saving(model, kCollection); });
  constexpr long kFirst = 1'000'000;
  long next = kFirst;
  measure_trips("... on new nodes with numbers of their own", proxy, 100,
                [&] { return saving_on_numbers(model, next += kCollection); });
  measure_trips("... on nodes that are there, put elsewhere", proxy, 100,
                [&] { return saving_on_numbers(model, kFirst + kCollection); });
}

/// The save of a collection of forces that were loaded and changed.
auto saving_changed(const Model& model) {
  const auto forces = load_all(model);
  for (long index = 0; index < kCollection; ++index) {
    const auto force = item(*forces.get(), index);
    double magnitude = 0;
    force->get_Magnitude(&magnitude);
    force->put_Magnitude(magnitude + 1);
  }
  return [&model, forces] { save_all(model, *forces.get(), com::Variant::omitted()); };
}

/// The deletion of a collection of forces, which are saved first.
auto deleting(const Model& model) {
  const auto forces = make_new_forces(model, kCollection);
  save_all(model, *forces.get(), com::Variant::omitted());
  return [&model, forces] { delete_all(model, *forces.get()); };
}

void measure_changing(const Proxy& proxy, const ScratchServerModel& scratch) {
  saving(Model(scratch.location()), kCollection)();
  const Model model(scratch.location(proxy.port()));
  measure_trips("Save of 1,000 forces that have changed", proxy, 100,
                [&] { return saving_changed(model); });
  measure_trips("Delete of 1,000 forces", proxy, 100, [&] { return deleting(model); });
}

void measure_loading(const Proxy& proxy, const ScratchServerModel& scratch) {
  saving(Model(scratch.location()), kCollection)();
  const Model model(scratch.location(proxy.port()));
  const auto load = [&] { (void)load_all(model); };
  const Samples first("the first load", 1, [&] { return trips_and_time(proxy, load); });
  print_trips("Load of 1,000 forces, the first since Open", first);
  measure_trips("Load of 1,000 forces", proxy, 10, [&] { return load; });
}

}  // namespace

void print_round_trips() {
  std::printf("\n%-52s %9s %9s %15s\n", "Through a network of 1 ms to the server", "trips", "ms",
              "trips wanted");
  const Proxy proxy(server_port());
  measure_saving(proxy, ScratchServerModel());
  measure_loading(proxy, ScratchServerModel());
  measure_changing(proxy, ScratchServerModel());
}

}  // namespace bench
