// Saving and loading forces through the model database against SQLite alone, running the same
// statements in one transaction.

#include <vector>

#include "bench/raw_sqlite.h"
#include "bench/sections.h"

namespace bench {
namespace {

constexpr int kRounds = 7;

/// What is saved or loaded: the forces' rows and links, or their vertices too.
enum class Scope { kForces, kVerticesToo };

using Texts = std::vector<std::string>;

std::string narrow(std::wstring_view text) { return {text.begin(), text.end()}; }

/// New forces whose vertices have the IDs 1, 2, ..., as they will have once they are saved.
com::Ptr<INodalForces> make_numbered_forces(const Model& model, long count) {
  const auto forces = make_new_forces(model, count);
  for (long index = 0; index < count; ++index) {
    vertex_of(*item(*forces.get(), index).get())->put_ID(index + 1);
  }
  return forces;
}

// The statements as texts, from the pieces that the objects give and the contract's link
// statements.

template <class Object>
std::string insert_text(Object& object) {
  return "INSERT INTO " + narrow(sql_string(object, 1).view()) + " (" +
         narrow(sql_string(object, 3).view()) + ") VALUES (" +
         narrow(sql_string(object, 4).view()) + ")";
}

Texts saving_texts(long count, Scope scope) {
  const ScratchFile file;
  const Model model(file);
  const auto forces = make_numbered_forces(model, count);
  Texts texts;
  for (long id = 1; id <= count; ++id) {
    const auto force = item(*forces.get(), id - 1);
    const std::string number = std::to_string(id);
    if (scope == Scope::kVerticesToo) texts.push_back(insert_text(*vertex_of(*force.get()).get()));
    texts.push_back(insert_text(*force.get()));
    texts.push_back("DELETE FROM NodalForceLoadSets WHERE NodalForceID = " + number);
    texts.push_back("INSERT INTO NodalForceLoadSets (LoadSetID, NodalForceID) VALUES (1, " +
                    number + ")");
  }
  return texts;
}

constexpr char kAllForces[] = "SELECT * FROM NodalForces ORDER BY NodalForceID";
constexpr char kSetsOfForce[] =
    "SELECT LoadSets.* FROM LoadSets INNER JOIN NodalForceLoadSets ON LoadSets.LoadSetID = "
    "NodalForceLoadSets.LoadSetID WHERE NodalForceLoadSets.NodalForceID = ";
constexpr char kVertex[] = "SELECT Description, X, Y, Z FROM Vertices WHERE VertexID = ";

Texts loading_texts(long count, Scope scope) {
  Texts texts{kAllForces};
  for (long id = 1; id <= count; ++id) {
    if (scope == Scope::kVerticesToo) texts.push_back(kVertex + std::to_string(id));
    texts.push_back(kSetsOfForce + std::to_string(id));
  }
  return texts;
}

void run_all(RawDatabase& database, const Texts& texts) {
  for (const std::string& text : texts) database.run(text);
}

template <class Work>
void in_transaction(RawDatabase& database, Work&& work) {
  database.run("BEGIN");
  work(database);
  database.run("COMMIT");
}

// Saving. Every time starts from a new file that holds one load set.

double time_of_saving(long count, Scope scope) {
  const ScratchFile file;
  const Model model(file);
  const auto forces =
      scope == Scope::kForces ? make_numbered_forces(model, count) : make_new_forces(model, count);
  const auto cascade = com::Variant::boolean(scope == Scope::kVerticesToo);
  return nanoseconds_each(count, [&] { save_all(model, *forces.get(), cascade); });
}

template <class Work>
double time_of_raw_saving(long count, Work&& work) {
  const ScratchFile file;
  { make_new_forces(Model(file), 0); }
  RawDatabase database(file);
  return nanoseconds_each(count, [&] { in_transaction(database, work); });
}

/// The values of the forces' rows, for a statement that is compiled once.
std::vector<ForceValues> values_of_forces(long count) {
  const ScratchFile file;
  const Model model(file);
  const auto forces = make_numbered_forces(model, count);
  std::vector<ForceValues> values;
  for (long index = 0; index < count; ++index) {
    values.emplace_back(*item(*forces.get(), index).get());
  }
  return values;
}

void save_prepared(RawDatabase& database, const std::vector<ForceValues>& forces) {
  RawStatement force(database,
                     "INSERT INTO NodalForces (Description, VertexID, MultiplierTableID, "
                     "Magnitude, Vx, Vy, Vz, CoordinateSystemID) VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
  RawStatement unlink(database, "DELETE FROM NodalForceLoadSets WHERE NodalForceID = ?");
  RawStatement link(database,
                    "INSERT INTO NodalForceLoadSets (LoadSetID, NodalForceID) VALUES (1, ?)");
  long id = 0;
  for (const ForceValues& values : forces) {
    ++id;
    force.run(values.description.view(), values.vertex_id, values.multiplier_id, values.magnitude,
              values.vx, values.vy, values.vz, values.coordinate_system_id);
    unlink.run(id);
    link.run(id);
  }
}

void compare_saving(long count) {
  const Texts forces = saving_texts(count, Scope::kForces);
  const Texts vertices_too = saving_texts(count, Scope::kVerticesToo);
  const std::vector<ForceValues> values = values_of_forces(count);
  const auto texts_as_measurement = [=](const Texts& texts) -> Measurement {
    return [&texts, count] {
      return time_of_raw_saving(count, [&](RawDatabase& database) { run_all(database, texts); });
    };
  };

  const Samples plain(
      "saving", kRounds,
      {[=] { return time_of_saving(count, Scope::kForces); }, texts_as_measurement(forces),
       [&] {
         return time_of_raw_saving(count,
                                   [&](RawDatabase& database) { save_prepared(database, values); });
       }});
  print_comparison("Save, rows and links / texts", plain, 1, 0.95);
  print_comparison("Save, rows and links / compiled once", plain, 2);
  const Samples cascading("saving with vertices", kRounds,
                          {[=] { return time_of_saving(count, Scope::kVerticesToo); },
                           texts_as_measurement(vertices_too)});
  print_comparison("Save, with new vertices / texts", cascading, 1, 0.95);
}

// Loading. All read the same file.

void load_prepared(RawDatabase& database, long count) {
  database.run(kAllForces);
  RawStatement sets(database, std::string(kSetsOfForce) + "?");
  for (long id = 1; id <= count; ++id) sets.run(id);
}

/// Forces on vertices that the model has no rows for, such as those of another program, against
/// the same forces with their vertices.
void compare_missing_vertices(const ScratchFile& file, long count) {
  const ScratchFile without;
  CopyFileW(file.path().c_str(), without.path().c_str(), FALSE);
  RawDatabase(without).run("DELETE FROM Vertices");
  const auto load = [=](const ScratchFile& from) -> Measurement {
    return [&from, count] {
      const Model model(from);
      com::Ptr<IDispatch> loaded;
      return nanoseconds_each(count, [&] { loaded = load_all(model); });
    };
  };
  compare("Load without rows of vertices / with them", 2, load(without), load(file), kRounds);
}

void compare_loading(long count) {
  const ScratchFile file;
  {
    const Model model(file);
    save_all(model, *make_new_forces(model, count).get(), com::Variant::omitted());
  }
  const Texts forces = loading_texts(count, Scope::kForces);
  const Texts vertices_too = loading_texts(count, Scope::kVerticesToo);
  const auto raw = [&](auto work) -> Measurement {
    return [&file, count, work] {
      RawDatabase database(file);
      // One transaction, or else every statement would lock the file anew.
      return nanoseconds_each(count, [&] { in_transaction(database, work); });
    };
  };

  const Samples samples("loading", kRounds,
                        {[&] {
                           const Model model(file);
                           com::Ptr<IDispatch> loaded;
                           return nanoseconds_each(count, [&] { loaded = load_all(model); });
                         },
                         raw([&](RawDatabase& database) { run_all(database, vertices_too); }),
                         raw([&](RawDatabase& database) { run_all(database, forces); }),
                         raw([=](RawDatabase& database) { load_prepared(database, count); })});
  print_comparison("Load / texts", samples, 1, 1);
  print_comparison("Load / texts, without the vertices", samples, 2);
  print_comparison("Load / compiled once, without the vertices", samples, 3);
  compare_missing_vertices(file, count);
}

}  // namespace

void run_saving(const Options& options) {
  print_heading("Forces saved in the model database / SQLite alone");
  compare_saving(options.saved_forces);
}

void run_loading(const Options& options) {
  print_heading("Forces loaded from the model database / SQLite alone");
  compare_loading(options.saved_forces);
}

}  // namespace bench
