// What registering the module writes and unregistering leaves. Runs in a
// Wine prefix of its own, in which no module is registered.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <orv_host.h>
#include <orv_node.h>

#include <string>

#include "tests/frame/copied_files.h"
#include "tests/frame/registry.h"
#include "tests/host/apartment.h"
#include "tests/host/late_bound.h"
#include "tests/kinds/kind.h"

namespace {

using frame::key_line;
using frame::RegistryLines;
using frame::take_out;
using frame::value_line;
using frame::without;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

std::wstring in_braces(REFGUID guid) {
  wchar_t text[39];
  StringFromGUID2(guid, text, 39);
  return text;
}

constexpr const wchar_t* kPlatform = sizeof(void*) == 8 ? L"\\409\\win64" : L"\\409\\win32";
const std::wstring kLibrary = in_braces(LIBID_ORV_NODELib);

/// Adds the keys of one class.
void expect_class(const Class& each, const std::wstring& module, RegistryLines& lines) {
  const auto expect_key = [&](const std::wstring& path, const std::wstring& text) {
    lines.insert(key_line(path));
    lines.insert(value_line(path, L"", text));
  };
  const std::wstring name(each.name.begin(), each.name.end());
  const std::wstring progid = L"Orv_Node." + name;
  const std::wstring in_registry = in_braces(each.clsid);
  const std::wstring clsid = L"CLSID\\" + in_registry;
  expect_key(progid + L".1", name + L" Class");
  expect_key(progid + L".1\\CLSID", in_registry);
  expect_key(progid, name + L" Class");
  expect_key(progid + L"\\CLSID", in_registry);
  expect_key(progid + L"\\CurVer", progid + L".1");
  expect_key(clsid, name + L" Class");
  expect_key(clsid + L"\\ProgID", progid + L".1");
  expect_key(clsid + L"\\VersionIndependentProgID", progid);
  expect_key(clsid + L"\\InprocServer32", module);
  expect_key(clsid + L"\\TypeLib", kLibrary);
  lines.insert(key_line(clsid + L"\\Programmable"));
  lines.insert(value_line(clsid + L"\\InprocServer32", L"ThreadingModel", L"Apartment"));
}

class Registration : public testing::Test {
 protected:
  /// What a run that was ended in the middle has left goes first.
  static void SetUpTestSuite() {
    const server::Apartment apartment;
    for (const wchar_t* const name : {L"orv_node.dll", L"orv_modeldb.dll"}) {
      server::LoadedModule(server::built_file(name)).unregister_server();
    }
  }

  /// What registering the module adds to the registry. Registers it twice, which is as good as
  /// once, and unregisters it again, which leaves nothing.
  static RegistryLines added_by_registering(const std::wstring& path) {
    const server::LoadedModule module(path);
    const RegistryLines before = frame::read_classes();
    EXPECT_EQ(module.register_server(), S_OK);
    const RegistryLines registered = frame::read_classes();
    EXPECT_EQ(module.register_server(), S_OK);
    EXPECT_EQ(frame::read_classes(), registered);
    EXPECT_EQ(module.unregister_server(), S_OK);
    EXPECT_EQ(frame::read_classes(), before);
    return without(registered, before);
  }

 private:
  const server::Apartment apartment_;
};

TEST_F(Registration, WritesExactlyTheKeysOfItsClassesInterfacesAndLibrary) {
  const std::wstring path = server::built_file(L"orv_node.dll");
  RegistryLines lines = added_by_registering(path);
  // The marshalling code is a class under the identifier of its first interface.
  const std::wstring proxies = in_braces(__uuidof(INodalBoundaryCondition));
  RegistryLines classes;
  for (const Class& each : all_classes()) {
    expect_class(each, path, classes);
    const std::wstring key = L"Interface\\" + in_braces(each.own_interface);
    EXPECT_THAT(take_out(lines, key),
                Contains(value_line(key + L"\\ProxyStubClsid32", L"", proxies)));
    // The platform enters a library for programs of the other width as well.
    take_out(lines, L"Wow6432Node\\" + key);
  }
  const std::wstring proxy_class = L"CLSID\\" + proxies;
  EXPECT_THAT(take_out(lines, proxy_class),
              Contains(value_line(proxy_class + L"\\InProcServer32", L"", path)));

  const std::wstring version = L"TypeLib\\" + kLibrary + L"\\1.0";
  const RegistryLines library = take_out(lines, L"TypeLib\\" + kLibrary);
  take_out(lines, L"Wow6432Node\\TypeLib\\" + kLibrary);
  EXPECT_THAT(library, Contains(value_line(version, L"", L"Orv_Node 1.0 Type Library")));
  EXPECT_THAT(library, Contains(value_line(version + kPlatform, L"", path)));

  EXPECT_THAT(without(classes, lines), IsEmpty()) << "missing";
  EXPECT_THAT(without(lines, classes), IsEmpty()) << "not expected";
}

TEST_F(Registration, OfTheModelDatabaseIsUndoneAsWell) {
  const std::wstring path = server::built_file(L"orv_modeldb.dll");
  const RegistryLines lines = added_by_registering(path);
  const std::wstring vertex = L"CLSID\\" + in_braces(__uuidof(HostVertex));
  EXPECT_THAT(lines, Contains(value_line(L"Orv_ModelDb.Vertex\\CLSID", L"",
                                         in_braces(__uuidof(HostVertex)))));
  EXPECT_THAT(lines, Contains(value_line(vertex + L"\\InprocServer32", L"", path)));
}

TEST_F(Registration, OfAClassReplacesWhatItsKeyHeld) {
  const std::wstring stale = L"CLSID\\" + in_braces(__uuidof(NodalForce)) + L"\\LocalServer32";
  RegSetValueW(HKEY_CLASSES_ROOT, stale.c_str(), REG_SZ, L"stale.exe", 0);
  const server::LoadedModule module;
  EXPECT_EQ(module.register_server(), S_OK);
  EXPECT_THAT(frame::read_classes(), Not(Contains(key_line(stale))));
  EXPECT_EQ(module.unregister_server(), S_OK);
}

TEST_F(Registration, WorksFromAFolderWithApostropheAndBlank) {
  const frame::CopiedFiles copy(L"o'rv %s ' node", {L"orv_node.dll"});
  const server::LoadedModule module(copy.file(L"orv_node.dll"));
  ASSERT_TRUE(module.handle());
  const RegistryLines before = frame::read_classes();
  EXPECT_EQ(module.register_server(), S_OK);
  const std::wstring key = L"CLSID\\" + in_braces(__uuidof(NodalForce)) + L"\\InprocServer32";
  EXPECT_THAT(frame::read_classes(), Contains(value_line(key, L"", copy.file(L"orv_node.dll"))));

  CLSID clsid;
  EXPECT_EQ(CLSIDFromProgID(L"Orv_Node.NodalForce", &clsid), S_OK);
  com::Ptr<IDispatch> force;
  EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, force.put_void()),
            S_OK);
  EXPECT_EQ(server::LateBound(force).put(L"Magnitude", com::Variant(1.5)), S_OK);
  force.reset();
  // Lets go of the copy, so that its file can be deleted.
  CoFreeUnusedLibrariesEx(0, 0);

  EXPECT_EQ(module.unregister_server(), S_OK);
  EXPECT_EQ(frame::read_classes(), before);
}

}  // namespace
