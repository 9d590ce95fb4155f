#pragma once

#include <orv_host.h>
#include <orv_node.h>

#include <initializer_list>
#include <string>

#include "com/ptr.h"
#include "com/variant.h"
#include "gtest/gtest.h"
#include "tests/host/host.h"

/// The built module as a client has it, loaded from its file: nothing of it need be registered.
namespace server {

/// The module, from the folder that the environment variable ORV_OUT_DIR names.
HMODULE module();

/// A new object of one of the server's classes.
com::Ptr<IUnknown> make(REFCLSID clsid);

/// Whether the module may be unloaded: nothing of it is in use.
bool is_unused();

/// A new object of Class, by its default interface.
template <class Class, class Interface>
com::Ptr<Interface> make() {
  const com::Ptr<IUnknown> object = make(__uuidof(Class));
  return object.query<Interface>();
}

/// The first members of a record's interface, which all kinds have. The interface is not one that
/// objects answer for, so that the record's own is given.
com::Ptr<IPersistentObject> as_record(IUnknown* object, REFIID own_interface);
template <class Interface>
com::Ptr<IPersistentObject> as_record(const com::Ptr<Interface>& object) {
  return as_record(object.get(), __uuidof(Interface));
}

/// SqlString, or "0x80004003" for a failure.
std::string sql(IPersistentObject& record, long piece);
template <class Interface>
std::string sql(const com::Ptr<Interface>& record, long piece) {
  return sql(*as_record(record), piece);
}

/// An object as a script uses it: members by name. Returns what the member returned.
class LateBound {
 public:
  explicit LateBound(IUnknown* object) : object_(com::Ptr<IUnknown>(object).query<IDispatch>()) {}

  HRESULT put(const wchar_t* name, const VARIANT& value) const;
  HRESULT put_reference(const wchar_t* name, IDispatch* object) const;
  HRESULT get(const wchar_t* name, com::Variant& value) const;

 private:
  HRESULT invoke(const wchar_t* name, WORD flags, const VARIANT* argument, VARIANT* result) const;

  com::Ptr<IDispatch> object_;
};

/// Base of tests: a host. Once the members of a derived class are gone, nothing of the host or of
/// the server may be left over.
class Test : public ::testing::Test {
 protected:
  ~Test() override;

 private:
  // Enters the apartment, which the host needs.
  HMODULE module_ = module();

 protected:
  fake::Host host;
};

/// What most calls pass as cascade flags.
inline com::Variant yes() { return com::Variant::boolean(true); }
inline com::Variant no() { return com::Variant::boolean(false); }
inline com::Variant omitted() { return com::Variant::omitted(); }

}  // namespace server
