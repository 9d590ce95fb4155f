#pragma once

#include <atomic>
#include <cstdint>
#include <thread>

namespace bench {

/// Stands between a client and a server on this machine, as a network would whose packets take a
/// millisecond to the server and none back. It counts round trips: how often a client that has been
/// answered, or is new, speaks again.
class Proxy {
 public:
  /// Throws com::Error when there is no socket to be had.
  explicit Proxy(std::uint16_t server_port);
  Proxy(const Proxy&) = delete;
  Proxy& operator=(const Proxy&) = delete;
  /// Ends the connections that are left.
  ~Proxy();

  /// Where clients connect.
  [[nodiscard]] std::uint16_t port() const { return port_; }
  [[nodiscard]] long round_trips() const { return round_trips_; }

 private:
  void pass_on(const std::stop_token& stop, std::uintptr_t listener);

  const std::uint16_t server_port_;
  std::uint16_t port_ = 0;
  std::atomic<long> round_trips_ = 0;
  std::jthread thread_;
};

}  // namespace bench
