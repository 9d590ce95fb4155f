#include "bench/model.h"

namespace bench {

ScratchFile::ScratchFile() {
  static int number = 0;
  wchar_t folder[MAX_PATH + 1] = {};
  GetTempPathW(MAX_PATH, folder);
  path_ = std::wstring(folder) + L"orv_bench_" + std::to_wstring(GetCurrentProcessId()) + L"_" +
          std::to_wstring(++number) + L".orvdb";
}

Model::Model(const std::wstring& location)
    : database_(Factory<IModelDatabaseFile>(__uuidof(ModelDatabase)).create()) {
  com::check(database_->Open(com::Bstr(location).get()), database_);
}

Model::Model(const ScratchFile& file, bool keeps_history) : Model(file.path()) {
  if (keeps_history) return;
  com::Ptr<IHistory> history;
  com::check(database_->get_History(history.put()), database_);
  com::check(history->put_MaximumSteps(0), history);
}

void fill(INodalForce& force) {
  force.put_Description(com::Bstr(L"Tip load").get());
  force.put_MultiplierID(3);
  force.put_Magnitude(1234.5678);
  force.put_Vx(0.57735026918962584);
  force.put_Vy(-0.40824829046386302);
  force.put_Vz(0.70710678118654757);
  force.put_CoordinateSystemID(2);
}

com::Ptr<IVertex> vertex_of(INodalForce& force) {
  com::Ptr<IDispatch> vertex;
  com::check(force.get_Vertex(vertex.put()), &force);
  return vertex.query<IVertex>();
}

ForceValues::ForceValues(INodalForce& force) {
  force.get_Description(description.put());
  vertex_of(force)->get_ID(&vertex_id);
  force.get_MultiplierID(&multiplier_id);
  force.get_Magnitude(&magnitude);
  force.get_Vx(&vx);
  force.get_Vy(&vy);
  force.get_Vz(&vz);
  force.get_CoordinateSystemID(&coordinate_system_id);
}

com::Ptr<INodalForces> make_new_forces(const Model& model, long count) {
  const auto load_set = Factory<ILoadSet>(__uuidof(HostLoadSet)).create();
  load_set->put_Description(com::Bstr(L"Wind").get());
  com::check(load_set->Save(model.argument(), com::Variant::omitted(), com::Variant::omitted()),
             load_set);

  const Factory<INodalForce> factory(__uuidof(NodalForce));
  const auto forces = Factory<INodalForces>(__uuidof(NodalForces)).create();
  for (long number = 1; number <= count; ++number) {
    const auto force = factory.create();
    fill(*force.get());
    force->put_Magnitude(0.1 * static_cast<double>(number));
    const auto vertex = vertex_of(*force.get()).query<ICoordinateVertex>();
    vertex->put_X(0.01 * static_cast<double>(number));
    vertex->put_Y(0.02 * static_cast<double>(number));
    com::Ptr<IDispatch> sets;
    com::check(force->get_LoadSets(sets.put()), force);
    com::check(sets.query<ILoadSets>()->Add(load_set.get()));
    com::check(forces->Add(force.get()), forces);
  }
  return forces;
}

void save_all(const Model& model, INodalForces& forces, const com::Variant& cascade) {
  com::check(forces.Save(model.argument(), cascade, cascade), &forces);
}

com::Ptr<INodalForces> load_all(const Model& model) {
  com::Ptr<IDispatch> forces;
  com::check(model->Load(com::Bstr(L"NodalForces").get(), com::Variant::omitted(),
                         com::Variant::omitted(), forces.put()));
  return forces.query<INodalForces>();
}

void delete_all(const Model& model, INodalForces& forces) {
  com::check(forces.Delete(model.argument()), &forces);
}

com::Ptr<INodalForce> item(INodalForces& forces, long index) {
  com::Ptr<INodalForce> force;
  com::check(forces.Item(static_cast<int>(index), force.put()), &forces);
  return force;
}

}  // namespace bench
