#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include "handoff/RuntimeDirectory.h"

namespace velto {

/// The name of the hand-off socket in the runtime directory.
inline constexpr char kSocketName[] = "socket";

/// Where the hand-off socket of `directory` is bound. Valid as long as `directory` lives: a path too long for
/// a socket's address goes by way of the open folder.
class SocketAddress {
 public:
  explicit SocketAddress(const RuntimeDirectory& directory);

  [[nodiscard]] const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&address_); }
  [[nodiscard]] static socklen_t size() { return sizeof(sockaddr_un); }

 private:
  sockaddr_un address_{};
};

}  // namespace velto
