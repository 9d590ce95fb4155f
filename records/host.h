#pragma once

#include <msado15_backcompat.h>
#include <orv_host.h>

#include "com/bstr.h"
#include "com/error.h"
#include "com/ptr.h"
#include "com/variant.h"

namespace orv {

/// A new object of one of the host's or the platform's classes, set running; it may live in any
/// context (CLSCTX_ALL). Empty when it cannot be created.
com::Ptr<IUnknown> create_object(REFCLSID clsid);

/// As above; also empty when the object does not answer Interface.
template <class Interface>
com::Ptr<Interface> create_object(REFCLSID clsid) {
  return create_object(clsid).query<Interface>();
}

/// The interface of an object that a client handed in; a failing query is raised as it is.
/// E_POINTER: there is no object.
template <class Interface>
com::Ptr<Interface> require_interface(IUnknown* object) {
  com::Ptr<Interface> result;
  com::check(com::require(object)->QueryInterface(__uuidof(Interface), result.put_void()));
  return com::require(std::move(result));
}

/// The model database behind an argument. The host passes its own interface; asking for it keeps
/// any other object, and one in another process, from being called through a wrong virtual table.
/// E_POINTER: there is none, or it is no model database.
com::Ptr<IModelDatabase> model_database(IDispatch* argument);

com::Ptr<IRecordStore> record_store(const com::Ptr<IModelDatabase>& database);

/// What the host's objects get as both cascade flags when a record saves them.
inline const com::Variant kCascadeOn{std::int16_t{VARIANT_TRUE}};

/// One run of FileOpHelper: the flags as truth values and the host's command for link tables.
class FileOperation {
 public:
  /// Raises a failing accessor of the model database.
  FileOperation(IDispatch* model_database, const VARIANT& cascade_down, const VARIANT& cascade_up);

  [[nodiscard]] IDispatch* database() const { return database_.get(); }
  [[nodiscard]] bool cascades_down() const { return cascade_down_; }
  [[nodiscard]] bool cascades_up() const { return cascade_up_; }

  /// The status of converting the second flag: the result of an operation that sets no other. An
  /// omitted flag does not convert, so that it is a failing one.
  [[nodiscard]] HRESULT base_result() const { return base_result_; }

  /// Runs a statement on a link table and tells the database that it was modified.
  /// Raises E_POINTER when the database has no command, and the command's failure.
  void execute(std::wstring_view statement) const;

 private:
  com::Ptr<IModelDatabase> database_;
  com::Ptr<Command15> command_;
  bool cascade_down_;
  bool cascade_up_;
  HRESULT base_result_;
};

}  // namespace orv
