#include "tests/modeldb/model_test.h"

#include <windows.h>

namespace model_test {

std::string last_sentence() {
  com::Ptr<IErrorInfo> info;
  if (GetErrorInfo(0, info.put()) != S_OK) return "";
  com::Bstr text;
  info->GetDescription(text.put());
  return narrow(text.view());
}

std::string narrow(std::wstring_view text) {
  const int wide = static_cast<int>(text.size());
  std::string result(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), wide, nullptr, 0, nullptr, nullptr), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), wide, result.data(), static_cast<int>(result.size()),
                      nullptr, nullptr);
  return result;
}

ModelTest::ModelTest() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  database = create<ModelDatabase, IModelDatabaseFile>();
  EXPECT_EQ(open(file.path()), S_OK) << last_sentence();
}

ModelTest::~ModelTest() {
  if (database) database->Close();
  database.reset();
  CoUninitialize();
}

void ModelTest::reopen() {
  database->Close();
  EXPECT_EQ(open(file.path()), S_OK) << last_sentence();
}

std::string ModelTest::value(std::wstring_view sql) {
  com::Ptr<IDispatch> object;
  EXPECT_EQ(database->Query(bstr(sql).get(), object.put()), S_OK) << last_sentence();
  const auto rows = object.query<Recordset15>();
  VARIANT_BOOL at_end = VARIANT_TRUE;
  if (!rows || FAILED(rows->get_EOF(&at_end)) || at_end) return "";
  com::Ptr<Fields> fields;
  rows->get_Fields(fields.put());
  com::Ptr<Field> field;
  fields->get_Item(com::Variant(0), field.put());
  com::Variant value;
  field->get_Value(value.put());
  return narrow(com::Bstr::view(value.as(VT_BSTR).get().bstrVal));
}

HRESULT ModelTest::execute(std::wstring_view sql) {
  com::Ptr<IDispatch> object;
  database->get_Connection(object.put());
  const auto connection = object.query<Connection15>();
  com::Ptr<_Recordset> rows;
  return connection->Execute(bstr(sql).get(), nullptr, adExecuteNoRecords, rows.put());
}

com::Ptr<IRecordStore> ModelTest::store() {
  com::Ptr<IRecordStore> store;
  database->get_RecordStore(store.put());
  return store;
}

com::Ptr<INodalForce> ModelTest::make_force(double magnitude) {
  auto force = create<NodalForce, INodalForce>();
  force->put_Magnitude(magnitude);
  return force;
}

com::Ptr<ICoordinateVertex> ModelTest::vertex_of(const com::Ptr<INodalForce>& force) {
  com::Ptr<IDispatch> vertex;
  force->get_Vertex(vertex.put());
  return vertex.query<ICoordinateVertex>();
}

com::Ptr<ILoadSets> ModelTest::load_sets_of(const com::Ptr<INodalForce>& force) {
  com::Ptr<IDispatch> sets;
  force->get_LoadSets(sets.put());
  return sets.query<ILoadSets>();
}

com::Ptr<ILoadSet> ModelTest::make_load_set(std::wstring_view name) {
  auto set = create<LoadSet, ILoadSet>();
  set->put_Description(bstr(name).get());
  return set;
}

com::Ptr<INodalForces> ModelTest::load_forces(const VARIANT& where, const VARIANT& order) {
  com::Ptr<IDispatch> forces;
  const auto table = bstr(L"NodalForces");
  if (FAILED(database->Load(table.get(), where, order, forces.put()))) return nullptr;
  return forces.query<INodalForces>();
}

com::Ptr<INodalForce> ModelTest::load_force(long id) {
  const auto forces =
      load_forces(com::Variant(com::Bstr(L"NodalForceID = " + std::to_wstring(id))));
  com::Ptr<INodalForce> force;
  if (forces) forces->Item(0, force.put());
  return force;
}

}  // namespace model_test
