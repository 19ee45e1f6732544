#include "tests/contract/LoopbackServer.h"

#include <array>
#include <stdexcept>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace velto::test {

namespace {

int boundSocket(int& port) {
  const int made = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof(address);
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (made < 0 || bind(made, generic, length) != 0 || getsockname(made, generic, &length) != 0) {
    throw std::runtime_error("no loopback port");
  }
  port = ntohs(address.sin_port);
  return made;
}

/// The path of "GET /path HTTP/1.1".
std::string pathOf(const std::string& request) {
  const std::size_t start = request.find(' ');
  const std::size_t end = request.find(' ', start + 1);
  return end == std::string::npos ? "" : request.substr(start + 1, end - start - 1);
}

}  // namespace

LoopbackServer::LoopbackServer(Answer answer) : answer_(std::move(answer)), listener_(boundSocket(port_)) {
  listen(listener_, 16);
  thread_ = std::thread([this] { serve(); });
}

LoopbackServer::~LoopbackServer() {
  // Wakes the thread and tells it to end.
  shutdown(listener_, SHUT_RDWR);
  thread_.join();
  close(listener_);
  for (const auto& [peer, request] : peers_) close(peer);
}

void LoopbackServer::serve() {
  for (;;) {
    std::vector<pollfd> waiting{{listener_, POLLIN, 0}};
    for (const auto& [peer, request] : peers_) waiting.push_back({peer, POLLIN, 0});
    poll(waiting.data(), waiting.size(), -1);
    for (const pollfd& ready : waiting) {
      if (ready.revents == 0) continue;
      if (ready.fd == listener_) {
        const int peer = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (peer < 0) return;
        peers_[peer];
      } else if (!receive(ready.fd)) {
        close(ready.fd);
        peers_.erase(ready.fd);
      }
    }
  }
}

bool LoopbackServer::receive(int peer) {
  std::array<char, 4096> piece{};
  const ssize_t count = recv(peer, piece.data(), piece.size(), 0);
  if (count <= 0) return false;
  std::string& request = peers_[peer];
  request.append(piece.data(), static_cast<std::size_t>(count));
  if (request.find("\r\n\r\n") == std::string::npos) return true;
  const auto response = answer_(pathOf(request));
  if (!response) return true;
  send(peer, response->text.data(), response->text.size(), MSG_NOSIGNAL);
  std::this_thread::sleep_for(response->linger);
  return false;
}

int freePort() {
  int port = 0;
  close(boundSocket(port));
  return port;
}

}  // namespace velto::test
