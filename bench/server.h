#pragma once

#include <cstdint>
#include <string>

namespace bench {

/// Whether there is a server, that of tests/odbc/with_postgres.
bool has_server();

/// The port of this machine where it listens.
std::uint16_t server_port();

/// A database on the server with an empty model, which is dropped at the end.
class ScratchServerModel {
 public:
  ScratchServerModel();
  ScratchServerModel(const ScratchServerModel&) = delete;
  ScratchServerModel& operator=(const ScratchServerModel&) = delete;
  ~ScratchServerModel();

  /// The connection string of the database, by another port if one is given.
  [[nodiscard]] std::wstring connection_text(std::uint16_t port = server_port()) const;
  /// The same as a model's location.
  [[nodiscard]] std::wstring location(std::uint16_t port = server_port()) const {
    return L"odbc:" + connection_text(port);
  }

 private:
  std::wstring name_;
};

}  // namespace bench
