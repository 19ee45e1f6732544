#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace velto::test {

/// An HTTP server on a free port of 127.0.0.1, in a thread of its own, that answers one request for each
/// connection.
class LoopbackServer {
 public:
  struct Response {
    /// Head and body.
    std::string text;
    /// How long the connection stays open after it.
    std::chrono::milliseconds linger{0};
  };
  /// The response to a path, or nothing to leave the peer waiting. Called on the server's thread.
  using Answer = std::function<std::optional<Response>(const std::string& path)>;

  explicit LoopbackServer(Answer answer);
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;
  ~LoopbackServer();

  [[nodiscard]] int port() const { return port_; }

 private:
  void serve();
  /// False when the peer is done with.
  bool receive(int peer);

  Answer answer_;
  int port_ = 0;
  int listener_;
  /// Connected peers and what they have sent. Some connect ahead of time and send nothing.
  std::map<int, std::string> peers_;
  std::thread thread_;
};

/// A port of 127.0.0.1 where nothing listens.
int freePort();

}  // namespace velto::test
