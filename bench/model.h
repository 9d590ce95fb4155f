#pragma once

#include <orv_modeldb.h>
#include <orv_node.h>
#include <windows.h>

#include <string>

#include "com/bstr.h"
#include "com/error.h"
#include "com/ptr.h"
#include "com/variant.h"

namespace bench {

/// The class object of a class, asked for once; creating through it costs no look-up.
template <class Interface>
class Factory {
 public:
  explicit Factory(REFCLSID clsid) {
    com::check(CoGetClassObject(clsid, CLSCTX_INPROC_SERVER, nullptr, __uuidof(IClassFactory),
                                factory_.put_void()));
  }

  [[nodiscard]] com::Ptr<Interface> create() const {
    com::Ptr<Interface> object;
    com::check(factory_->CreateInstance(nullptr, __uuidof(Interface), object.put_void()), factory_);
    return object;
  }

 private:
  com::Ptr<IClassFactory> factory_;
};

/// The name of a file that does not exist; whatever lies there is deleted at the end.
class ScratchFile {
 public:
  ScratchFile();
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile() { DeleteFileW(path_.c_str()); }

  [[nodiscard]] const std::wstring& path() const { return path_; }

 private:
  std::wstring path_;
};

/// A model database, open. While one is open, records are created with vertex and sets at the cost
/// that they have inside a host.
class Model {
 public:
  /// The history is what it costs: it is off unless it is measured.
  explicit Model(const ScratchFile& file, bool keeps_history = false);
  /// A model anywhere, such as on a server, with a history if there is one.
  explicit Model(const std::wstring& location);
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;
  ~Model() { database_->Close(); }

  [[nodiscard]] IModelDatabaseFile* operator->() const { return database_.get(); }
  /// What records and collections are handed as pModelDatabase.
  [[nodiscard]] IDispatch* argument() const {
    return static_cast<IModelDatabase*>(database_.get());
  }

 private:
  com::Ptr<IModelDatabaseFile> database_;
};

/// The values of a tip load: numbers whose 17 digits are all needed, as in a real model.
void fill(INodalForce& force);

com::Ptr<IVertex> vertex_of(INodalForce& force);

/// The values of a force's row.
struct ForceValues {
  explicit ForceValues(INodalForce& force);

  com::Bstr description;
  long vertex_id = 0;
  long multiplier_id = 0;
  double magnitude = 0;
  double vx = 0;
  double vy = 0;
  double vz = 0;
  long coordinate_system_id = 0;
};

/// A piece of SQL of a record, a vertex or a set.
template <class Object>
com::Bstr sql_string(Object& object, long code) {
  com::Bstr text;
  com::check(object.get_SqlString(code, text.put()), &object);
  return text;
}

/// A collection of `count` new forces, each with a new vertex of its own; all are in one load set,
/// which is saved in the model already.
com::Ptr<INodalForces> make_new_forces(const Model& model, long count);

/// Saves the forces; their vertices and load sets too, unless `cascade` says false.
void save_all(const Model& model, INodalForces& forces, const com::Variant& cascade);

/// All forces of the model, as a new collection.
com::Ptr<INodalForces> load_all(const Model& model);

/// Deletes the forces from the model and empties the collection.
void delete_all(const Model& model, INodalForces& forces);

com::Ptr<INodalForce> item(INodalForces& forces, long index);

}  // namespace bench
