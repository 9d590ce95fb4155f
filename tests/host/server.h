#pragma once

#include <orv_host.h>
#include <orv_node.h>

#include <string>

#include "com/ptr.h"
#include "com/variant.h"
#include "gtest/gtest.h"
#include "tests/host/host.h"
#include "tests/host/late_bound.h"
#include "tests/host/loaded_module.h"

/// The built module as a client has it, loaded from its file: nothing of it need be registered.
namespace server {

/// The module; loaded, with the apartment that it needs, when first asked for.
const LoadedModule& module();

/// A new object of one of the server's classes.
com::Ptr<IUnknown> make(REFCLSID clsid);

/// A new object of Class, by its default interface.
template <class Class, class Interface>
com::Ptr<Interface> make() {
  return module().create<Interface>(__uuidof(Class));
}

/// The first members of a record's interface, which all kinds have. The interface is not one that
/// objects answer for, so that the record's own is given.
com::Ptr<IPersistentObject> as_record(IUnknown* object, REFIID own_interface);

/// SqlString, or "0x80004003" for a failure.
std::string sql(IPersistentObject& record, long piece);
template <class Interface>
std::string sql(const com::Ptr<Interface>& record, long piece) {
  return sql(*as_record(record.get(), __uuidof(Interface)), piece);
}
inline std::string sql(const com::Ptr<IPersistentObject>& record, long piece) {
  return sql(*record, piece);
}

/// The dirty flag of a record of any kind.
template <class Record>
long dirty(const com::Ptr<Record>& record) {
  long flag = -99;
  EXPECT_EQ(record->get_IsDirty(&flag), S_OK);
  return flag;
}

/// Base of tests: a host. Once the members of a derived class are gone, nothing of the host or of
/// the server may be left over.
class Test : public ::testing::Test {
 protected:
  ~Test() override;

  HRESULT load(IPersistentObject& record, const fake::Row& row);

 private:
  // Enters the apartment, which the host needs.
  const LoadedModule& module_ = module();

 protected:
  fake::Host host;
};

/// What most calls pass as cascade flags.
inline com::Variant yes() { return com::Variant::boolean(true); }
inline com::Variant no() { return com::Variant::boolean(false); }
inline com::Variant omitted() { return com::Variant::omitted(); }

}  // namespace server
