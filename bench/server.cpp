#include "bench/server.h"

#include <windows.h>

#include "bench/model.h"
#include "bench/raw_odbc.h"

namespace bench {
namespace {

constexpr std::wstring_view kPort = L"Port=";

/// How to log in as the server's owner, but for the database; empty when there is no server.
std::wstring login() {
  std::wstring text(32767, L'\0');
  text.resize(
      GetEnvironmentVariableW(L"ORV_TEST_SERVER", text.data(), static_cast<DWORD>(text.size())));
  return text;
}

std::wstring text_for(const std::wstring& database) { return login() + L"Database=" + database; }

void run_on_server(const std::wstring& sql) { RawConnection(text_for(L"postgres")).run(sql); }

}  // namespace

bool has_server() { return !login().empty(); }

std::uint16_t server_port() {
  const std::wstring text = login();
  return static_cast<std::uint16_t>(std::stoi(text.substr(text.find(kPort) + kPort.size())));
}

ScratchServerModel::ScratchServerModel() {
  static int number = 0;
  name_ = L"bench_" + std::to_wstring(++number);
  run_on_server(L"CREATE DATABASE " + name_);
  Model{location()};
}

ScratchServerModel::~ScratchServerModel() {
  try {
    run_on_server(L"DROP DATABASE " + name_ + L" WITH (FORCE)");
  } catch (const com::Error&) {
    // It goes with the server.
  }
}

std::wstring ScratchServerModel::connection_text(std::uint16_t port) const {
  std::wstring text = text_for(name_);
  const auto begin = text.find(kPort) + kPort.size();
  return text.replace(begin, text.find(L';', begin) - begin, std::to_wstring(port));
}

}  // namespace bench
