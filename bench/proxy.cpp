// The platform's sockets come before its other headers.
// clang-format off
#include <winsock2.h>
#include <windows.h>
// clang-format on

#include "bench/proxy.h"

#include <array>
#include <list>
#include <utility>

#include "com/error.h"

namespace bench {
namespace {

constexpr DWORD kDelay = 1;  // milliseconds

class Socket {
 public:
  explicit Socket(SOCKET handle) : handle_(handle) {
    if (handle_ == INVALID_SOCKET) fail();
    // Small packets are sent at once, as the driver and the server do it.
    const BOOL yes = TRUE;
    setsockopt(handle_, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&yes), sizeof yes);
  }
  Socket(Socket&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_SOCKET)) {}
  Socket& operator=(Socket&&) = delete;
  ~Socket() {
    if (handle_ != INVALID_SOCKET) closesocket(handle_);
  }

  [[nodiscard]] SOCKET get() const { return handle_; }
  [[nodiscard]] SOCKET release() { return std::exchange(handle_, INVALID_SOCKET); }

  [[noreturn]] static void fail() {
    com::fail(E_FAIL, L"orv_bench",
              L"A socket failed with " + std::to_wstring(WSAGetLastError()) + L".");
  }

 private:
  SOCKET handle_;
};

sockaddr_in address_of(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  return address;
}

Socket make_socket() { return Socket(socket(AF_INET, SOCK_STREAM, IPPROTO_TCP)); }

/// Listens on a port that was free, which it puts into `port`.
Socket listen_somewhere(std::uint16_t& port) {
  Socket listener = make_socket();
  sockaddr_in address = address_of(0);
  int size = sizeof address;
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener.get(), any, size) != 0 || listen(listener.get(), SOMAXCONN) != 0 ||
      getsockname(listener.get(), any, &size) != 0) {
    Socket::fail();
  }
  port = ntohs(address.sin_port);
  return listener;
}

Socket connect_to(std::uint16_t port) {
  Socket made = make_socket();
  const sockaddr_in address = address_of(port);
  if (connect(made.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    Socket::fail();
  }
  return made;
}

/// Sends what has come in; false when a side has ended.
bool pass(const Socket& from, const Socket& to) {
  std::array<char, 65536> bytes;
  const int size = recv(from.get(), bytes.data(), bytes.size(), 0);
  for (int sent = 0; sent < size;) {
    const int part = send(to.get(), bytes.data() + sent, size - sent, 0);
    if (part <= 0) return false;
    sent += part;
  }
  return size > 0;
}

/// A client and its server.
struct Line {
  Socket client;
  Socket server;
  bool is_asking = false;  // the client spoke last
};

}  // namespace

Proxy::Proxy(std::uint16_t server_port) : server_port_(server_port) {
  WSADATA data;
  if (WSAStartup(MAKEWORD(2, 2), &data) != 0) Socket::fail();
  Socket listener = listen_somewhere(port_);
  thread_ = std::jthread([this, handle = listener.release()](const std::stop_token& stop) {
    try {
      pass_on(stop, handle);
    } catch (const com::Error&) {
      // Its sockets are closed now: clients fail with a sentence of their own.
    }
  });
}

Proxy::~Proxy() {
  thread_.request_stop();
  thread_.join();
  WSACleanup();
}

void Proxy::pass_on(const std::stop_token& stop, std::uintptr_t handle) {
  timeval interval{.tv_sec = 0, .tv_usec = 50'000};  // between looks at `stop`
  const Socket listener(handle);
  std::list<Line> lines;
  while (!stop.stop_requested()) {
    fd_set ready;
    FD_ZERO(&ready);
    FD_SET(listener.get(), &ready);
    for (const Line& line : lines) {
      FD_SET(line.client.get(), &ready);
      FD_SET(line.server.get(), &ready);
    }
    if (select(0, &ready, nullptr, nullptr, &interval) <= 0) continue;
    lines.remove_if([&](Line& line) {
      if (FD_ISSET(line.server.get(), &ready)) {
        line.is_asking = false;
        if (!pass(line.server, line.client)) return true;
      }
      if (!FD_ISSET(line.client.get(), &ready)) return false;
      if (!std::exchange(line.is_asking, true)) {
        ++round_trips_;
        // All of a question arrives this much later, in however many packets it comes.
        Sleep(kDelay);
      }
      return !pass(line.client, line.server);
    });
    if (FD_ISSET(listener.get(), &ready)) {
      lines.push_back({Socket(accept(listener.get(), nullptr, nullptr)), connect_to(server_port_)});
    }
  }
}

}  // namespace bench
