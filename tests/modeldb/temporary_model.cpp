#include "tests/modeldb/temporary_model.h"

#include <orv_modeldb.h>

#include "com/bstr.h"
#include "com/error.h"
#include "com/ptr.h"
#include "modeldb/odbc/session.h"

namespace model_test {
namespace {

constexpr wchar_t kDatabase[] = L"Database=";
constexpr wchar_t kTemplate[] = L"empty_model";

/// "odbc:" and how to log in to the tests' server, but for the database; empty when there is none.
std::wstring server() {
  std::wstring text(32767, L'\0');
  text.resize(
      GetEnvironmentVariableW(L"ORV_TEST_SERVER", text.data(), static_cast<DWORD>(text.size())));
  return text.empty() ? text : L"odbc:" + text;
}

/// Makes a model from which the others are copied, which takes less time than making each anew.
void make_template(modeldb::Session& session, const std::wstring& login) {
  session.run(L"CREATE DATABASE " + std::wstring(kTemplate));
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  {
    com::Ptr<IModelDatabaseFile> model;
    com::check(CoCreateInstance(__uuidof(ModelDatabase), nullptr, CLSCTX_INPROC_SERVER,
                                __uuidof(IModelDatabaseFile), model.put_void()));
    com::check(model->Open(com::Bstr(login + kDatabase + kTemplate).get()), model);
    model->Close();
  }
  CoUninitialize();
  // A database can be copied once nobody uses it; the server's part of the connection ends later.
  session.run(
      L"DO $$ BEGIN PERFORM pg_terminate_backend(pid, 300000) FROM pg_stat_activity WHERE datname "
      L"= '" +
      std::wstring(kTemplate) + L"'; END $$");
}

}  // namespace

TemporaryModel::TemporaryModel() {
  const std::wstring login = server();
  if (login.empty()) return;
  modeldb::Session session(login + kDatabase + L"postgres");
  session.connect();
  static int number = 0;
  if (number == 0) make_template(session, login);
  const std::wstring name = L"model_" + std::to_wstring(++number);
  session.run(L"CREATE DATABASE " + name + L" TEMPLATE " + kTemplate);
  on_server_ = login + kDatabase + name;
}

}  // namespace model_test
