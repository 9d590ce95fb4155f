// Saving and loading forces in a model on a server against ODBC alone, and the round trips that
// they take.

#include <algorithm>
#include <array>
#include <vector>

#include "bench/model.h"
#include "bench/raw_odbc.h"
#include "bench/round_trips.h"
#include "bench/sections.h"
#include "bench/server.h"

namespace bench {
namespace {

constexpr int kRounds = 3;

/// The values of a force's rows, as statements are bound to them.
struct Row {
  std::array<wchar_t, 64> description{};
  long multiplier_id = 0;
  double magnitude = 0;
  double vx = 0;
  double vy = 0;
  double vz = 0;
  long coordinate_system_id = 0;
  double x = 0;
  double y = 0;
  double z = 0;
};

Row row_of(INodalForce& force) {
  const ForceValues values(force);
  Row row{.multiplier_id = values.multiplier_id,
          .magnitude = values.magnitude,
          .vx = values.vx,
          .vy = values.vy,
          .vz = values.vz,
          .coordinate_system_id = values.coordinate_system_id};
  const auto description = values.description.view();
  std::copy_n(description.begin(), std::min(description.size(), row.description.size() - 1),
              row.description.begin());
  const auto vertex = vertex_of(force).query<ICoordinateVertex>();
  vertex->get_X(&row.x);
  vertex->get_Y(&row.y);
  vertex->get_Z(&row.z);
  return row;
}

std::vector<Row> make_rows(long count) {
  const ScratchFile file;
  const Model model(file);
  const auto forces = make_new_forces(model, count);
  std::vector<Row> rows;
  for (long index = 0; index < count; ++index) {
    rows.push_back(row_of(*item(*forces.get(), index).get()));
  }
  return rows;
}

/// The statements that the model executes to save a force: row by row, with the keys that the
/// server gives.
class RawSaving {
 public:
  explicit RawSaving(const RawConnection& connection)
      : vertex_(connection,
                L"INSERT INTO Vertices (VertexID, Description, X, Y, Z) VALUES (?, ?, ?, ?, ?) "
                L"RETURNING VertexID"),
        force_(connection,
               L"INSERT INTO NodalForces (NodalForceID, Description, VertexID, MultiplierTableID, "
               L"Magnitude, Vx, Vy, Vz, CoordinateSystemID) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?) "
               L"RETURNING NodalForceID"),
        unlink_(connection, L"DELETE FROM NodalForceLoadSets WHERE NodalForceID = ?"),
        link_(connection,
              L"INSERT INTO NodalForceLoadSets (LoadSetID, NodalForceID) VALUES (?, ?)") {
    bind_all(vertex_, L"", row_.x, row_.y, row_.z);
    bind_all(force_, row_.description.data(), vertex_id_, row_.multiplier_id, row_.magnitude,
             row_.vx, row_.vy, row_.vz, row_.coordinate_system_id);
    unlink_.bind(1, force_id_);
    link_.bind(1, kLoadSet);
    link_.bind(2, force_id_);
  }

  void save(const Row& row) {
    row_ = row;
    vertex_id_ = vertex_.run_for_number();
    force_id_ = force_.run_for_number();
    unlink_.run();
    link_.run();
  }

 private:
  static constexpr long kLoadSet = 1;

  /// Behind a key that the server is to give.
  template <class... Values>
  static void bind_all(RawOdbcStatement& statement, const wchar_t* description,
                       const Values&... values) {
    statement.bind_null(1);
    statement.bind(2, description, std::tuple_size_v<decltype(Row::description)>);
    int parameter = 2;
    (statement.bind(++parameter, values), ...);
  }

  Row row_;
  long vertex_id_ = 0;
  long force_id_ = 0;
  RawOdbcStatement vertex_;
  RawOdbcStatement force_;
  RawOdbcStatement unlink_;
  RawOdbcStatement link_;
};

// Saving. Every time starts from a new model that holds one load set.

double time_of_saving(long count) {
  const ScratchServerModel scratch;
  const Model model(scratch.location());
  const auto forces = make_new_forces(model, count);
  return nanoseconds_each(count, [&] { save_all(model, *forces.get(), com::Variant::omitted()); });
}

double time_of_raw_saving(const std::vector<Row>& rows) {
  const ScratchServerModel scratch;
  { make_new_forces(Model(scratch.location()), 0); }
  RawConnection connection(scratch.connection_text());
  return nanoseconds_each(static_cast<long>(rows.size()), [&] {
    connection.begin();
    RawSaving saving(connection);
    for (const Row& row : rows) saving.save(row);
    connection.commit();
  });
}

void compare_saving(long count) {
  const std::vector<Row> rows = make_rows(count);
  compare(
      "Save / prepared statements, one by one", 1, [=] { return time_of_saving(count); },
      [&] { return time_of_raw_saving(rows); }, kRounds);
}

// Loading. Both read the same model.

constexpr const wchar_t* kAllRows[] = {
    L"SELECT * FROM NodalForces ORDER BY NodalForceID",
    L"SELECT Vertices.* FROM NodalForces INNER JOIN Vertices ON Vertices.VertexID = "
    L"NodalForces.VertexID ORDER BY NodalForceID",
    L"SELECT LoadSets.*, NodalForceID FROM LoadSets INNER JOIN NodalForceLoadSets ON "
    L"LoadSets.LoadSetID = NodalForceLoadSets.LoadSetID ORDER BY NodalForceID"};

double time_of_fetching(const ScratchServerModel& scratch, long count) {
  const RawConnection connection(scratch.connection_text());
  return nanoseconds_each(count, [&] {
    for (const wchar_t* const sql : kAllRows) {
      if (RawOdbcStatement(connection, sql).run_and_read() != count) throw com::Error(E_UNEXPECTED);
    }
  });
}

void compare_loading(long count) {
  const ScratchServerModel scratch;
  {
    const Model model(scratch.location());
    save_all(model, *make_new_forces(model, count).get(), com::Variant::omitted());
  }
  const auto load = [&] {
    const Model model(scratch.location());
    com::Ptr<IDispatch> loaded;
    return nanoseconds_each(count, [&] { loaded = load_all(model); });
  };
  compare(
      "Load / the same rows fetched", 1.3, load, [&] { return time_of_fetching(scratch, count); },
      kRounds);
}

}  // namespace

void run_team(const Options& options) {
  print_round_trips();
  print_heading("Forces in a model on a server / ODBC alone");
  compare_saving(options.saved_forces);
  compare_loading(options.saved_forces);
}

}  // namespace bench
