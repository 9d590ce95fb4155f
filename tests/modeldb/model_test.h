#pragma once

#include <gmock/gmock.h>
#include <msado15_backcompat.h>
#include <orv_modeldb.h>
#include <orv_node.h>

#include <string>
#include <string_view>

#include "com/bstr.h"
#include "com/ptr.h"
#include "com/variant.h"
#include "tests/modeldb/temporary_model.h"

namespace model_test {

/// A new object of a registered class.
template <class Class, class Interface>
com::Ptr<Interface> create() {
  com::Ptr<Interface> object;
  const HRESULT result = CoCreateInstance(__uuidof(Class), nullptr, CLSCTX_INPROC_SERVER,
                                          __uuidof(Interface), object.put_void());
  EXPECT_EQ(result, S_OK);
  return object;
}

/// The description of the failure that was reported last, which is then gone.
std::string last_sentence();

/// In a test: the call fails, and the sentence that a script would see holds the words.
#define EXPECT_SENTENCE(call, ...)                                           \
  do {                                                                       \
    EXPECT_TRUE(FAILED(call));                                               \
    EXPECT_THAT(model_test::last_sentence(), ::testing::AllOf(__VA_ARGS__)); \
  } while (false)

std::string narrow(std::wstring_view text);
inline com::Bstr bstr(std::wstring_view text) { return com::Bstr(text); }

/// A model in a file of its own, open.
class ModelTest : public ::testing::Test {
 protected:
  ModelTest();
  ~ModelTest() override;

  HRESULT open(std::wstring_view path) { return database->Open(bstr(path).get()); }
  /// Closes the model and opens it anew, with nothing in memory.
  void reopen();

  /// The value of a query's first row and column, as text; "" when there is no row.
  std::string value(std::wstring_view sql);
  /// The number of rows in a table.
  std::string count(const std::wstring& table) { return value(L"SELECT count(*) FROM " + table); }
  HRESULT execute(std::wstring_view sql);

  com::Ptr<IRecordStore> store();
  /// A force at a vertex of its own.
  com::Ptr<INodalForce> make_force(double magnitude);
  template <class Object>
  HRESULT save(const com::Ptr<Object>& object) {
    return object->Save(database.get(), com::Variant::omitted(), com::Variant::omitted());
  }
  static com::Ptr<ICoordinateVertex> vertex_of(const com::Ptr<INodalForce>& force);
  static com::Ptr<ILoadSets> load_sets_of(const com::Ptr<INodalForce>& force);
  static com::Ptr<ILoadSet> make_load_set(std::wstring_view name);
  template <class Record>
  static long id_of(const com::Ptr<Record>& record) {
    long id = -1;
    record->get_ID(&id);
    return id;
  }

  /// ModelDatabase.Load; null when it fails.
  com::Ptr<INodalForces> load_forces(const VARIANT& where = com::Variant::omitted(),
                                     const VARIANT& order = com::Variant::omitted());
  com::Ptr<INodalForce> load_force(long id);

  TemporaryModel file;
  com::Ptr<IModelDatabaseFile> database;
};

}  // namespace model_test
