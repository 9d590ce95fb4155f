// Registration scripts, and what registering the module writes and unregistering leaves. Runs in a
// Wine prefix of its own, in which no module is registered.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <orv_host.h>
#include <orv_node.h>

#include <algorithm>
#include <string>
#include <vector>

#include "kinds/kinds.h"
#include "tests/frame/late_binding.h"
#include "tests/frame/loaded_module.h"
#include "tests/frame/module_file.h"
#include "tests/frame/registry.h"

namespace {

using frame::key_line;
using frame::RegistryLines;
using frame::take_out;
using frame::value_line;
using frame::without;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

// The numbers of the scripts, in the order of the class table; the collection's is one more than
// the record's.
struct Script {
  std::wstring_view record;
  std::wstring_view collection;
  int record_number;
};
constexpr Script kScripts[] = {
    {L"NodalBoundaryCondition", L"NodalBoundaryConditions", 101},
    {L"NodalForce", L"NodalForces", 103},
    {L"NodalCharge", L"NodalCharges", 171},
    {L"NodalCurrent", L"NodalCurrents", 169},
    {L"NodalLumpedMass", L"NodalLumpedMasses", 109},
    {L"NodalTemperature", L"NodalTemperatures", 111},
    {L"NodalVoltage", L"NodalVoltages", 113},
    {L"NodalMoment", L"NodalMoments", 123},
    {L"NodalPrescribedVelocity", L"NodalPrescribedVelocities", 131},
    {L"NodalPrescribedDisplacement", L"NodalPrescribedDisplacements", 143},
    {L"NodalAppliedTemperature", L"NodalAppliedTemperatures", 147},
    {L"NodalAppliedVoltage", L"NodalAppliedVoltages", 149},
    {L"NodalRigidBoundary", L"NodalRigidBoundaries", 151},
    {L"NodalElasticBoundary", L"NodalElasticBoundaries", 153},
    {L"NodalDisplacementBoundary", L"NodalDisplacementBoundaries", 157},
    {L"NodalProbe", L"NodalProbes", 165},
    {L"NodalHeatSource", L"NodalHeatSources", 201},
    {L"NodalPrescribedInOutlet", L"NodalPrescribedInOutlets", 167},
};

struct RegisteredClass {
  std::wstring name;
  int script;
  std::wstring clsid;
};

std::wstring in_braces(REFGUID guid) {
  wchar_t text[39];
  StringFromGUID2(guid, text, 39);
  return text;
}

constexpr const wchar_t* kPlatform = sizeof(void*) == 8 ? L"\\409\\win64" : L"\\409\\win32";
const std::wstring kLibrary = in_braces(LIBID_ORV_NODELib);

CLSID class_identifier(std::wstring_view name) {
#define KIND(record, collection, script)            \
  if (name == L"" #record) return __uuidof(record); \
  if (name == L"" #collection) return __uuidof(collection);
  FOR_EACH_KIND(KIND)
#undef KIND
  return GUID_NULL;
}

std::vector<RegisteredClass> registered_classes() {
  std::vector<RegisteredClass> classes;
  for (const Script& script : kScripts) {
    for (const auto& [name, offset] : {std::pair{script.record, 0}, {script.collection, 1}}) {
      classes.push_back(
          {std::wstring(name), script.record_number + offset, in_braces(class_identifier(name))});
    }
  }
  return classes;
}

// --- The scripts ---------------------------------------------------------------------------------

std::string narrow(std::wstring_view text) { return {text.begin(), text.end()}; }

std::string expected_script(const RegisteredClass& registered) {
  const std::string name = narrow(registered.name);
  const std::string clsid = narrow(registered.clsid);
  return "HKCR\r\n"
         "{\r\n"
         "\tOrv_Node." +
         name + ".1 = s '" + name +
         " Class'\r\n"
         "\t{\r\n"
         "\t\tCLSID = s '" +
         clsid +
         "'\r\n"
         "\t}\r\n"
         "\tOrv_Node." +
         name + " = s '" + name +
         " Class'\r\n"
         "\t{\r\n"
         "\t\tCLSID = s '" +
         clsid +
         "'\r\n"
         "\t\tCurVer = s 'Orv_Node." +
         name +
         ".1'\r\n"
         "\t}\r\n"
         "\tNoRemove CLSID\r\n"
         "\t{\r\n"
         "\t\tForceRemove " +
         clsid + " = s '" + name +
         " Class'\r\n"
         "\t\t{\r\n"
         "\t\t\tProgID = s 'Orv_Node." +
         name +
         ".1'\r\n"
         "\t\t\tVersionIndependentProgID = s 'Orv_Node." +
         name +
         "'\r\n"
         "\t\t\tForceRemove Programmable\r\n"
         "\t\t\tInprocServer32 = s '%MODULE%'\r\n"
         "\t\t\t{\r\n"
         "\t\t\t\tval ThreadingModel = s 'Apartment'\r\n"
         "\t\t\t}\r\n"
         "\t\t\tTypeLib = s '" +
         narrow(kLibrary) +
         "'\r\n"
         "\t\t}\r\n"
         "\t}\r\n"
         "}\r\n";
}

/// Adds the number of a resource to the list in `result`; -1 for one that has a name instead.
BOOL CALLBACK add_number(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR result) {
  reinterpret_cast<std::vector<int>*>(result)->push_back(
      IS_INTRESOURCE(name) ? static_cast<int>(reinterpret_cast<ULONG_PTR>(name)) : -1);
  return TRUE;
}

/// The module as a file with resources; its code is not run.
class ResourceFile {
 public:
  explicit ResourceFile(const std::wstring& path)
      : handle_(LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE)) {}
  ~ResourceFile() { FreeLibrary(handle_); }
  ResourceFile(const ResourceFile&) = delete;
  ResourceFile& operator=(const ResourceFile&) = delete;

  [[nodiscard]] std::vector<int> numbers(const wchar_t* type) const {
    std::vector<int> found;
    EnumResourceNamesW(handle_, type, &add_number, reinterpret_cast<LONG_PTR>(&found));
    return found;
  }

  [[nodiscard]] std::string bytes(const wchar_t* type, int number) const {
    const HRSRC resource = FindResourceW(handle_, MAKEINTRESOURCEW(number), type);
    if (!resource) return {};
    const auto* data = static_cast<const char*>(LockResource(LoadResource(handle_, resource)));
    return {data, SizeofResource(handle_, resource)};
  }

 private:
  HMODULE handle_;
};

TEST(RegistrationScripts, AreTheResourcesOfTheirClassesByteForByte) {
  const ResourceFile module(frame::module_file(L"orv_node.dll"));
  std::vector<int> numbers;
  for (const RegisteredClass& registered : registered_classes()) {
    numbers.push_back(registered.script);
    EXPECT_EQ(module.bytes(L"REGISTRY", registered.script), expected_script(registered));
  }
  EXPECT_THAT(module.numbers(L"REGISTRY"), testing::UnorderedElementsAreArray(numbers));
  EXPECT_THAT(module.numbers(L"TYPELIB"), testing::ElementsAre(1));
}

// --- Registration --------------------------------------------------------------------------------

/// The keys of one class.
void expect_class(const RegisteredClass& registered, const std::wstring& module,
                  RegistryLines& lines) {
  const auto expect_key = [&](const std::wstring& path, const std::wstring& text) {
    lines.insert(key_line(path));
    lines.insert(value_line(path, L"", text));
  };
  const std::wstring progid = L"Orv_Node." + registered.name;
  const std::wstring title = registered.name + L" Class";
  const std::wstring clsid = L"CLSID\\" + registered.clsid;
  expect_key(progid + L".1", title);
  expect_key(progid + L".1\\CLSID", registered.clsid);
  expect_key(progid, title);
  expect_key(progid + L"\\CLSID", registered.clsid);
  expect_key(progid + L"\\CurVer", progid + L".1");
  expect_key(clsid, title);
  expect_key(clsid + L"\\ProgID", progid + L".1");
  expect_key(clsid + L"\\VersionIndependentProgID", progid);
  expect_key(clsid + L"\\InprocServer32", module);
  expect_key(clsid + L"\\TypeLib", kLibrary);
  lines.insert(key_line(clsid + L"\\Programmable"));
  lines.insert(value_line(clsid + L"\\InprocServer32", L"ThreadingModel", L"Apartment"));
}

std::vector<IID> own_interfaces() {
#define KIND(name, collection, script) __uuidof(I##name), __uuidof(I##collection),
  return {FOR_EACH_KIND(KIND)};
#undef KIND
}

class Registration : public testing::Test {
 protected:
  Registration() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~Registration() override { CoUninitialize(); }

  /// What registering the module adds to the registry; unregisters it again.
  static RegistryLines added_by_registering(const std::wstring& path) {
    const frame::LoadedModule module(path);
    const RegistryLines before = frame::read_classes();
    EXPECT_EQ(module.register_server(), S_OK);
    const RegistryLines registered = frame::read_classes();
    EXPECT_EQ(module.unregister_server(), S_OK);
    EXPECT_EQ(frame::read_classes(), before);
    return without(registered, before);
  }
};

TEST_F(Registration, WritesExactlyTheKeysOfItsClassesInterfacesAndLibrary) {
  const std::wstring path = frame::module_file(L"orv_node.dll");
  RegistryLines lines = added_by_registering(path);
  // The marshalling code is a class under the identifier of its first interface.
  const std::wstring proxies = in_braces(__uuidof(INodalBoundaryCondition));
  for (const IID& iid : own_interfaces()) {
    const std::wstring key = L"Interface\\" + in_braces(iid);
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

  RegistryLines classes;
  for (const RegisteredClass& registered : registered_classes()) {
    expect_class(registered, path, classes);
  }
  EXPECT_THAT(without(classes, lines), IsEmpty()) << "missing";
  EXPECT_THAT(without(lines, classes), IsEmpty()) << "not expected";
}

TEST_F(Registration, OfTheModelDatabaseIsUndoneAsWell) {
  const std::wstring path = frame::module_file(L"orv_modeldb.dll");
  const RegistryLines lines = added_by_registering(path);
  const std::wstring vertex = L"CLSID\\" + in_braces(__uuidof(HostVertex));
  EXPECT_THAT(lines, Contains(value_line(L"Orv_ModelDb.Vertex\\CLSID", L"",
                                         in_braces(__uuidof(HostVertex)))));
  EXPECT_THAT(lines, Contains(value_line(vertex + L"\\InprocServer32", L"", path)));
}

TEST_F(Registration, OfAClassReplacesWhatItsKeyHeld) {
  const std::wstring stale = L"CLSID\\" + in_braces(__uuidof(NodalForce)) + L"\\LocalServer32";
  RegSetValueW(HKEY_CLASSES_ROOT, stale.c_str(), REG_SZ, L"stale.exe", 0);
  const frame::LoadedModule module(frame::module_file(L"orv_node.dll"));
  EXPECT_EQ(module.register_server(), S_OK);
  EXPECT_THAT(frame::read_classes(), Not(Contains(key_line(stale))));
  EXPECT_EQ(module.unregister_server(), S_OK);
}

TEST_F(Registration, TwiceIsAsGoodAsOnce) {
  const RegistryLines before = frame::read_classes();
  const frame::LoadedModule module(frame::module_file(L"orv_node.dll"));
  EXPECT_EQ(module.register_server(), S_OK);
  const RegistryLines once = frame::read_classes();
  EXPECT_EQ(module.register_server(), S_OK);
  EXPECT_EQ(frame::read_classes(), once);
  EXPECT_EQ(module.unregister_server(), S_OK);
  EXPECT_EQ(frame::read_classes(), before);
}

/// A copy of the module in a folder of that name below the one for temporary files.
class ModuleInFolder {
 public:
  explicit ModuleInFolder(const std::wstring& name)
      : folder_(frame::environment(L"TEMP") + L"\\" + name), path_(folder_ + L"\\orv node.dll") {
    CreateDirectoryW(folder_.c_str(), nullptr);
    CopyFileW(frame::module_file(L"orv_node.dll").c_str(), path_.c_str(), FALSE);
  }
  ~ModuleInFolder() {
    DeleteFileW(path_.c_str());
    RemoveDirectoryW(folder_.c_str());
  }
  ModuleInFolder(const ModuleInFolder&) = delete;
  ModuleInFolder& operator=(const ModuleInFolder&) = delete;

  [[nodiscard]] const std::wstring& path() const { return path_; }

 private:
  std::wstring folder_;
  std::wstring path_;
};

TEST_F(Registration, WorksFromAFolderWithApostropheAndBlank) {
  const ModuleInFolder copy(L"o'rv %s ' node");
  const frame::LoadedModule module(copy.path());
  ASSERT_TRUE(module.is_loaded());
  const RegistryLines before = frame::read_classes();
  EXPECT_EQ(module.register_server(), S_OK);
  const std::wstring server = L"CLSID\\" + in_braces(__uuidof(NodalForce)) + L"\\InprocServer32";
  EXPECT_THAT(frame::read_classes(), Contains(value_line(server, L"", copy.path())));

  CLSID clsid;
  EXPECT_EQ(CLSIDFromProgID(L"Orv_Node.NodalForce", &clsid), S_OK);
  com::Ptr<IDispatch> force;
  EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, force.put_void()),
            S_OK);
  EXPECT_EQ(frame::put(force, L"Magnitude", com::Variant(1.5)), S_OK);
  force.reset();
  // Lets go of the copy, so that its file can be deleted.
  CoFreeUnusedLibrariesEx(0, 0);

  EXPECT_EQ(module.unregister_server(), S_OK);
  EXPECT_EQ(frame::read_classes(), before);
}

}  // namespace
