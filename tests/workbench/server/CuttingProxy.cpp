#include "CuttingProxy.h"

#include <winsock2.h>

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

sockaddr_in local_address(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<u_short>(port));
  return address;
}

/// Waits for something to read, up to a tenth of a second.
bool has_input(SOCKET socket) {
  fd_set sockets;
  FD_ZERO(&sockets);
  FD_SET(socket, &sockets);
  timeval tenth{0, 100'000};
  return select(0, &sockets, nullptr, nullptr, &tenth) > 0;
}

/// What came; empty when the other side has ended the connection.
std::string receive(SOCKET socket) {
  std::array<char, 16384> bytes{};
  const int count = recv(socket, bytes.data(), static_cast<int>(bytes.size()), 0);
  return {bytes.data(), static_cast<std::size_t>(count > 0 ? count : 0)};
}

bool pass(SOCKET socket, const std::string& bytes) {
  return send(socket, bytes.data(), static_cast<int>(bytes.size()), 0) == static_cast<int>(bytes.size());
}

/// Whether the client commits. The null after the statement distinguishes it from the name of an isolation level.
bool holds_commit(const std::string& request) {
  constexpr std::string_view commit("COMMIT\0", 7);
  return request.find(commit) != std::string::npos;
}

}  // namespace

CuttingProxy::CuttingProxy(int server_port) : server_port_(server_port) {
  WSADATA data;
  WSAStartup(MAKEWORD(2, 2), &data);
  listener_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address = local_address(0);
  int size = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener_, generic, size) != 0 || listen(listener_, 5) != 0 || getsockname(listener_, generic, &size) != 0)
    throw std::runtime_error("the proxy has no port");
  port_ = ntohs(address.sin_port);
  acceptor_ = std::jthread([this](const std::stop_token& stop) { accept_connections(stop); });
}

CuttingProxy::~CuttingProxy() {
  acceptor_ = {};
  connections_.clear();
  closesocket(listener_);
  WSACleanup();
}

void CuttingProxy::accept_connections(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    if (!has_input(listener_)) continue;
    const SOCKET client = accept(listener_, nullptr, nullptr);
    if (client == INVALID_SOCKET) continue;
    connections_.emplace_back([this, client](const std::stop_token& end) {
      if (!refuses_) pass_on(client, end);
      closesocket(client);
    });
  }
}

void CuttingProxy::pass_on(Socket client, const std::stop_token& stop) {
  const SOCKET server = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  const sockaddr_in address = local_address(server_port_);
  bool silent = false;
  bool open = connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  while (open && !stop.stop_requested()) {
    fd_set sockets;
    FD_ZERO(&sockets);
    FD_SET(client, &sockets);
    FD_SET(server, &sockets);
    timeval tenth{0, 100'000};
    const int ready = select(0, &sockets, nullptr, nullptr, &tenth);
    if (silent && silence_ended_) break;
    if (ready <= 0) continue;
    if (FD_ISSET(client, &sockets)) open = pass_on_from_client(client, server, silent, stop);
    if (open && FD_ISSET(server, &sockets)) {
      const std::string answer = receive(server);
      open = !answer.empty() && (silent || pass(client, answer));
    }
  }
  closesocket(server);
}

/// Returns whether the connection stays open.
bool CuttingProxy::pass_on_from_client(Socket client, Socket server, bool& silent, const std::stop_token& stop) {
  const std::string request = receive(client);
  if (request.empty()) return false;
  if (silent) return true;
  const Cut cut = holds_commit(request) ? cut_.exchange(Cut::none) : Cut::none;
  if (cut != Cut::none && refuses_after_cut_) refuses_ = true;
  silent = cut == Cut::silence_before_commit || cut == Cut::silence_after_commit;
  if (cut == Cut::before_commit) return false;
  if (cut == Cut::silence_before_commit) return true;
  if (!pass(server, request)) return false;
  if (cut != Cut::after_commit) return true;
  while (!has_input(server) && !stop.stop_requested()) continue;
  return false;
}
